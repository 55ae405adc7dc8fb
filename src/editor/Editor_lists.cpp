#include <algorithm>
#include <utility>

#include "editor/Editor.h"
#include "editor/EditorKeys.h"
#include "setup/catalogue/Patterns.h"
#include "util/modFormat.h"

namespace tvn2x {

// Changes that can be undone.

void Editor::Change(Grid grid, const std::function<void()>& work)
{
    Lists before = lists_;
    marksAreOld_ = true;
    try {
        work();
        history_.Record(before, lists_, grid);
    } catch (...) {
        lists_ = std::move(before);
        ListsChanged();
        throw;
    }
}

/// Shows lists of which anything may be another than before.
void Editor::ListsChanged()
{
    marksAreOld_ = true;
    for (GridRows* const grid : {&lists_.channels, &lists_.parameters}) {
        grid->Show(grid->selection.Current());
        view_.GridChanged(grid->grid);
    }
    for (size_t index = 0; index < lists_.channels.arrows.size(); ++index) {
        view_.ArrowChanged(lists_.channels.ColumnAt(index));
    }
    int32_t& unit = controls_.choices[static_cast<size_t>(Choice::levelUnit)];
    if (unit != lists_.levelUnit) {
        unit = lists_.levelUnit;
        view_.ChoiceChanged(Choice::levelUnit);
    }
}

/// One change back or forth again, on the page where the user sees it.
void Editor::Step(bool undo)
{
    const int32_t unit = lists_.levelUnit;
    const Grid grid = undo ? history_.Undo(lists_) : history_.Redo(lists_);
    ListsChanged();
    if (unit != lists_.levelUnit) {
        return SelectPage(Page::settings);
    }
    SelectPage(grid == Grid::channels ? Page::frequencies : Page::parameters);
    view_.Focus(Control::list, Rows(grid).column);
}

// The selection.

void Editor::SelectRow(GridRows& grid, int32_t row)
{
    grid.Select(row);
    SyncGridColumns(grid);
}

void Editor::SelectRows(GridRows& grid, const std::vector<int32_t>& rows, int32_t current)
{
    grid.selection.Set(rows, current);
    grid.Show(grid.selection.Current());
    SyncGridColumns(grid);
}

void Editor::RowSelected(Column column, int32_t row)
{
    CommitCellEdit(Leave::elsewhere);
    if (row >= 0 && row < Rows(column).Count()) {
        Rows(column).column = column;
        SelectRow(Rows(column), row);
    }
}

bool Editor::CellPressed(Column column, int32_t row, unsigned modifiers)
{
    CommitCellEdit(Leave::elsewhere);
    GridRows& grid = Rows(column);
    if (row < 0 || row >= grid.Count()) {
        return false;
    }
    grid.column = column;
    if ((modifiers & modifier::shift) != 0) {
        grid.selection.ExtendTo(row);
    } else if ((modifiers & modifier::control) != 0) {
        grid.selection.Toggle(row);
    } else {
        grid.selection.Only(row);
    }
    grid.Show(row);
    SyncGridColumns(grid);
    return (modifiers & (modifier::shift | modifier::control)) == 0;
}

void Editor::DraggedTo(Grid name, int32_t row)
{
    GridRows& grid = Rows(name);
    const int32_t last = std::max(grid.LastRow(), grid.FirstRow());
    grid.selection.ExtendTo(std::clamp(row, grid.FirstRow(), std::min(last, grid.Count() - 1)));
    grid.Show(grid.selection.Current());
    SyncGridColumns(grid);
}

/// The menu is one for the selected rows, and for another row where that is not one of them.
void Editor::MenuAsked(Column column, int32_t row)
{
    CommitCellEdit(Leave::elsewhere);
    GridRows& grid = Rows(column);
    if (row < 0 || row >= grid.Count()) {
        return;
    }
    grid.column = column;
    if (!grid.selection.Contains(row)) {
        grid.selection.Only(row);
    }
    SyncGridColumns(grid);
}

void Editor::MoveToRow(GridRows& grid, int32_t row, bool extend)
{
    const int32_t target = std::clamp(row, 0, grid.Count() - 1);
    if (extend) {
        grid.selection.ExtendTo(target);
    } else {
        grid.selection.Only(target);
    }
    grid.Show(target);
    SyncGridColumns(grid);
}

/// The selected rows stay selected, so that a column of them can be chosen.
void Editor::MoveToColumn(GridRows& grid, Column column)
{
    grid.column = std::clamp(column, grid.ColumnAt(0), grid.ColumnAt(2));
    grid.Show(grid.selection.Current());
    SyncGridColumns(grid);
}

bool Editor::ListKeyDown(Grid name, int32_t pressed, unsigned modifiers)
{
    if (const auto command = CommandOfKey(pressed, modifiers)) {
        Execute(*command, name);
        return true;
    }
    if ((modifiers & modifier::alt) != 0) {
        return false;
    }
    GridRows& grid = Rows(name);
    const bool extend = (modifiers & modifier::shift) != 0;
    const bool far = (modifiers & modifier::control) != 0;
    const int32_t row = grid.selection.Current();
    const int32_t last = grid.Count() - 1;
    const auto to = [&](Column near, Column edge) { MoveToColumn(grid, far ? edge : near); };
    switch (pressed) {
        case key::up:
            MoveToRow(grid, far ? 0 : row - 1, extend);
            return true;
        case key::down:
            MoveToRow(grid, far ? last : row + 1, extend);
            return true;
        case key::left:
            to(grid.column - 1, grid.ColumnAt(0));
            return true;
        case key::right:
            to(grid.column + 1, grid.ColumnAt(2));
            return true;
        case key::home:
            far ? MoveToRow(grid, 0, extend) : MoveToColumn(grid, grid.ColumnAt(0));
            return true;
        case key::end:
            far ? MoveToRow(grid, last, extend) : MoveToColumn(grid, grid.ColumnAt(2));
            return true;
        case key::pageUp:
        case key::pageDown:
            MoveToRow(grid, pressed == key::pageUp ? row - grid.visible : row + grid.visible, extend);
            return true;
        default:
            return false;
    }
}

// What is seen beside the cells.

ChannelMark Editor::MarkOf(Grid grid, int32_t row)
{
    if (grid != Grid::channels || row < 0 || row > lists_.channels.LastRow()) {
        return {};
    }
    if (marksAreOld_) {
        std::vector<ChannelPlace> places;
        places.reserve(lists_.channels.rows.size());
        for (int32_t each = 0; each <= lists_.channels.LastRow(); ++each) {
            places.push_back({NumberIn(lists_.channels.Text(MP_FREQUENCY, each)),
                              NumberIn(lists_.channels.Text(MP_SYMBOLRATE, each))});
        }
        const auto rollOff = static_cast<size_t>(SelectedItem(Choice::rolloffFactor));
        marks_ = MarkChannels(places, ItemsOf(Choice::rolloffFactor)[rollOff].value / 100.0);
        marksAreOld_ = false;
    }
    return marks_[static_cast<size_t>(row)];
}

std::wstring Editor::RemarkOn(Grid grid, int32_t row)
{
    const ChannelMark mark = MarkOf(grid, row);
    const std::wstring other = std::to_wstring(mark.other + 1);
    switch (mark.kind) {
        case ChannelMark::Kind::equal:
            return L"Channel " + other + L" has the same frequency.";
        case ChannelMark::Kind::overlapping:
            return L"Overlaps channel " + other + L" by " + FormatNumber(mark.common, L"0.000", true, locale_) +
                   L" MHz: the bandwidth is the symbol rate with the roll-off.";
        case ChannelMark::Kind::none:
            break;
    }
    return {};
}

}  // namespace tvn2x
