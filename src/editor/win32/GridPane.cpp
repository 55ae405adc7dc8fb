#include "editor/win32/GridPane.h"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <utility>

#include "editor/EditorKeys.h"
#include "editor/win32/ControlIds.h"
#include "editor/win32/Keys.h"
#include "editor/win32/Theme.h"
#include "util/RaisedError.h"

namespace tvn2x {
namespace {

/// How the columns share the width at first, in thousandths.
constexpr std::array<int, 3> channelShares{340, 380, 280};
constexpr std::array<int, 3> parameterShares{640, 180, 180};
constexpr int whole = 1000;
constexpr int headingHeight = 14;  // dialog units
constexpr int smallestColumn = 24;

HWND CreateControl(HWND page, const wchar_t* windowClass, const wchar_t* text, DWORD style, DWORD exStyle, int id,
                   HFONT font)
{
    const HWND control = CreateWindowExW(exStyle, windowClass, text, WS_CHILD | style, 0, 0, 0, 0, page,
                                         reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), OwnModule(), nullptr);
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

GridPane::~GridPane() = default;

void GridPane::Create(HWND page, MessageFilter& filter, std::deque<Subclass>& subclasses)
{
    page_ = page;
    shares_ = grid_ == Grid::channels ? channelShares : parameterShares;
    // Out of sight, it names the field behind it for a screen reader.
    CreateControl(page, WC_STATICW, L"Cell", 0, 0, control_id::label, look_.font);
    // Above the list, so that it covers the cell.
    cellEditor_ =
        CreateControl(page, WC_EDITW, L"", WS_BORDER | ES_AUTOHSCROLL, 0, control_id::CellEditor(grid_), look_.font);
    subclasses.emplace_back(filter, cellEditor_, Control::cellEditor, static_cast<int32_t>(grid_));
    window_ = CreateControl(page, WC_STATICW, grid_ == Grid::channels ? L"Channels" : L"Parameters",
                            WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS | WS_VSCROLL | SS_NOTIFY, WS_EX_CLIENTEDGE,
                            control_id::List(grid_), look_.font);
    subclasses.emplace_back(filter, window_, Control::list, static_cast<int32_t>(grid_));
    tip_.Create(window_);
}

// Geometry.

int GridPane::NumberWidth() const
{
    const int32_t numbers = editor_.RowCount(grid_);
    const int digits = std::max<int>(2, static_cast<int>(std::to_wstring(numbers).size()));
    return look_.metrics.X(5 * digits + 2 * cellMargin);
}

/// Where the columns begin and the last one ends.
std::array<int, 4> GridPane::Edges() const
{
    const int left = NumberWidth();
    const int width = std::max<int>(ClientSize(window_).cx - left, 0);
    return {left, left + MulDiv(width, shares_[0], whole), left + MulDiv(width, shares_[0] + shares_[1], whole),
            left + width};
}

int GridPane::RowTop(int32_t row) const
{
    const int32_t pinned = editor_.PinnedRows(grid_);
    const int32_t place = row < pinned ? row : row - editor_.TopRow(grid_) + pinned;
    return look_.metrics.Y(headingHeight) + place * look_.metrics.RowHeight();
}

/// The row at a height, whether it is in sight or not, and whether it exists or not; -1 for the headings.
int32_t GridPane::RowNear(int y) const
{
    const int height = y - look_.metrics.Y(headingHeight);
    const int32_t pinned = editor_.PinnedRows(grid_);
    const int rowHeight = look_.metrics.RowHeight();
    const int32_t place = height < 0 ? (height + 1) / rowHeight - 1 : height / rowHeight;
    return place < pinned && place >= 0 ? place : place - pinned + editor_.TopRow(grid_);
}

RECT GridPane::CellRect(const GridPlace& place) const
{
    const std::array<int, 4> edges = Edges();
    const SIZE client = ClientSize(window_);
    RECT cell{0, 0, edges[0], look_.metrics.Y(headingHeight)};
    if (place.column) {
        const auto index = static_cast<size_t>(*place.column - static_cast<Column>(grid_));
        cell.left = edges[index];
        cell.right = edges[index + 1];
    }
    if (place.row < 0) {
        return cell;
    }
    cell.top = RowTop(place.row);
    cell.bottom = std::min<LONG>(cell.top + look_.metrics.RowHeight(), client.cy);
    const bool isPinned = place.row < editor_.PinnedRows(grid_);
    const bool isInSight = isPinned || (place.row >= editor_.TopRow(grid_) && cell.top < client.cy);
    return isInSight && place.row < editor_.RowCount(grid_) ? cell : RECT{};
}

GridPlace GridPane::PlaceAt(POINT point) const
{
    GridPlace place;
    place.row = point.y < look_.metrics.Y(headingHeight) ? -1 : RowNear(point.y);
    const std::array<int, 4> edges = Edges();
    for (size_t index = 0; index < columns; ++index) {
        if (point.x >= edges[index] && point.x < edges[index + 1]) {
            place.column = ColumnAt(index);
        }
    }
    return place;
}

void GridPane::TakeShares(const std::array<int, 3>& shares)
{
    constexpr int least = 50;
    if (shares[0] + shares[1] + shares[2] == whole && std::ranges::min(shares) >= least) {
        shares_ = shares;
    }
}

void GridPane::Arrange(const RECT& place)
{
    Move(window_, place);
    const int height = ClientSize(window_).cy - look_.metrics.Y(headingHeight);
    editor_.SetVisibleRows(grid_, height / look_.metrics.RowHeight() - editor_.PinnedRows(grid_));
    Refresh();
    const CellEdit& edit = editor_.CurrentEdit();
    if (edit.open && GridOf(edit.column) == grid_) {
        MoveCellEditor(edit);
    }
}

// What the editor has changed.

void GridPane::SelectionChanged()
{
    const int32_t pinned = editor_.PinnedRows(grid_);
    SCROLLINFO scroll{};
    scroll.cbSize = sizeof scroll;
    scroll.fMask = SIF_RANGE | SIF_PAGE | SIF_POS | SIF_DISABLENOSCROLL;
    scroll.nMax = std::max(editor_.RowCount(grid_) - pinned - 1, 0);
    const int height = ClientSize(window_).cy - look_.metrics.Y(headingHeight);
    scroll.nPage = static_cast<UINT>(std::max(height / look_.metrics.RowHeight() - pinned, 1));
    scroll.nPos = editor_.TopRow(grid_) - pinned;
    SetScrollInfo(window_, SB_VERT, &scroll, TRUE);
    InvalidateRect(window_, nullptr, FALSE);
    const int32_t index = editor_.CurrentColumn(grid_) - static_cast<Column>(grid_);
    const int32_t cell = accessible_child::Cell(editor_.SelectedRow(grid_), index);
    NotifyWinEvent(EVENT_OBJECT_SELECTIONWITHIN, window_, OBJID_CLIENT, CHILDID_SELF);
    if (GetFocus() == window_) {
        NotifyWinEvent(EVENT_OBJECT_FOCUS, window_, OBJID_CLIENT, cell);
    }
}

void GridPane::Refresh()
{
    SelectionChanged();
    NotifyWinEvent(EVENT_OBJECT_REORDER, window_, OBJID_CLIENT, CHILDID_SELF);
}

void GridPane::CellChanged(Column column, int32_t row)
{
    const RECT cell = CellRect({row, column});
    if (IsRectEmpty(&cell)) {
        return;
    }
    // A change of one frequency can mark any other channel.
    InvalidateRect(window_, column == MP_USERFIELD || grid_ == Grid::parameters ? &cell : nullptr, FALSE);
    const int32_t child = accessible_child::Cell(row, column - static_cast<Column>(grid_));
    NotifyWinEvent(IsCheckColumn(column) ? EVENT_OBJECT_STATECHANGE : EVENT_OBJECT_NAMECHANGE, window_, OBJID_CLIENT,
                   child);
}

bool GridPane::HasFocus() const
{
    const HWND focused = GetFocus();
    return focused && (focused == cellEditor_ || focused == window_);
}

/// The list has the keyboard afterwards, and the editor knows in which column.
void GridPane::FocusList()
{
    if (GetFocus() == window_) {
        editor_.FocusMoved(Control::list, editor_.CurrentColumn(grid_));
    } else {
        SetFocus(window_);
    }
}

void GridPane::MoveCellEditor(const CellEdit& edit)
{
    RECT cell = CellRect({edit.row, edit.column});
    MapWindowPoints(window_, page_, reinterpret_cast<POINT*>(&cell), 2);
    // As high as its text, which it shows at its upper edge: so the text stands where the cell's does.
    constexpr int frame = 2;
    InflateRect(&cell, 0, std::min(frame - (look_.metrics.RowHeight() - look_.metrics.LineHeight()) / 2, 0));
    Move(cellEditor_, cell);
}

void GridPane::ShowCellEditor()
{
    const CellEdit& edit = editor_.CurrentEdit();
    const FlagGuard updating(updating_);
    if (!edit.open || GridOf(edit.column) != grid_) {
        if (GetFocus() == cellEditor_) {
            SetFocus(window_);
        }
        ShowWindow(cellEditor_, SW_HIDE);
        return;
    }
    MoveCellEditor(edit);
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

// What the user does in an open cell.

LRESULT GridPane::OnCellEditorMessage(const Subclass& cellEditor, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
        case WM_GETDLGCODE:
            return cellEditor.Default(message, wParam, lParam) | DLGC_WANTALLKEYS;
        case WM_KEYDOWN:
            if (wParam == VK_INSERT && PressedModifiers() == modifier::shift && editor_.PasteOverCell()) {
                return 0;
            }
            if (editor_.CellKeyDown(static_cast<int32_t>(wParam), GetKeyState(VK_SHIFT) < 0)) {
                return 0;
            }
            break;
        case WM_CHAR:
            // The character of a Tab that has already led to another cell.
            if (wParam == key::tab || !editor_.CellChar(static_cast<wchar_t>(wParam)) ||
                (wParam == key::paste && editor_.PasteOverCell())) {
                return 0;
            }
            break;
        case WM_PASTE:
            if (editor_.PasteOverCell()) {
                return 0;
            }
            break;
        case WM_LBUTTONDBLCLK:
            SendMessageW(cellEditor_, EM_SETSEL, 0, -1);
            return 0;
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
