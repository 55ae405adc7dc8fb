#pragma once

#include <string>
#include <vector>

#include "editor/ClipboardTable.h"
#include "editor/EditorView.h"

namespace tvn2x {

/// The cells of a table from the clipboard, and where in a grid they belong.
struct PastedCells
{
    std::vector<Column> columns;  ///< the grid's, for each of the table's
    Table rows;                   ///< without a heading row; each as long as `columns`
    size_t heading = 0;           ///< rows of the table that stood before them
    std::wstring fault;           ///< what does not fit, "" where all does
};

/// Finds the columns of a table: by its first row where that names columns of the grid ("Frequency (MHz)"), otherwise
/// from a column of the grid on to the right; a table as wide as the grid begins with the grid's first. A first row
/// that has words where the rows below have numbers is a heading in words of somebody else. Empty columns and rows at
/// the end count for nothing.
PastedCells ArrangeCells(Table table, Grid grid, Column first);

}  // namespace tvn2x
