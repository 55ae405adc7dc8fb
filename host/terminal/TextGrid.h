#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tvn2x {

/// Columns that a text takes on a terminal: wide characters count 2, combining marks 0.
int32_t DisplayWidth(std::wstring_view text);

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
    /// each other, each with the key columns at its left.
    std::wstring Render(int32_t maxWidth = 0) const;

private:
    struct Column
    {
        std::vector<std::wstring> caption;
        bool isNumeric = false;
        int32_t before = 0;  ///< width left of the decimal point
        int32_t width = 0;
    };

    Column Layout(size_t index) const;
    std::vector<std::vector<size_t>> Panels(const std::vector<Column>& columns, int32_t maxWidth) const;
    std::wstring RenderPanel(const std::vector<Column>& columns, const std::vector<size_t>& panel) const;

    std::vector<std::wstring> captions_;
    size_t keyColumns_;
    std::vector<std::vector<std::wstring>> rows_;
};

}  // namespace tvn2x
