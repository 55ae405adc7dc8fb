#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tvn2x {

/// A table for a terminal: captions wrapped over several lines so that no column is wider than its cells and the
/// longest word of its caption, rules above, below and under the captions, two blanks between columns.
///
/// A column of numbers (with or without "---", "UNDER", "OVER") stands right-aligned with its decimal points one below
/// the other; any other column is left-aligned.
class TextGrid
{
public:
    /// keyColumns: how many columns at the left are repeated where the grid is folded.
    explicit TextGrid(std::vector<std::wstring> captions, size_t keyColumns = 0);

    /// One cell a column. Control characters become blanks.
    void AddRow(std::vector<std::wstring> cells);

    /// The grid, each line ended with LF. Where it is wider than maxWidth (0: no limit) it is folded into panels below
    /// each other, each with the key columns at its left. Texts that are too wide for that are wrapped in their cells,
    /// those of the key columns to half of the width together.
    std::wstring Render(int32_t maxWidth = 0) const;

private:
    /// A column with the widths that its cells have come to need.
    struct Column
    {
        std::vector<std::wstring> caption;
        bool isNumeric = false;
        int32_t before = 0;  ///< width left of the decimal point
        int32_t width = 0;
        int32_t least = 0;  ///< width that it cannot go below
    };
    using Panel = std::vector<size_t>;  ///< its columns

    Column Layout(size_t index) const;
    /// Narrows a column of texts so that it has `width` columns, or as few as it can have.
    void Narrow(Column& column, size_t index, int32_t width) const;
    /// Narrows the key columns to half of the grid's width; returns theirs.
    int32_t NarrowKeys(std::vector<Column>& columns, int32_t maxWidth) const;
    std::vector<Panel> Panels(std::vector<Column>& columns, int32_t maxWidth) const;
    static std::vector<std::wstring> CellLines(const std::wstring& cell, const Column& column);
    std::wstring RenderPanel(const std::vector<Column>& columns, const Panel& panel) const;

    std::vector<std::wstring> captions_;
    size_t keyColumns_;
    std::vector<std::vector<std::wstring>> rows_;
};

}  // namespace tvn2x
