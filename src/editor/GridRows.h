#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "editor/EditorView.h"

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

/// The content of a grid and what the user sees of it.
struct GridRows
{
    explicit GridRows(Grid name) : grid(name) {}

    int32_t Count() const { return static_cast<int32_t>(rows.size()); }
    GridRow& At(int32_t row) { return rows[static_cast<size_t>(row)]; }
    const GridRow& At(int32_t row) const { return rows[static_cast<size_t>(row)]; }
    std::wstring& Text(Column column, int32_t row) { return At(row).text[Index(column)]; }
    const std::wstring& Text(Column column, int32_t row) const { return At(row).text[Index(column)]; }
    size_t Index(Column column) const { return static_cast<size_t>(column - static_cast<Column>(grid)); }
    Column ColumnAt(size_t index) const { return static_cast<Column>(grid) + static_cast<Column>(index); }

    /// Selects a row and moves the first visible row no further than it takes to see it.
    void Select(int32_t row);
    /// Makes a row the first visible one, as far as there are rows to fill the list.
    void ScrollTo(int32_t row);

    Grid grid;
    std::vector<GridRow> rows;
    std::array<SortArrow, 3> arrows{};
    int32_t selected = 0;
    int32_t top = 0;      ///< first visible row
    int32_t visible = 8;  ///< whole rows that the window shows
};

}  // namespace tvn2x
