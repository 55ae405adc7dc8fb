#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "editor/Editor.h"
#include "editor/EditorKeys.h"
#include "util/clsQuickSort.h"

namespace tvn2x {
namespace {

constexpr int32_t mostParameters = std::numeric_limits<int16_t>::max();  // display positions have 16 bits

/// The rows that a command can take: neither the row for all parameters nor the placeholder.
int32_t FirstRow(const GridRows& grid)
{
    return grid.grid == Grid::parameters ? 1 : 0;
}
int32_t LastRow(const GridRows& grid)
{
    return grid.Count() - (grid.grid == Grid::channels ? 2 : 1);
}

bool Takes(const GridRows& grid, int32_t row)
{
    return row >= FirstRow(grid) && row <= LastRow(grid);
}

}  // namespace

void Editor::Execute(RowCommand command, Grid name)
{
    CommitCellEdit(Leave::elsewhere);
    GridRows& grid = Rows(name);
    switch (command) {
        case RowCommand::insert:
            return InsertRow(grid);
        case RowCommand::remove:
            return DeleteRow(grid);
        case RowCommand::moveUp:
            return MoveRow(grid, -1);
        case RowCommand::moveDown:
            return MoveRow(grid, 1);
    }
}

/// A new row at the selected one. A new parameter gets the next number, and is neither displayed nor saved.
void Editor::InsertRow(GridRows& grid)
{
    const bool isParameter = grid.grid == Grid::parameters;
    if (isParameter && parameterCount_ >= mostParameters) {
        return view_.Beep();
    }
    const int32_t row = std::max(grid.selected, FirstRow(grid));
    GridRow inserted = isParameter ? GridRow{{noValue, L" ", L" "}, {}, parameterCount_ + 1}
                                   : GridRow{{noValue, noValue, Text(Field::defaultSymbolRate)}, {}, 0};
    grid.rows.insert(grid.rows.begin() + row, std::move(inserted));
    parameterCount_ += isParameter ? 1 : 0;
    view_.RowsInserted(grid.grid, row, 1);
    SelectRow(grid, row);
    RenumberGroup(grid);
}

void Editor::DeleteRow(GridRows& grid)
{
    const int32_t row = grid.selected;
    if (!Takes(grid, row)) {
        return view_.Beep();
    }
    const int32_t parameter = grid.At(row).itemData;
    grid.rows.erase(grid.rows.begin() + row);
    if (parameter > MP_LAST) {
        ForgetParameter(parameter);
    }
    view_.RowsRemoved(grid.grid, row, 1);
    SelectRow(grid, std::min(row, grid.Count() - 1));
    RenumberGroup(grid);
    if (grid.grid == Grid::channels && grid.Count() == 1) {
        ClearArrows();
    }
}

/// Added parameters stay numbered without gaps. The catalogue's own numbers are fixed.
void Editor::ForgetParameter(int32_t parameter)
{
    for (GridRow& row : parameters_.rows) {
        row.itemData -= row.itemData > parameter ? 1 : 0;
    }
    --parameterCount_;
}

void Editor::MoveRow(GridRows& grid, int32_t step)
{
    const int32_t row = grid.selected;
    if (!Takes(grid, row) || !Takes(grid, row + step)) {
        return view_.Beep();
    }
    std::swap(grid.At(row), grid.At(row + step));
    for (size_t index = 0; index < 3; ++index) {
        view_.CellChanged(grid.ColumnAt(index), row);
        view_.CellChanged(grid.ColumnAt(index), row + step);
    }
    RenumberGroup(grid);
    if (grid.grid == Grid::channels) {
        ClearArrows();
    }
    SelectRow(grid, row + step);
}

/// What follows from the rows as they now are: the first parameter row shows whether all the others are marked.
void Editor::RenumberGroup(const GridRows& grid)
{
    if (grid.grid == Grid::channels) {
        return;
    }
    Mark(displayColumn, 0, AllAreSet(displayColumn));
    Mark(saveColumn, 0, AllAreSet(saveColumn));
}

bool Editor::AllAreSet(Column column) const
{
    const std::vector<GridRow>& rows = parameters_.rows;
    return rows.size() > 1 && std::all_of(rows.begin() + 1, rows.end(),
                                          [&](const GridRow& row) { return row.checked[static_cast<size_t>(column)]; });
}

void Editor::Mark(Column column, int32_t row, bool checked)
{
    bool& mark = parameters_.At(row).checked[static_cast<size_t>(column)];
    if (mark == checked) {
        return;
    }
    mark = checked;
    view_.CellChanged(column, row);
}

/// A mark in the first row goes for every parameter, a coupled one for both lists.
void Editor::ToggleCheck(Column column, int32_t row)
{
    const bool checked = !CellChecked(column, row);
    const int32_t first = row == 0 ? 1 : row;
    const int32_t last = row == 0 ? parameters_.Count() - 1 : row;
    for (const Column list : {displayColumn, saveColumn}) {
        if (list != column && !Checked(Check::couple)) {
            continue;
        }
        for (int32_t each = first; each <= last; ++each) {
            Mark(list, each, checked);
        }
    }
    RenumberGroup(parameters_);
}

void Editor::HeadingAccessKey(Column column)
{
    if (focus_ == Control::list && focusColumn_ == column) {
        HeadingClicked(column);
    } else {
        view_.Focus(Control::list, column);
    }
}

void Editor::HeadingClicked(Column column)
{
    CommitCellEdit(Leave::elsewhere);
    if (GridOf(column) != Grid::channels || channels_.Count() < 2) {
        return;
    }
    if (channels_.Count() - 1 > clsQuickSort::mostRows) {
        messages_.Show(
            L"The list has more than " + std::to_wstring(clsQuickSort::mostRows) + L" channels and cannot be sorted.",
            L"Setup", MessageIcon::warning);
        return;
    }
    SortChannels(column, Arrow(column) == SortArrow::up ? SortArrow::down : SortArrow::up);
}

/// Sorts by one column. Cells that are no number come last in either direction, and equal channels keep their order.
/// The selected channel stays selected.
void Editor::SortChannels(Column column, SortArrow arrow)
{
    enum : int32_t
    {
        missing = 1,
        cell = 2,
        position = 3
    };
    const bool isNumber = column != MP_USERFIELD;
    clsQuickSort sorter(locale_);
    sorter.Cols(position);
    for (const int32_t each : {missing, cell, position}) {
        sorter.ColPriority(each, each);
        sorter.ColType(each, each != cell || isNumber ? clsQuickSort::numeric : clsQuickSort::text);
    }
    sorter.ColDirection(cell, arrow == SortArrow::up ? clsQuickSort::ascending : clsQuickSort::descending);
    for (int32_t row = 0; row < channels_.Count() - 1; ++row) {
        const std::wstring& text = channels_.Text(column, row);
        const bool isMissing = isNumber && std::isnan(NumberIn(text));
        const int32_t added = sorter.AddRow();
        sorter.Cell(added, missing, isMissing ? L"1" : L"0");
        sorter.Cell(added, cell, isMissing ? L"0" : text);
        sorter.Cell(added, position, std::to_wstring(row));
    }
    sorter.Sort();

    std::vector<GridRow> sorted;
    sorted.reserve(channels_.rows.size());
    int32_t selected = channels_.selected;
    for (int32_t row = 1; row <= sorter.Rows(); ++row) {
        const int32_t before = std::stoi(sorter.Cell(row, position));
        if (before == channels_.selected) {
            selected = row - 1;
        }
        sorted.push_back(std::move(channels_.At(before)));
    }
    sorted.push_back(std::move(channels_.rows.back()));
    channels_.rows = std::move(sorted);
    view_.GridChanged(Grid::channels);
    SetArrows(column, arrow);
    SelectRow(channels_, selected);
}

/// One heading has the arrow, the others have none.
void Editor::SetArrows(Column column, SortArrow arrow)
{
    for (size_t index = 0; index < channels_.arrows.size(); ++index) {
        channels_.arrows[index] = channels_.ColumnAt(index) == column ? arrow : SortArrow::none;
        view_.ArrowChanged(channels_.ColumnAt(index));
    }
}

}  // namespace tvn2x
