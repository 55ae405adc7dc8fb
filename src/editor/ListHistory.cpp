#include "editor/ListHistory.h"

#include <algorithm>
#include <utility>

namespace tvn2x {

ListHistory::Rest::Rest(const Lists& lists)
    : selections{lists.parameters.selection, lists.channels.selection},
      arrows(lists.channels.arrows),
      parameterCount(lists.parameterCount),
      levelUnit(lists.levelUnit)
{
}

bool ListHistory::Rest::HasSameContent(const Rest& other) const
{
    return arrows == other.arrows && parameterCount == other.parameterCount && levelUnit == other.levelUnit;
}

/// Rows that both states share at their beginning and at their end are no part of the difference.
ListHistory::Replaced ListHistory::Difference(const std::vector<SharedRow>& before, const std::vector<SharedRow>& after)
{
    const size_t shorter = std::min(before.size(), after.size());
    size_t head = 0;
    while (head < shorter && before[head] == after[head]) {
        ++head;
    }
    size_t tail = 0;
    while (tail < shorter - head && before[before.size() - 1 - tail] == after[after.size() - 1 - tail]) {
        ++tail;
    }
    const auto middle = [&](const std::vector<SharedRow>& rows) {
        return std::vector<SharedRow>(rows.begin() + static_cast<ptrdiff_t>(head),
                                      rows.end() - static_cast<ptrdiff_t>(tail));
    };
    return {head, middle(before), middle(after)};
}

void ListHistory::Record(const Lists& before, const Lists& after, Grid grid)
{
    Step step{grid, Difference(before.parameters.rows, after.parameters.rows),
              Difference(before.channels.rows, after.channels.rows), Rest(before), Rest(after)};
    if (step.parameters.IsEmpty() && step.channels.IsEmpty() && step.before.HasSameContent(step.after)) {
        return;
    }
    steps_.reserve(done_ + 1);
    steps_.erase(steps_.begin() + static_cast<ptrdiff_t>(done_), steps_.end());
    steps_.push_back(std::move(step));
    ++done_;
}

void ListHistory::Put(std::vector<SharedRow>& rows, size_t at, size_t count, const std::vector<SharedRow>& others)
{
    const auto first = rows.begin() + static_cast<ptrdiff_t>(at);
    const auto behind = rows.erase(first, first + static_cast<ptrdiff_t>(count));
    rows.insert(behind, others.begin(), others.end());
}

void ListHistory::Restore(Lists& lists, const Rest& rest)
{
    lists.parameters.selection = rest.selections[0];
    lists.channels.selection = rest.selections[1];
    lists.channels.arrows = rest.arrows;
    lists.parameterCount = rest.parameterCount;
    lists.levelUnit = rest.levelUnit;
}

Grid ListHistory::Undo(Lists& lists)
{
    const Step& step = steps_[done_ - 1];
    Lists earlier = lists;
    Put(earlier.parameters.rows, step.parameters.at, step.parameters.after.size(), step.parameters.before);
    Put(earlier.channels.rows, step.channels.at, step.channels.after.size(), step.channels.before);
    Restore(earlier, step.before);
    lists = std::move(earlier);
    --done_;
    return step.grid;
}

Grid ListHistory::Redo(Lists& lists)
{
    const Step& step = steps_[done_];
    Lists later = lists;
    Put(later.parameters.rows, step.parameters.at, step.parameters.before.size(), step.parameters.after);
    Put(later.channels.rows, step.channels.at, step.channels.before.size(), step.channels.after);
    Restore(later, step.after);
    lists = std::move(later);
    ++done_;
    return step.grid;
}

}  // namespace tvn2x
