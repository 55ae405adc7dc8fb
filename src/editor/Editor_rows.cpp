#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <random>
#include <string>
#include <utility>

#include "editor/Editor.h"
#include "editor/EditorKeys.h"
#include "editor/NaturalOrder.h"
#include "util/clsQuickSort.h"

namespace tvn2x {
namespace {

constexpr int32_t mostParameters = std::numeric_limits<int16_t>::max();  // display positions have 16 bits

/// By way of bytes, which is much faster than std::to_wstring.
std::wstring Digits(int32_t number)
{
    const std::string digits = std::to_string(number);
    return {digits.begin(), digits.end()};
}

/// Several rows, or one with a neighbour on that side. The placeholder may be selected with them.
bool HasRowsToFill(const GridRows& grid, int32_t neighbour)
{
    const std::vector<int32_t> rows = grid.SelectedRows();
    return rows.size() > 1 || (rows.size() == 1 && grid.Takes(rows.front() + neighbour));
}

}  // namespace

bool Editor::CanExecute(RowCommand command, Grid name) const
{
    const GridRows& grid = Rows(name);
    const bool inChannels = name == Grid::channels;
    const RowSelection& selected = grid.selection;
    const bool hasRows = selected.First() <= grid.LastRow() && selected.Last() >= grid.FirstRow();
    switch (command) {
        case RowCommand::insert:
            return inChannels || lists_.parameterCount < mostParameters;
        case RowCommand::remove:
        case RowCommand::copy:
            return hasRows;
        case RowCommand::cut:
        case RowCommand::duplicate:
            return hasRows && inChannels;
        case RowCommand::moveUp:
            return hasRows && !selected.Contains(grid.FirstRow());
        case RowCommand::moveDown:
            return hasRows && !selected.Contains(grid.LastRow());
        case RowCommand::undo:
            return history_.CanUndo() || edit_.open;
        case RowCommand::redo:
            return history_.CanRedo();
        case RowCommand::fillDown:
            return HasRowsToFill(grid, -1);
        case RowCommand::fillSeries:
            return inChannels && HasRowsToFill(grid, 1);
        case RowCommand::selectAll:
        case RowCommand::goTo:
            return grid.LastRow() >= grid.FirstRow() && (inChannels || command == RowCommand::selectAll);
        case RowCommand::editCell:
            return IsCheckColumn(grid.column) || IsEditable(grid.column, selected.Current());
        case RowCommand::sort:
            return inChannels && grid.Count() > 1;
        case RowCommand::pasteRows:
        case RowCommand::addChannels:
            return inChannels;
        case RowCommand::paste:
        case RowCommand::find:
        case RowCommand::findNext:
            return true;
    }
    return false;
}

void Editor::Execute(RowCommand command, Grid name)
{
    CommitCellEdit(Leave::elsewhere);
    GridRows& grid = Rows(name);
    if (!CanExecute(command, name)) {
        return view_.Beep();
    }
    switch (command) {
        case RowCommand::insert:
            return Change(name, [&] { InsertRow(grid); });
        case RowCommand::remove:
            return Change(name, [&] { DeleteRows(grid); });
        case RowCommand::moveUp:
        case RowCommand::moveDown:
            return Change(name, [&] { MoveRows(grid, command == RowCommand::moveUp ? -1 : 1); });
        case RowCommand::undo:
        case RowCommand::redo:
            return Step(command == RowCommand::undo);
        case RowCommand::cut:
            return Copy(grid) ? Change(name, [&] { DeleteRows(grid); }) : void();
        case RowCommand::copy:
            Copy(grid);
            return;
        case RowCommand::paste:
        case RowCommand::pasteRows:
            return Paste(grid, command == RowCommand::pasteRows);
        case RowCommand::duplicate:
            return Change(name, [&] { DuplicateRows(grid); });
        case RowCommand::fillDown:
            return Change(name, [&] { FillDown(grid); });
        case RowCommand::fillSeries:
            return AskForSeries(grid);
        case RowCommand::addChannels:
            return AskForChannels();
        case RowCommand::find:
            return AskForText(grid);
        case RowCommand::findNext:
            return sought_.empty() ? AskForText(grid) : FindNext(grid) ? void() : view_.Beep();
        case RowCommand::goTo:
            return AskForChannel();
        case RowCommand::selectAll:
            grid.selection.Range(grid.FirstRow(), grid.LastRow());
            return SyncGridColumns(grid);
        case RowCommand::editCell:
            return CellClicked(grid.column, grid.selection.Current());
        case RowCommand::sort:
            return HeadingClicked(grid.column);
    }
}

/// A new parameter gets the next number, and is neither displayed nor saved.
GridRow Editor::NewRow(const GridRows& grid) const
{
    return grid.grid == Grid::parameters ? GridRow{{noValue, L" ", L" "}, {}, lists_.parameterCount + 1}
                                         : GridRow{{noValue, noValue, Text(Field::defaultSymbolRate)}, {}, 0};
}

/// A new row above the selected ones.
void Editor::InsertRow(GridRows& grid)
{
    const int32_t row = std::max(grid.selection.First(), grid.FirstRow());
    grid.Insert(row, NewRow(grid));
    lists_.parameterCount += grid.grid == Grid::parameters ? 1 : 0;
    view_.RowsInserted(grid.grid, row, 1);
    SelectRow(grid, row);
    RenumberGroup(grid);
}

void Editor::DeleteRows(GridRows& grid)
{
    const std::vector<int32_t> rows = grid.SelectedRows();
    std::vector<SharedRow> kept;
    kept.reserve(grid.rows.size() - rows.size());
    std::vector<int32_t> forgotten;
    auto next = rows.begin();
    for (int32_t row = 0; row < grid.Count(); ++row) {
        if (next != rows.end() && *next == row) {
            ++next;
            if (grid.At(row).itemData > MP_LAST) {
                forgotten.push_back(grid.At(row).itemData);
            }
        } else {
            kept.push_back(grid.rows[static_cast<size_t>(row)]);
        }
    }
    grid.rows = std::move(kept);
    std::sort(forgotten.rbegin(), forgotten.rend());
    for (const int32_t parameter : forgotten) {
        ForgetParameter(parameter);
    }
    if (rows.size() == 1) {
        view_.RowsRemoved(grid.grid, rows.front(), 1);
    } else {
        view_.GridChanged(grid.grid);
    }
    SelectRow(grid, std::min(rows.front(), grid.Count() - 1));
    RenumberGroup(grid);
    if (grid.grid == Grid::channels && grid.Count() == 1) {
        ClearArrows();
    }
}

void Editor::DuplicateRows(GridRows& grid)
{
    const std::vector<int32_t> rows = grid.SelectedRows();
    std::vector<SharedRow> copies;
    copies.reserve(rows.size());
    for (const int32_t row : rows) {
        copies.push_back(grid.rows[static_cast<size_t>(row)]);
    }
    const int32_t at = rows.back() + 1;
    grid.rows.insert(grid.rows.begin() + at, copies.begin(), copies.end());
    const auto count = static_cast<int32_t>(copies.size());
    view_.RowsInserted(grid.grid, at, count);
    grid.selection.Range(at, at + count - 1);
    grid.Show(at + count - 1);
    SyncGridColumns(grid);
}

/// Added parameters stay numbered without gaps. The catalogue's own numbers are fixed.
void Editor::ForgetParameter(int32_t parameter)
{
    GridRows& parameters = lists_.parameters;
    for (int32_t row = 0; row < parameters.Count(); ++row) {
        if (parameters.At(row).itemData > parameter) {
            --parameters.Change(row).itemData;
        }
    }
    --lists_.parameterCount;
}

/// All selected rows by one place, those between them staying between them.
void Editor::MoveRows(GridRows& grid, int32_t step)
{
    std::vector<int32_t> rows = grid.SelectedRows();
    const int32_t current = grid.selection.Current() + step;
    if (step > 0) {
        std::reverse(rows.begin(), rows.end());
    }
    for (int32_t& row : rows) {
        const int32_t other = row + step;
        std::swap(grid.rows[static_cast<size_t>(row)], grid.rows[static_cast<size_t>(other)]);
        for (size_t index = 0; index < 3; ++index) {
            view_.CellChanged(grid.ColumnAt(index), row);
            view_.CellChanged(grid.ColumnAt(index), other);
        }
        row += step;
    }
    std::sort(rows.begin(), rows.end());
    RenumberGroup(grid);
    if (grid.grid == Grid::channels) {
        ClearArrows();
    }
    SelectRows(grid, rows, current);
}

/// What follows from the rows as they now are: the first parameter row shows what all the others are.
void Editor::RenumberGroup(const GridRows& grid)
{
    if (grid.grid == Grid::channels) {
        return;
    }
    view_.CellChanged(displayColumn, 0);
    view_.CellChanged(saveColumn, 0);
}

void Editor::Mark(Column column, int32_t row, bool checked)
{
    if (lists_.parameters.At(row).checked[static_cast<size_t>(column)] == checked) {
        return;
    }
    lists_.parameters.Change(row).checked[static_cast<size_t>(column)] = checked;
    view_.CellChanged(column, row);
}

/// The same mark in the other list where the two are coupled.
void Editor::MarkCoupled(Column column, int32_t row, bool checked)
{
    Mark(column, row, checked);
    if (Checked(Check::couple)) {
        Mark(column == displayColumn ? saveColumn : displayColumn, row, checked);
    }
}

/// Several rows become alike. The first row goes for every parameter, and sets them all where they are mixed.
void Editor::ToggleChecks(Column column, const std::vector<int32_t>& rows)
{
    if (rows.empty()) {
        return;
    }
    const bool checked = CheckOf(column, rows.front()) != CheckState::on;
    Change(Grid::parameters, [&] {
        if (rows.front() == 0) {
            for (int32_t row = lists_.parameters.FirstRow(); row <= lists_.parameters.LastRow(); ++row) {
                MarkCoupled(column, row, checked);
            }
        }
        for (const int32_t row : rows) {
            if (row != 0) {
                MarkCoupled(column, row, checked);
            }
        }
        RenumberGroup(lists_.parameters);
    });
}

void Editor::HeadingAccessKey(Column column)
{
    const bool isThere = focus_ == Control::list && GridOf(focusColumn_) == GridOf(column);
    if (isThere && Rows(column).column == column) {
        HeadingClicked(column);
    } else {
        Rows(column).column = column;
        SyncGridColumns(Rows(column));
        view_.Focus(Control::list, column);
    }
}

void Editor::HeadingClicked(Column column)
{
    CommitCellEdit(Leave::elsewhere);
    if (GridOf(column) != Grid::channels || lists_.channels.Count() < 2) {
        return;
    }
    if (lists_.channels.Count() - 1 > clsQuickSort::mostRows) {
        messages_.Show(
            L"The list has more than " + std::to_wstring(clsQuickSort::mostRows) + L" channels and cannot be sorted.",
            L"Setup", MessageIcon::warning);
        return;
    }
    lists_.channels.column = column;
    const SortArrow arrow = Arrow(column) == SortArrow::up ? SortArrow::down : SortArrow::up;
    Change(Grid::channels, [&] { SortChannels(column, arrow); });
}

/// The channels in the order of one column, labels naturally: the row that each place takes. Cells that are no number
/// come last in either direction, and equal channels keep their order.
std::vector<int32_t> Editor::OrderBy(Column column, SortArrow arrow) const
{
    enum : int32_t
    {
        value = 1,
        position = 2
    };
    const GridRows& channels = lists_.channels;
    const bool isNumber = column != MP_USERFIELD;
    std::vector<std::wstring_view> labels;
    for (int32_t row = 0; row <= channels.LastRow() && !isNumber; ++row) {
        labels.push_back(channels.Text(column, row));
    }
    const std::vector<int32_t> ranks = NaturalRanks(labels);
    clsQuickSort sorter(locale_);
    sorter.Cols(position);
    for (const int32_t each : {value, position}) {
        sorter.ColPriority(each, each);
        sorter.ColType(each, clsQuickSort::numeric);
    }
    sorter.ColDirection(value, arrow == SortArrow::up ? clsQuickSort::ascending : clsQuickSort::descending);
    std::vector<int32_t> rows(static_cast<size_t>(channels.LastRow() + 1));
    std::iota(rows.begin(), rows.end(), 0);
    const auto missing = std::stable_partition(rows.begin(), rows.end(), [&](int32_t row) {
        return !isNumber || !std::isnan(NumberIn(channels.Text(column, row)));
    });
    // The sorter is slow where a list is turned round, as by the second click on a heading, and never where it is
    // shuffled.
    std::shuffle(rows.begin(), missing, std::minstd_rand());
    for (auto row = rows.begin(); row != missing; ++row) {
        const int32_t added = sorter.AddRow();
        sorter.Cell(added, value, isNumber ? channels.Text(column, *row) : Digits(ranks[static_cast<size_t>(*row)]));
        sorter.Cell(added, position, Digits(*row));
    }
    sorter.Sort();
    for (int32_t place = 0; place < sorter.Rows(); ++place) {
        rows[static_cast<size_t>(place)] = std::stoi(sorter.Cell(place + 1, position));
    }
    return rows;
}

/// Selected channels stay selected.
void Editor::SortChannels(Column column, SortArrow arrow)
{
    GridRows& channels = lists_.channels;
    std::vector<int32_t> order = OrderBy(column, arrow);
    order.push_back(channels.Count() - 1);
    std::vector<SharedRow> sorted;
    sorted.reserve(channels.rows.size());
    std::vector<int32_t> selected;
    int32_t current = 0;
    for (const int32_t before : order) {
        const auto place = static_cast<int32_t>(sorted.size());
        if (channels.selection.Contains(before)) {
            selected.push_back(place);
        }
        current = before == channels.selection.Current() ? place : current;
        sorted.push_back(channels.rows[static_cast<size_t>(before)]);
    }
    channels.rows = std::move(sorted);
    view_.GridChanged(Grid::channels);
    SetArrows(column, arrow);
    SelectRows(channels, selected, current);
}

/// One heading has the arrow, the others have none.
void Editor::SetArrows(Column column, SortArrow arrow)
{
    GridRows& channels = lists_.channels;
    for (size_t index = 0; index < channels.arrows.size(); ++index) {
        channels.arrows[index] = channels.ColumnAt(index) == column ? arrow : SortArrow::none;
        view_.ArrowChanged(channels.ColumnAt(index));
    }
}

}  // namespace tvn2x
