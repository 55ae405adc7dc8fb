#include <algorithm>
#include <utility>

#include "editor/Editor.h"
#include "editor/EditorKeys.h"

namespace tvn2x {

bool Editor::IsEditable(Column column, int32_t row) const
{
    const GridRows& grid = Rows(column);
    const int32_t first = grid.grid == Grid::parameters ? 1 : 0;
    return !IsCheckColumn(column) && row >= first && row < grid.Count();
}

/// A caption without the level unit that stands behind it.
std::wstring Editor::WithoutUnit(std::wstring text) const
{
    const std::wstring suffix = WithUnit({});
    if (text.ends_with(suffix)) {
        text.resize(text.size() - suffix.size());
    }
    return text;
}

std::wstring Editor::WithUnit(const std::wstring& text) const
{
    return text + L" (" + levelUnit_ + L")";
}

void Editor::SetCell(Column column, int32_t row, std::wstring text)
{
    std::wstring& cell = Rows(column).Text(column, row);
    if (cell == text) {
        return;
    }
    cell = std::move(text);
    view_.CellChanged(column, row);
}

void Editor::SelectRow(GridRows& grid, int32_t row)
{
    grid.Select(row);
    SyncGridColumns(grid);
}

void Editor::SetVisibleRows(Grid name, int32_t rows)
{
    GridRows& grid = Rows(name);
    grid.visible = std::max(rows, 1);
    grid.ScrollTo(grid.top);
    SyncGridColumns(grid);
}

void Editor::CellClicked(Column column, int32_t row)
{
    CommitCellEdit(Leave::elsewhere);
    GridRows& grid = Rows(column);
    if (row < 0 || row >= grid.Count()) {
        return;
    }
    SelectRow(grid, row);
    if (IsCheckColumn(column)) {
        ToggleCheck(column, row);
    } else {
        BeginCellEdit(column, row, grid.top);
    }
}

void Editor::RowSelected(Column column, int32_t row)
{
    CommitCellEdit(Leave::elsewhere);
    if (row >= 0 && row < Rows(column).Count()) {
        SelectRow(Rows(column), row);
    }
}

void Editor::Scrolled(Column column, int32_t topRow)
{
    GridRows& grid = Rows(column);
    if (topRow == grid.top) {
        return;
    }
    if (GridOf(edit_.column) == grid.grid) {
        CommitCellEdit(Leave::toList);
    }
    grid.ScrollTo(topRow);
    SyncGridColumns(grid);
}

bool Editor::ListChar(Column column, wchar_t character)
{
    if (character != key::space) {
        return false;
    }
    CellClicked(column, Rows(column).selected);
    return true;
}

void Editor::BeginCellEdit(Column column, int32_t row, int32_t topRow)
{
    CommitCellEdit(Leave::elsewhere);
    if (!IsEditable(column, row)) {
        return;
    }
    GridRows& grid = Rows(column);
    std::wstring text = grid.Text(column, row);
    if (column == captionColumn && grid.At(row).itemData == MP_RFLEV) {
        text = WithoutUnit(std::move(text));
    }
    const auto length = static_cast<int32_t>(text.size());
    edit_ = {true, column, row, std::move(text), 0, length};
    grid.ScrollTo(topRow);
    SelectRow(grid, row);
    view_.CellEditorChanged();
    view_.ButtonRolesChanged();
    view_.Focus(Control::cellEditor, column);
}

bool Editor::CellKeyDown(int32_t pressed, bool shift)
{
    if (!edit_.open) {
        return false;
    }
    switch (pressed) {
        case key::enter:
            CommitCellEdit(Leave::toList);
            return true;
        case key::escape:
            CloseCellEdit(Leave::toList);
            return true;
        case key::tab:
            MoveCell(shift);
            return true;
        default:
            return false;
    }
}

bool Editor::CellChar(wchar_t character)
{
    if (character == key::enter || character == key::escape) {
        return false;
    }
    const bool isNumber = edit_.column == MP_FREQUENCY || edit_.column == MP_SYMBOLRATE;
    if (!isNumber || IsClipboardKey(character) || character == key::backspace || IsNumericKey(character)) {
        return true;
    }
    view_.Beep();
    return false;
}

/// Puts the edited text into its cell. Text in the placeholder row makes a channel of it, with a new placeholder below.
void Editor::CommitCellEdit(Leave leave)
{
    if (!edit_.open) {
        return;
    }
    const auto [open, column, row, text, start, length] = edit_;
    GridRows& grid = Rows(column);
    const bool hasUnit = column == captionColumn && grid.At(row).itemData == MP_RFLEV;
    const std::wstring& cell = grid.Text(column, row);
    const bool changed = text != (hasUnit ? WithoutUnit(cell) : cell);
    if (changed) {
        std::wstring committed = hasUnit ? WithUnit(WithoutUnit(text)) : text;
        if (grid.grid == Grid::channels && row == grid.Count() - 1 && text != noValue) {
            std::wstring symbolRate = Text(Field::defaultSymbolRate);
            grid.rows.push_back(PlaceholderRow());
            view_.RowsInserted(grid.grid, grid.Count() - 1, 1);
            if (column != MP_SYMBOLRATE) {
                SetCell(MP_SYMBOLRATE, row, std::move(symbolRate));
            }
        }
        SetCell(column, row, std::move(committed));
    }
    CloseCellEdit(leave);
}

void Editor::CloseCellEdit(Leave leave)
{
    const Column column = edit_.column;
    GridRows& grid = Rows(column);
    edit_.open = false;
    SelectRow(grid, edit_.row);
    view_.CellEditorChanged();
    view_.ButtonRolesChanged();
    const bool isEnabled = page_ == (grid.grid == Grid::channels ? Page::frequencies : Page::parameters);
    if (leave == Leave::toList && isEnabled) {
        view_.Focus(Control::list, column);
    }
}

/// The cell that Tab or Shift+Tab leads to: across a channel's columns, then to the next row, round the whole grid.
/// Captions are the only column of their grid, below the row that stands for all of them.
void Editor::MoveCell(bool backwards)
{
    Column column = edit_.column;
    int32_t row = edit_.row;
    CommitCellEdit(Leave::elsewhere);
    const GridRows& grid = Rows(column);
    const bool inChannels = grid.grid == Grid::channels;
    const Column firstColumn = inChannels ? MP_FIRSTFIXED : captionColumn;
    const Column lastColumn = inChannels ? MP_LASTFIXED : captionColumn;
    const int32_t firstRow = inChannels ? 0 : 1;
    const int32_t lastRow = grid.Count() - 1;
    if (backwards && --column < firstColumn) {
        column = lastColumn;
        row = row > firstRow ? row - 1 : lastRow;
    } else if (!backwards && ++column > lastColumn) {
        column = firstColumn;
        row = row < lastRow ? row + 1 : firstRow;
    }
    BeginCellEdit(column, row, grid.top);
}

}  // namespace tvn2x
