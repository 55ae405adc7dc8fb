#include <algorithm>
#include <string>

#include "editor/Choices.h"
#include "editor/Commands.h"
#include "editor/win32/GridPane.h"

namespace tvn2x {
namespace {

constexpr std::wstring_view emptyHint =
    L"Type a channel into the row above, paste channels from a spreadsheet (Ctrl+V),\n"
    L"or add a row of them by first and last frequency (Ctrl+N).";

bool IsAtTheRight(Column column)
{
    return column == MP_FREQUENCY || column == MP_SYMBOLRATE;
}

}  // namespace

/// Everything is drawn aside first, so that nothing flickers. What there is no memory for stays blank: a message would
/// have the list painted again.
void GridPane::Paint() noexcept
{
    PAINTSTRUCT paint{};
    const HDC window = BeginPaint(window_, &paint);
    const SIZE size = ClientSize(window_);
    try {
        const MemoryContext memory(CreateCompatibleDC(window));
        const Bitmap bitmap(CreateCompatibleBitmap(window, std::max<LONG>(size.cx, 1), std::max<LONG>(size.cy, 1)));
        if (memory.Get() && bitmap.Get()) {
            const Selected drawing(memory.Get(), bitmap.Get());
            Draw(memory.Get());
            BitBlt(window, 0, 0, size.cx, size.cy, memory.Get(), 0, 0, SRCCOPY);
        } else {
            Draw(window);
        }
    } catch (...) {
    }
    EndPaint(window_, &paint);
}

void GridPane::Draw(HDC context) const
{
    const SIZE size = ClientSize(window_);
    Fill(context, GetSysColor(COLOR_WINDOW), {{0, 0, size.cx, size.cy}});
    for (int32_t row = 0; row < editor_.PinnedRows(grid_); ++row) {
        DrawRow(context, row);
    }
    const int32_t count = editor_.RowCount(grid_);
    for (int32_t row = editor_.TopRow(grid_); row < count && RowTop(row) < size.cy; ++row) {
        DrawRow(context, row);
    }
    if (grid_ == Grid::channels && count == 1) {
        DrawHint(context);
    }
    DrawHeadings(context);
}

void GridPane::DrawHeadings(HDC context) const
{
    const bool showsKeys = (SendMessageW(page_, WM_QUERYUISTATE, 0, 0) & UISF_HIDEACCEL) == 0;
    look_.DrawHeading(context, CellRect({}), L"", SortArrow::none, true, showsKeys);
    for (size_t index = 0; index < columns; ++index) {
        const Column column = ColumnAt(index);
        look_.DrawHeading(context, CellRect({-1, column}), HeadingOf(column), editor_.Arrow(column),
                          IsAtTheRight(column), showsKeys);
    }
}

void GridPane::DrawRow(HDC context, int32_t row) const
{
    const bool isSelected = editor_.Selection(grid_).Contains(row);
    const bool isCurrent = row == editor_.SelectedRow(grid_);
    const RowColours colours = look_.ColoursOf(isSelected, HasFocus());
    const SIZE size = ClientSize(window_);
    const LONG top = RowTop(row);
    const RECT area{0, top, size.cx, top + look_.metrics.RowHeight()};
    const int thin = look_.Thin();
    Fill(context, colours.background, {area});
    Fill(context, look_.LineColour(), {{area.left, area.bottom - thin, area.right, area.bottom}});
    if (isCurrent) {
        Fill(context, palette::darkGrey, {{area.left, top, area.right, top + thin}});
        Fill(context, palette::black, {{area.left, area.bottom - thin, area.right, area.bottom}});
    }
    DrawCell(context, {row, std::nullopt}, colours);
    for (size_t index = 0; index < columns; ++index) {
        DrawCell(context, {row, ColumnAt(index)}, colours);
    }
}

void GridPane::DrawCell(HDC context, const GridPlace& place, RowColours colours) const
{
    const int thin = look_.Thin();
    RECT cell = CellRect(place);
    cell.bottom = cell.top + look_.metrics.RowHeight();
    Fill(context, look_.LineColour(), {{cell.right - thin, cell.top, cell.right, cell.bottom}});
    RECT text = cell;
    InflateRect(&text, -look_.metrics.X(cellMargin), 0);
    const int32_t number = place.row + 1 - editor_.PinnedRows(grid_);
    const bool isNew = grid_ == Grid::channels && place.row == editor_.RowCount(grid_) - 1;
    if (!place.column) {
        const std::wstring shown = isNew ? L"*" : number > 0 ? std::to_wstring(number) : L"";
        const bool isSelected = editor_.Selection(grid_).Contains(place.row);
        const COLORREF colour = isSelected ? colours.text : ReadableOn(colours.background, look_.PaleText());
        return look_.DrawSingleLine(context, text, shown, colour, DT_RIGHT | DT_NOPREFIX);
    }
    if (IsCheckColumn(*place.column)) {
        look_.DrawCheck(context, cell, editor_.CheckOf(*place.column, place.row));
    } else {
        look_.DrawSingleLine(context, text, editor_.CellText(*place.column, place.row), colours.text,
                             DT_NOPREFIX | (IsAtTheRight(*place.column) ? DT_RIGHT : 0));
    }
    if (*place.column == MP_FREQUENCY) {
        const ChannelMark::Kind mark = editor_.MarkOf(grid_, place.row).kind;
        const int side = mark == ChannelMark::Kind::none ? 0 : look_.metrics.RowHeight() / 3;
        for (LONG line = 0; line < side; ++line) {
            Fill(context, look_.MarkColour(mark == ChannelMark::Kind::equal),
                 {{cell.left, cell.top + line, cell.left + side - line, cell.top + line + 1}});
        }
    }
    const bool isCurrent = place.row == editor_.SelectedRow(grid_) && *place.column == editor_.CurrentColumn(grid_);
    if (isCurrent && GetFocus() == window_) {
        const auto [left, top, right, bottom] = cell;
        Fill(context, colours.text,
             {{left, top, right, top + 2 * thin},
              {left, bottom - 2 * thin, right, bottom},
              {left, top, left + 2 * thin, bottom},
              {right - 2 * thin, top, right, bottom}});
    }
}

/// In the middle below the row in which the first channel can be typed.
void GridPane::DrawHint(HDC context) const
{
    const SIZE size = ClientSize(window_);
    RECT area{0, RowTop(1) + look_.metrics.RowHeight(), size.cx, size.cy};
    const Selected font(context, look_.font);
    SetBkMode(context, TRANSPARENT);
    SetTextColor(context, look_.PaleText());
    DrawTextW(context, emptyHint.data(), static_cast<int>(emptyHint.size()), &area,
              DT_CENTER | DT_WORDBREAK | DT_NOPREFIX);
}

}  // namespace tvn2x
