#include "editor/RowSelection.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace tvn2x {

bool RowSelection::Contains(int32_t row) const
{
    const auto behind = std::upper_bound(ranges_.begin(), ranges_.end(), row,
                                         [](int32_t sought, const Run& range) { return sought < range.first; });
    return behind != ranges_.begin() && row <= std::prev(behind)->last;
}

int32_t RowSelection::Count() const
{
    int32_t count = 0;
    for (const Run& range : ranges_) {
        count += range.last - range.first + 1;
    }
    return count;
}

std::vector<int32_t> RowSelection::Rows() const
{
    std::vector<int32_t> rows;
    rows.reserve(static_cast<size_t>(Count()));
    for (const Run& range : ranges_) {
        for (int32_t row = range.first; row <= range.last; ++row) {
            rows.push_back(row);
        }
    }
    return rows;
}

void RowSelection::Range(int32_t anchor, int32_t current)
{
    ranges_.assign(1, {std::min(anchor, current), std::max(anchor, current)});
    anchor_ = anchor;
    current_ = current;
}

void RowSelection::Toggle(int32_t row)
{
    std::vector<int32_t> rows = Rows();
    const auto at = std::lower_bound(rows.begin(), rows.end(), row);
    if (at == rows.end() || *at != row) {
        rows.insert(at, row);
    } else if (rows.size() > 1) {
        rows.erase(at);
    }
    Set(rows, row);
}

void RowSelection::Set(const std::vector<int32_t>& rows, int32_t current)
{
    std::vector<Run> ranges;
    int32_t nearest = rows.front();
    for (const int32_t row : rows) {
        if (!ranges.empty() && ranges.back().last + 1 == row) {
            ranges.back().last = row;
        } else {
            ranges.push_back({row, row});
        }
        if (std::abs(row - current) < std::abs(nearest - current)) {
            nearest = row;
        }
    }
    ranges_ = std::move(ranges);
    anchor_ = nearest;
    current_ = nearest;
}

}  // namespace tvn2x
