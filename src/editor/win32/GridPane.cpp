#include "editor/win32/GridPane.h"

#include <algorithm>
#include <string>

#include "editor/EditorKeys.h"
#include "editor/win32/ControlIds.h"
#include "editor/win32/Theme.h"
#include "util/RaisedError.h"

namespace tvn2x {
namespace {

/// How the columns share the width, in hundredths. The check columns are just wide enough for their headings.
constexpr std::array<int, 3> channelShares{40, 32, 28};
constexpr int checkColumnWidth = 46;  // dialog units
constexpr int headingHeight = 14;

HWND CreateControl(HWND page, const wchar_t* windowClass, std::wstring_view text, DWORD style, DWORD exStyle, int id,
                   HFONT font)
{
    const HWND control = CreateWindowExW(exStyle, windowClass, std::wstring(text).c_str(), WS_CHILD | style, 0, 0, 0, 0,
                                         page, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), OwnModule(), nullptr);
    if (!control) {
        throw RaisedError(HRESULT_FROM_WIN32(GetLastError()), L"clsSetup.Edit",
                          L"A control of the setup editor cannot be created");
    }
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    return control;
}

}  // namespace

std::wstring WindowText(HWND window)
{
    std::wstring text(static_cast<size_t>(GetWindowTextLengthW(window)), L'\0');
    text.resize(static_cast<size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()) + 1)));
    return text;
}

void GridPane::Create(HWND page, MessageFilter& filter, std::deque<Subclass>& subclasses)
{
    page_ = page;
    // Above the lists, so that it covers the cell.
    cellEditor_ =
        CreateControl(page, WC_EDITW, {}, WS_BORDER | ES_AUTOHSCROLL, 0, control_id::CellEditor(grid_), look_.font);
    subclasses.emplace_back(filter, cellEditor_, Control::cellEditor, static_cast<int32_t>(grid_));
    for (size_t index = 0; index < columns; ++index) {
        const Column column = ColumnAt(index);
        const DWORD scrollBar = index + 1 == columns ? WS_VSCROLL | LBS_DISABLENOSCROLL : 0;
        heading_[index] = CreateControl(page, WC_STATICW, HeadingOf(column), WS_VISIBLE | SS_OWNERDRAW | SS_NOTIFY, 0,
                                        control_id::Heading(column), look_.font);
        list_[index] = CreateControl(page, WC_LISTBOXW, {},
                                     WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS | scrollBar | LBS_NODATA |
                                         LBS_OWNERDRAWFIXED | LBS_NOINTEGRALHEIGHT | LBS_NOTIFY,
                                     WS_EX_CLIENTEDGE, control_id::List(column), look_.font);
        SendMessageW(list_[index], LB_SETITEMHEIGHT, 0, look_.metrics.RowHeight());
        subclasses.emplace_back(filter, list_[index], Control::list, column);
    }
}

void GridPane::Arrange(const RECT& place)
{
    const int heading = look_.metrics.Y(headingHeight);
    const int bar = GetSystemMetrics(SM_CXVSCROLL);
    const int width = place.right - place.left;
    std::array<int, columns> widths{};
    if (grid_ == Grid::parameters) {
        widths[1] = look_.metrics.X(checkColumnWidth);
        widths[2] = widths[1] + bar;
        widths[0] = width - widths[1] - widths[2];
    } else {
        for (size_t index = 0; index + 1 < columns; ++index) {
            widths[index] = MulDiv(width - bar, channelShares[index], 100);
        }
        widths[2] = width - widths[0] - widths[1];
    }
    // As high as whole rows are, so that none is seen in part.
    const int rowHeight = look_.metrics.RowHeight();
    const int frame = 2 * GetSystemMetrics(SM_CYEDGE);
    const LONG top = place.top + heading;
    const LONG bottom = top + frame + std::max<LONG>(1, (place.bottom - top - frame) / rowHeight) * rowHeight;
    LONG left = place.left;
    for (size_t index = 0; index < columns; ++index) {
        const LONG right = left + widths[index];
        Move(heading_[index], {left, place.top, right, top});
        Move(list_[index], {left, top, right, bottom});
        InvalidateRect(heading_[index], nullptr, FALSE);
        left = right;
    }
    editor_.SetVisibleRows(grid_, ClientSize(list_[0]).cy / rowHeight);
    if (editor_.CurrentEdit().open) {
        ShowCellEditor();
    }
}

void GridPane::SynchroniseLists()
{
    const int32_t count = editor_.RowCount(grid_);
    const int32_t top = editor_.TopRow(grid_);
    const int32_t selected = editor_.SelectedRow(grid_);
    for (const HWND list : list_) {
        if (SendMessageW(list, LB_GETCOUNT, 0, 0) != count) {
            SendMessageW(list, LB_SETCOUNT, static_cast<WPARAM>(count), 0);
        }
        if (SendMessageW(list, LB_GETCURSEL, 0, 0) != selected) {
            SendMessageW(list, LB_SETCURSEL, static_cast<WPARAM>(selected), 0);
        }
        if (SendMessageW(list, LB_GETTOPINDEX, 0, 0) != top) {
            SendMessageW(list, LB_SETTOPINDEX, static_cast<WPARAM>(top), 0);
        }
    }
}

void GridPane::Refresh()
{
    SynchroniseLists();
    for (const HWND list : list_) {
        InvalidateRect(list, nullptr, TRUE);
    }
}

void GridPane::CellChanged(Column column, int32_t row) const
{
    RECT cell{};
    if (SendMessageW(List(column), LB_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&cell)) !=
        LB_ERR) {
        InvalidateRect(List(column), &cell, FALSE);
    }
}

void GridPane::SelectionColourChanged() const
{
    for (size_t index = 0; index < columns; ++index) {
        CellChanged(ColumnAt(index), editor_.SelectedRow(grid_));
    }
}

bool GridPane::HasFocus() const
{
    const HWND focused = GetFocus();
    return focused && (focused == cellEditor_ || std::ranges::find(list_, focused) != list_.end());
}

void GridPane::ShowCellEditor()
{
    const CellEdit& edit = editor_.CurrentEdit();
    const FlagGuard updating(updating_);
    if (!edit.open || GridOf(edit.column) != grid_) {
        if (GetFocus() == cellEditor_) {
            SetFocus(List(GridOf(edit.column) == grid_ ? edit.column : static_cast<Column>(grid_)));
        }
        ShowWindow(cellEditor_, SW_HIDE);
        return;
    }
    const HWND list = List(edit.column);
    RECT cell{};
    SendMessageW(list, LB_GETITEMRECT, static_cast<WPARAM>(edit.row), reinterpret_cast<LPARAM>(&cell));
    MapWindowPoints(list, page_, reinterpret_cast<POINT*>(&cell), 2);
    // As high as its text, which it shows at its upper edge: so the text stands where the cell's does.
    constexpr int frame = 2;
    InflateRect(&cell, 0, std::min(frame - (look_.metrics.RowHeight() - look_.metrics.LineHeight()) / 2, 0));
    Move(cellEditor_, cell);
    if (WindowText(cellEditor_) != edit.text) {
        SetWindowTextW(cellEditor_, edit.text.c_str());
    }
    if (!IsWindowVisible(cellEditor_)) {
        SendMessageW(cellEditor_, EM_EMPTYUNDOBUFFER, 0, 0);
    }
    SendMessageW(cellEditor_, EM_SETSEL, static_cast<WPARAM>(edit.selectionStart),
                 edit.selectionStart + edit.selectionLength);
    ShowWindow(cellEditor_, SW_SHOW);
}

int32_t GridPane::RowAt(HWND list, LPARAM point) const
{
    const auto y = static_cast<int16_t>(HIWORD(point));
    const LRESULT top = SendMessageW(list, LB_GETTOPINDEX, 0, 0);
    return static_cast<int32_t>(top) + y / look_.metrics.RowHeight();
}

void GridPane::OnWheel(Column column, WPARAM wParam)
{
    UINT lines = 3;
    SystemParametersInfoW(SPI_GETWHEELSCROLLLINES, 0, &lines, 0);
    wheel_ += static_cast<int16_t>(HIWORD(wParam));
    const int notches = wheel_ / WHEEL_DELTA;
    wheel_ -= notches * WHEEL_DELTA;
    if (lines == WHEEL_PAGESCROLL) {
        lines = static_cast<UINT>(ClientSize(List(column)).cy / look_.metrics.RowHeight());
    }
    editor_.Scrolled(column, editor_.TopRow(grid_) - notches * static_cast<int>(lines));
}

/// Where the mouse and the characters are the editor's affair, the keys and the scroll bar are the list's, which is
/// then asked what it has made of them.
LRESULT GridPane::OnListMessage(const Subclass& list, UINT message, WPARAM wParam, LPARAM lParam)
{
    const Column column = list.number;
    switch (message) {
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
            SetFocus(list.window);
            editor_.CellClicked(column, RowAt(list.window, lParam));
            return 0;
        case WM_LBUTTONUP:
            return 0;
        case WM_CHAR:
            editor_.ListChar(column, static_cast<wchar_t>(wParam));
            return 0;
        case WM_MOUSEWHEEL:
            OnWheel(column, wParam);
            return 0;
        case WM_KEYDOWN: {
            if (wParam == VK_F2) {
                editor_.ListChar(column, key::space);
                return 0;
            }
            const LRESULT result = list.Default(message, wParam, lParam);
            const auto selected = static_cast<int32_t>(SendMessageW(list.window, LB_GETCURSEL, 0, 0));
            if (selected != LB_ERR && selected != editor_.SelectedRow(grid_)) {
                editor_.RowSelected(column, selected);
            }
            return result;
        }
        case WM_VSCROLL: {
            const LRESULT result = list.Default(message, wParam, lParam);
            editor_.Scrolled(column, static_cast<int32_t>(SendMessageW(list.window, LB_GETTOPINDEX, 0, 0)));
            return result;
        }
        default:
            return list.Default(message, wParam, lParam);
    }
}

LRESULT GridPane::OnCellEditorMessage(const Subclass& cellEditor, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
        case WM_GETDLGCODE:
            return cellEditor.Default(message, wParam, lParam) | DLGC_WANTALLKEYS;
        case WM_KEYDOWN:
            if (editor_.CellKeyDown(static_cast<int32_t>(wParam), GetKeyState(VK_SHIFT) < 0)) {
                return 0;
            }
            break;
        case WM_CHAR:
            // The character of a Tab that has already led to another cell.
            if (wParam == key::tab || !editor_.CellChar(static_cast<wchar_t>(wParam))) {
                return 0;
            }
            break;
        default:
            break;
    }
    return cellEditor.Default(message, wParam, lParam);
}

void GridPane::OnCellTextChanged()
{
    if (!updating_) {
        editor_.CellTextChanged(WindowText(cellEditor_));
    }
}

}  // namespace tvn2x
