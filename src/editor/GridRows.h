#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "editor/EditorView.h"
#include "editor/RowSelection.h"

namespace tvn2x {

/// The mark in the heading of the column by which a grid is sorted.
enum class SortArrow
{
    none,
    up,   ///< ascending
    down  ///< descending
};

/// One row of a grid, by its columns.
struct GridRow
{
    std::array<std::wstring, 3> text;
    std::array<bool, 3> checked{};
    int32_t itemData = 0;  ///< on the parameters page the parameter's number
};

/// A row that several states of a grid have in common: whoever changes it makes another one.
using SharedRow = std::shared_ptr<const GridRow>;

/// The content of a grid and what the user sees of it.
struct GridRows
{
    explicit GridRows(Grid name) : grid(name), column(static_cast<Column>(name)), top(Pinned()) {}

    int32_t Count() const { return static_cast<int32_t>(rows.size()); }
    /// Rows that stay in sight above those that scroll: the one that stands for all parameters.
    int32_t Pinned() const { return grid == Grid::parameters ? 1 : 0; }
    /// The rows that commands can take: neither the one for all parameters nor the placeholder.
    int32_t FirstRow() const { return Pinned(); }
    int32_t LastRow() const { return Count() - (grid == Grid::channels ? 2 : 1); }
    bool Takes(int32_t row) const { return row >= FirstRow() && row <= LastRow(); }
    std::vector<int32_t> SelectedRows() const;  ///< of those that commands can take

    const GridRow& At(int32_t row) const { return *rows[static_cast<size_t>(row)]; }
    const std::wstring& Text(Column at, int32_t row) const { return At(row).text[Index(at)]; }
    GridRow& Change(int32_t row);  ///< a row of this state's own
    void Insert(int32_t row, GridRow inserted);
    void Erase(int32_t row) { rows.erase(rows.begin() + row); }
    size_t Index(Column at) const { return static_cast<size_t>(at - static_cast<Column>(grid)); }
    Column ColumnAt(size_t index) const { return static_cast<Column>(grid) + static_cast<Column>(index); }

    /// Selects one row and moves the first visible row no further than it takes to see it.
    void Select(int32_t row);
    /// Moves the first visible row no further than it takes to see a row.
    void Show(int32_t row);
    /// Makes a row the first visible one, as far as there are rows to fill the list.
    void ScrollTo(int32_t row);
    bool IsInSight(int32_t row) const { return row < Pinned() || (row >= top && row < top + visible); }

    Grid grid;
    std::vector<SharedRow> rows;
    std::array<SortArrow, 3> arrows{};
    RowSelection selection;
    Column column;        ///< the one with the current cell
    int32_t top;          ///< first visible row of those that scroll
    int32_t visible = 8;  ///< whole rows that the window shows, the pinned ones not among them
};

/// Everything of the lists that a change can concern, and that undo brings back.
struct Lists
{
    GridRows& Of(Grid grid) { return grid == Grid::channels ? channels : parameters; }
    const GridRows& Of(Grid grid) const { return grid == Grid::channels ? channels : parameters; }

    GridRows parameters{Grid::parameters};
    GridRows channels{Grid::channels};
    int32_t parameterCount = MP_LAST;  ///< numbers given away, those of deleted catalogue rows among them
    int32_t levelUnit = 0;             ///< the entry of the choice that the captions follow
};

}  // namespace tvn2x
