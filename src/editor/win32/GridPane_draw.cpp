#include <windows.h>

#include <uxtheme.h>

#include <vsstyle.h>

#include <algorithm>

#include "editor/win32/GridPane.h"
#include "util/RaisedError.h"

namespace tvn2x {
namespace {

constexpr UINT textLook = DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS;
constexpr int cellMargin = 2;  // dialog units

void CloseTheme(HTHEME theme)
{
    CloseThemeData(theme);
}
using ThemeData = Owned<HTHEME, CloseTheme>;

void DrawLines(HDC context, Colour colour, std::initializer_list<RECT> lines)
{
    SetBkColor(context, colour);
    for (const RECT& line : lines) {
        ExtTextOutW(context, 0, 0, ETO_OPAQUE, &line, nullptr, 0, nullptr);
    }
}

/// A frame two pixels wide along the inside of an area.
void Make3D(HDC context, const RECT& area, FrameStyle style)
{
    const auto [left, top, right, bottom] = area;
    const FrameColours colours = Make3DColours(style);
    DrawLines(context, colours.outerRightBottom, {{right - 1, top, right, bottom}, {left, bottom - 1, right, bottom}});
    DrawLines(context, colours.innerRightBottom,
              {{right - 2, top + 1, right - 1, bottom - 1}, {left + 1, bottom - 2, right - 1, bottom - 1}});
    DrawLines(context, colours.innerLeftTop,
              {{left + 1, top + 1, left + 2, bottom - 2}, {left + 1, top + 1, right - 2, top + 2}});
    DrawLines(context, colours.outerLeftTop, {{left, top, left + 1, bottom - 1}, {left, top, right - 1, top + 1}});
}

}  // namespace

void GridLook::MakeArrows()
{
    constexpr Colour transparent = 0xFF00FF;
    const int height = std::max(metrics.LineHeight() / 3, 3);
    const int width = 2 * height - 1;
    arrowSize = {width, height};
    arrows = Images(ImageList_Create(width, height, ILC_COLOR24 | ILC_MASK, 2, 0));
    const ScreenContext screen(font);
    const MemoryContext memory(CreateCompatibleDC(screen.Get()));
    const Brush background(CreateSolidBrush(transparent));
    for (const bool up : {true, false}) {
        const Bitmap bitmap(CreateCompatibleBitmap(screen.Get(), width, height));
        if (!memory.Get() || !bitmap.Get()) {
            throw RaisedError(E_OUTOFMEMORY, L"clsSetup.Edit", L"The sort arrows cannot be drawn");
        }
        {
            const Selected drawing(memory.Get(), bitmap.Get());
            const RECT all{0, 0, width, height};
            FillRect(memory.Get(), &all, background.Get());
            for (LONG line = 0; line < height; ++line) {
                const LONG y = up ? line : height - 1 - line;
                DrawLines(memory.Get(), GetSysColor(COLOR_BTNTEXT), {{height - 1 - line, y, height + line, y + 1}});
            }
        }
        ImageList_AddMasked(arrows.Get(), bitmap.Get(), transparent);
    }
}

void GridPane::DrawHeading(const DRAWITEMSTRUCT& item) const
{
    const Column column =
        static_cast<Column>(std::ranges::find(heading_, item.hwndItem) - heading_.begin()) + static_cast<Column>(grid_);
    FillRect(item.hDC, &item.rcItem, GetSysColorBrush(COLOR_BTNFACE));
    Make3D(item.hDC, item.rcItem, FrameStyle::raised);
    RECT text = item.rcItem;
    InflateRect(&text, -look_.metrics.X(cellMargin + 1), -2);
    if (const SortArrow arrow = editor_.Arrow(column); arrow != SortArrow::none) {
        const auto [width, height] = look_.arrowSize;
        text.right -= width;
        ImageList_Draw(look_.arrows.Get(), arrow == SortArrow::up ? 0 : 1, item.hDC, text.right,
                       (item.rcItem.top + item.rcItem.bottom - height) / 2, ILD_TRANSPARENT);
        text.right -= look_.metrics.X(cellMargin);
    }
    const Selected font(item.hDC, look_.font);
    SetBkMode(item.hDC, TRANSPARENT);
    SetTextColor(item.hDC, GetSysColor(COLOR_BTNTEXT));
    const std::wstring caption(HeadingOf(column));
    DrawTextW(item.hDC, caption.c_str(), -1, &text,
              textLook | ((item.itemState & ODS_NOACCEL) != 0 ? DT_HIDEPREFIX : 0));
}

void GridPane::DrawRow(const DRAWITEMSTRUCT& item) const
{
    const auto row = static_cast<int32_t>(item.itemID);
    if (row < 0 || row >= editor_.RowCount(grid_)) {
        return;
    }
    const Column column =
        static_cast<Column>(std::ranges::find(list_, item.hwndItem) - list_.begin()) + static_cast<Column>(grid_);
    const bool selected = row == editor_.SelectedRow(grid_);
    const bool active = HasFocus();
    const int background = !selected ? COLOR_WINDOW : active ? COLOR_HIGHLIGHT : COLOR_BTNFACE;
    const int foreground = !selected ? COLOR_WINDOWTEXT : active ? COLOR_HIGHLIGHTTEXT : COLOR_BTNTEXT;
    FillRect(item.hDC, &item.rcItem, GetSysColorBrush(background));
    if (selected) {
        const auto [left, top, right, bottom] = item.rcItem;
        DrawLines(item.hDC, palette::darkGrey, {{left, top, right, top + 1}});
        DrawLines(item.hDC, palette::black, {{left, bottom - 1, right, bottom}});
    }
    if (IsCheckColumn(column)) {
        DrawCheck(item.hDC, item.rcItem, editor_.CellChecked(column, row));
    } else {
        RECT text = item.rcItem;
        InflateRect(&text, -look_.metrics.X(cellMargin), 0);
        const Selected font(item.hDC, look_.font);
        SetBkMode(item.hDC, TRANSPARENT);
        SetTextColor(item.hDC, GetSysColor(foreground));
        const std::wstring& cell = editor_.CellText(column, row);
        DrawTextW(item.hDC, cell.c_str(), static_cast<int>(cell.size()), &text, textLook | DT_NOPREFIX);
    }
    if (selected && GetFocus() == item.hwndItem) {
        SetTextColor(item.hDC, GetSysColor(foreground));
        SetBkColor(item.hDC, GetSysColor(background));
        DrawFocusRect(item.hDC, &item.rcItem);
    }
}

void GridPane::DrawCheck(HDC context, const RECT& cell, bool checked) const
{
    const int size = std::min<int>(GetSystemMetrics(SM_CXMENUCHECK), cell.bottom - cell.top - 2);
    const LONG left = (cell.left + cell.right - size) / 2;
    const LONG top = (cell.top + cell.bottom - size) / 2;
    RECT box{left, top, left + size, top + size};
    const ThemeData theme(OpenThemeData(nullptr, L"BUTTON"));  // of no window: it would become that one's own
    if (theme.Get()) {
        DrawThemeBackground(theme.Get(), context, BP_CHECKBOX, checked ? CBS_CHECKEDNORMAL : CBS_UNCHECKEDNORMAL, &box,
                            nullptr);
    } else {
        DrawFrameControl(context, &box, DFC_BUTTON, DFCS_BUTTONCHECK | (checked ? DFCS_CHECKED : 0));
    }
}

}  // namespace tvn2x
