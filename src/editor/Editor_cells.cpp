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
    return text + L" (" + std::wstring(LevelUnit()) + L")";
}

void Editor::SetCell(Column column, int32_t row, std::wstring text)
{
    GridRows& grid = Rows(column);
    if (grid.Text(column, row) == text) {
        return;
    }
    grid.Change(row).text[grid.Index(column)] = std::move(text);
    view_.CellChanged(column, row);
}

/// What was in sight of the current row and of an open cell stays in sight.
void Editor::SetVisibleRows(Grid name, int32_t rows)
{
    GridRows& grid = Rows(name);
    const int32_t kept = edit_.open && GridOf(edit_.column) == name ? edit_.row : grid.selection.Current();
    const bool wasInSight = grid.IsInSight(kept);
    grid.visible = std::max(rows, 1);
    grid.ScrollTo(grid.top);
    if (wasInSight) {
        grid.Show(kept);
    }
    SyncGridColumns(grid);
}

void Editor::CellClicked(Column column, int32_t row)
{
    CommitCellEdit(Leave::elsewhere);
    GridRows& grid = Rows(column);
    if (row < 0 || row >= grid.Count()) {
        return;
    }
    grid.column = column;
    SelectRow(grid, row);
    if (IsCheckColumn(column)) {
        ToggleChecks(column, {row});
    } else {
        BeginCellEdit(column, row, grid.top);
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

/// The characters that can stand in a cell.
bool Editor::Takes(Column column, wchar_t character) const
{
    const bool isNumber = column == MP_FREQUENCY || column == MP_SYMBOLRATE;
    return character >= key::space && character != key::deleted && (!isNumber || IsNumericKey(character));
}

/// A blank opens a cell with its text, any other character in place of its text.
bool Editor::ListChar(Column column, wchar_t character)
{
    const GridRows& grid = Rows(column);
    const int32_t row = grid.selection.Current();
    if (character == key::space && IsCheckColumn(column)) {
        ToggleChecks(column, grid.selection.Contains(0) ? std::vector<int32_t>{0} : grid.SelectedRows());
        return true;
    }
    if (character == key::space) {
        CellClicked(column, row);
        return true;
    }
    if (character < key::space || character == key::deleted) {
        return false;
    }
    if (!IsEditable(column, row) || !Takes(column, character)) {
        view_.Beep();
        return true;
    }
    OpenCell(column, row, std::wstring(1, character), false);
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
    grid.ScrollTo(topRow);
    OpenCell(column, row, std::move(text), true);
}

/// Opens a cell with a text that is selected, or with one behind whose end the user goes on.
void Editor::OpenCell(Column column, int32_t row, std::wstring text, bool isSelected)
{
    CommitCellEdit(Leave::elsewhere);
    const auto length = static_cast<int32_t>(text.size());
    edit_ = {true, column, row, std::move(text), isSelected ? 0 : length, isSelected ? length : 0};
    GridRows& grid = Rows(column);
    grid.column = column;
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
        case key::up:
        case key::down:
            if (shift) {
                return false;
            }
            MoveCellBy(pressed == key::up ? -1 : 1);
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
    if (text != (hasUnit ? WithoutUnit(cell) : cell)) {
        Change(grid.grid, [&, at = column, edited = row, &typed = text] {
            std::wstring committed = hasUnit ? WithUnit(WithoutUnit(typed)) : typed;
            if (grid.grid == Grid::channels && edited == grid.Count() - 1 && typed != noValue) {
                std::wstring symbolRate = Text(Field::defaultSymbolRate);
                grid.rows.push_back(PlaceholderRow());
                view_.RowsInserted(grid.grid, grid.Count() - 1, 1);
                if (at != MP_SYMBOLRATE) {
                    SetCell(MP_SYMBOLRATE, edited, std::move(symbolRate));
                }
            }
            SetCell(at, edited, std::move(committed));
        });
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

/// Opens the cell above or below; the first and the last one stay open.
void Editor::MoveCellBy(int32_t step)
{
    const Column column = edit_.column;
    const int32_t row = edit_.row + step;
    if (row < Rows(column).FirstRow() || (step > 0 && edit_.row == Rows(column).Count() - 1)) {
        return;
    }
    CommitCellEdit(Leave::elsewhere);
    BeginCellEdit(column, row, Rows(column).top);
}

}  // namespace tvn2x
