#include <windowsx.h>

#include <algorithm>
#include <cstdlib>
#include <string>

#include "editor/EditorKeys.h"
#include "editor/win32/GridPane.h"
#include "editor/win32/Keys.h"

namespace tvn2x {
namespace {

constexpr UINT_PTR dragTimer = 1;
constexpr UINT dragPace = 40;   // milliseconds between two rows while the mouse is dragged out of the list
constexpr int borderReach = 3;  // dialog units on either side of a column's border
constexpr int whole = 1000;
constexpr int leastShare = 60;

}  // namespace

LRESULT GridPane::OnListMessage(const Subclass& list, UINT message, WPARAM wParam, LPARAM lParam)
{
    const Column column = editor_.CurrentColumn(grid_);
    switch (message) {
        case WM_GETDLGCODE:
            return DLGC_WANTARROWS | DLGC_WANTCHARS;
        case WM_GETOBJECT:
            return static_cast<LONG>(lParam) == OBJID_CLIENT ? accessible_.Answer(*this, editor_, grid_, wParam)
                                                             : list.Default(message, wParam, lParam);
        case WM_NCHITTEST:
            return DefWindowProcW(window_, message, wParam, lParam);
        case WM_KEYDOWN:
        case WM_SYSKEYDOWN:
            return editor_.ListKeyDown(grid_, static_cast<int32_t>(wParam), PressedModifiers())
                       ? 0
                       : list.Default(message, wParam, lParam);
        case WM_CHAR:
            editor_.ListChar(column, static_cast<wchar_t>(wParam));
            return 0;
        case WM_VSCROLL:
            OnScroll(LOWORD(wParam));
            return 0;
        case WM_MOUSEWHEEL:
            OnWheel(wParam);
            return 0;
        case WM_TIMER: {
            POINT point{};
            GetCursorPos(&point);
            ScreenToClient(window_, &point);
            OnDrag(point);
            return 0;
        }
        case WM_ERASEBKGND:
            return 1;
        case WM_PAINT:
            Paint();
            return 0;
        case WM_DESTROY:
            accessible_.Disconnect();
            return list.Default(message, wParam, lParam);
        default:
            break;
    }
    if ((message >= WM_MOUSEFIRST && message <= WM_MOUSELAST) || message == WM_SETCURSOR ||
        message == WM_CAPTURECHANGED) {
        const POINT point{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
        tip_.Pass(message, wParam, lParam);
        if (const LRESULT answer = OnMouse(message, wParam, point); answer >= 0) {
            return answer;
        }
    }
    return list.Default(message, wParam, lParam);
}

/// Negative for what is left to the system.
LRESULT GridPane::OnMouse(UINT message, WPARAM wParam, POINT point)
{
    switch (message) {
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
            OnPress(wParam, point);
            return 0;
        case WM_MOUSEMOVE:
            if (drag_) {
                OnDrag(point);
            } else {
                ShowTip(point);
            }
            return 0;
        case WM_LBUTTONUP:
            OnRelease(point);
            return 0;
        case WM_CAPTURECHANGED:
            KillTimer(window_, dragTimer);
            drag_.reset();
            return 0;
        case WM_RBUTTONDOWN: {
            FocusList();
            const GridPlace place = PlaceAt(point);
            editor_.MenuAsked(place.column.value_or(editor_.CurrentColumn(grid_)), place.row);
            return 0;
        }
        case WM_SETCURSOR: {
            POINT mouse{};
            GetCursorPos(&mouse);
            ScreenToClient(window_, &mouse);
            if (!BorderAt(mouse)) {
                return -1;
            }
            SetCursor(LoadCursorW(nullptr, IDC_SIZEWE));
            return TRUE;
        }
        default:
            return -1;
    }
}

/// The column whose right border is there, among the headings.
std::optional<size_t> GridPane::BorderAt(POINT point) const
{
    const RECT headings = CellRect({});
    if (point.y < 0 || point.y >= headings.bottom) {
        return std::nullopt;
    }
    const std::array<int, 4> edges = Edges();
    for (size_t index = 0; index + 1 < columns; ++index) {
        if (std::abs(point.x - edges[index + 1]) <= look_.metrics.X(borderReach)) {
            return index;
        }
    }
    return std::nullopt;
}

/// The two columns beside a border share what they had.
void GridPane::MoveBorder(int x)
{
    const size_t index = *drag_->border;
    const std::array<int, 4> edges = Edges();
    const int width = std::max(edges[3] - edges[0], 1);
    const int both = shares_[index] + shares_[index + 1];
    shares_[index] = std::clamp(MulDiv(x - edges[index], whole, width), leastShare, both - leastShare);
    shares_[index + 1] = both - shares_[index];
    InvalidateRect(window_, nullptr, FALSE);
}

void GridPane::OnPress(WPARAM wParam, POINT point)
{
    FocusList();
    const GridPlace place = PlaceAt(point);
    drag_ = Drag{place, false, false, BorderAt(point)};
    if (!drag_->border && place.row >= 0) {
        const unsigned modifiers =
            ((wParam & MK_SHIFT) != 0 ? modifier::shift : 0) | ((wParam & MK_CONTROL) != 0 ? modifier::control : 0);
        const Column column = place.column.value_or(editor_.CurrentColumn(grid_));
        const bool isPlain = editor_.CellPressed(column, place.row, modifiers);
        drag_->opens = isPlain && place.column.has_value();
        SetTimer(window_, dragTimer, dragPace, nullptr);
    }
    SetCapture(window_);
}

void GridPane::OnDrag(POINT point)
{
    if (!drag_) {
        return;
    }
    if (drag_->border) {
        return MoveBorder(point.x);
    }
    const int32_t row = std::min(RowNear(point.y), editor_.RowCount(grid_) - 1);
    if (drag_->from.row < 0 || (row == drag_->from.row && !drag_->moved)) {
        return;
    }
    drag_->moved = true;
    if (row != editor_.SelectedRow(grid_)) {
        editor_.DraggedTo(grid_, row);
    }
}

/// A click is what goes up where it went down. The editor may show a message or a menu, so the mouse is free by then.
void GridPane::OnRelease(POINT point)
{
    if (!drag_) {
        return;
    }
    const Drag drag = *drag_;
    ReleaseCapture();
    if (drag.border || drag.moved) {
        return;
    }
    const GridPlace place = PlaceAt(point);
    if (place == drag.from && place.column && place.row == -1) {
        editor_.HeadingClicked(*place.column);
    } else if (place == drag.from && drag.opens) {
        editor_.CellClicked(*place.column, place.row);
    }
}

void GridPane::OnWheel(WPARAM wParam)
{
    UINT lines = 3;
    SystemParametersInfoW(SPI_GETWHEELSCROLLLINES, 0, &lines, 0);
    wheel_ += static_cast<int16_t>(HIWORD(wParam));
    const int notches = wheel_ / WHEEL_DELTA;
    wheel_ -= notches * WHEEL_DELTA;
    if (lines == WHEEL_PAGESCROLL) {
        lines = static_cast<UINT>(ClientSize(window_).cy / look_.metrics.RowHeight());
    }
    editor_.Scrolled(editor_.CurrentColumn(grid_), editor_.TopRow(grid_) - notches * static_cast<int>(lines));
}

void GridPane::OnScroll(int code)
{
    SCROLLINFO scroll{};
    scroll.cbSize = sizeof scroll;
    scroll.fMask = SIF_ALL;
    GetScrollInfo(window_, SB_VERT, &scroll);
    const int32_t top = editor_.TopRow(grid_);
    const auto page = static_cast<int32_t>(scroll.nPage);
    const int32_t pinned = editor_.PinnedRows(grid_);
    const auto to = [&](int32_t row) { editor_.Scrolled(editor_.CurrentColumn(grid_), row); };
    switch (code) {
        case SB_LINEUP:
            return to(top - 1);
        case SB_LINEDOWN:
            return to(top + 1);
        case SB_PAGEUP:
            return to(top - page);
        case SB_PAGEDOWN:
            return to(top + page);
        case SB_TOP:
            return to(0);
        case SB_BOTTOM:
            return to(editor_.RowCount(grid_));
        case SB_THUMBTRACK:
        case SB_THUMBPOSITION:
            return to(scroll.nTrackPos + pinned);
        default:
            return;
    }
}

/// What a remark or a cut text says in full.
std::wstring GridPane::TipOf(const GridPlace& place) const
{
    if (!place.column || place.row < 0 || place.row >= editor_.RowCount(grid_)) {
        return place.row >= 0 ? editor_.RemarkOn(grid_, place.row) : std::wstring();
    }
    const std::wstring& text = editor_.CellText(*place.column, place.row);
    const RECT cell = CellRect(place);
    const ScreenContext screen(look_.font);
    SIZE size{};
    GetTextExtentPoint32W(screen.Get(), text.data(), static_cast<int>(text.size()), &size);
    const bool isCut = size.cx > cell.right - cell.left - 2 * look_.metrics.X(cellMargin);
    const std::wstring remark = editor_.RemarkOn(grid_, place.row);
    return isCut && !remark.empty() ? text + L"\r\n" + remark : isCut ? text : remark;
}

void GridPane::ShowTip(POINT point)
{
    const GridPlace place = PlaceAt(point);
    if (place != tipPlace_) {
        tipPlace_ = place;
        tip_.Show(CellRect(place), TipOf(place));
    }
}

}  // namespace tvn2x
