#pragma once

#include <cstdint>
#include <vector>

namespace tvn2x {

/// Which rows of a grid are selected. One of them, the current row, is where the keyboard is; another, the anchor, is
/// the end that stays while Shift moves the current one. Rows count from 0.
class RowSelection
{
public:
    int32_t Current() const { return current_; }
    bool Contains(int32_t row) const;
    int32_t Count() const;
    int32_t First() const { return ranges_.front().first; }
    int32_t Last() const { return ranges_.back().last; }
    std::vector<int32_t> Rows() const;  ///< ascending

    void Only(int32_t row) { Range(row, row); }
    /// All rows from an anchor to a current row, which may stand above it.
    void Range(int32_t anchor, int32_t current);
    void ExtendTo(int32_t row) { Range(anchor_, row); }
    /// Selects a row besides the others, or takes it from them; the last one stays. It becomes the current one.
    void Toggle(int32_t row);
    /// Exactly these rows, ascending and at least one; the current row is one of them, or becomes the nearest.
    void Set(const std::vector<int32_t>& rows, int32_t current);

    bool operator==(const RowSelection&) const = default;

private:
    /// Neighbouring rows that are selected, both ends among them.
    struct Run
    {
        int32_t first;
        int32_t last;
        bool operator==(const Run&) const = default;
    };
    std::vector<Run> ranges_{{0, 0}};  ///< ascending, with a gap between any two
    int32_t anchor_ = 0;
    int32_t current_ = 0;
};

}  // namespace tvn2x
