#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "editor/GridRows.h"

namespace tvn2x {

/// The changes of the lists, one after the other, as far back as they go. Of each change only the rows are kept that it
/// concerned, so that one cell of a long list costs no more than one of a short list.
class ListHistory
{
public:
    /// Keeps what a change has made of the lists, unless it changed nothing but the selection. What had been undone is
    /// gone then. May raise std::bad_alloc: nothing is kept and nothing gone.
    void Record(const Lists& before, const Lists& after, Grid grid);

    bool CanUndo() const { return done_ > 0; }
    bool CanRedo() const { return done_ < steps_.size(); }
    size_t Done() const { return done_; }  ///< changes that can be undone

    /// Takes the last change back in the lists. The result is the grid that the user was in. May raise std::bad_alloc:
    /// the lists are then as they were.
    Grid Undo(Lists& lists);
    /// The same the other way, for the change that was undone last.
    Grid Redo(Lists& lists);

private:
    /// The rows of a grid that a change replaced, and those that it put in their place.
    struct Replaced
    {
        bool IsEmpty() const { return before.empty() && after.empty(); }

        size_t at = 0;
        std::vector<SharedRow> before;
        std::vector<SharedRow> after;
    };
    /// What a state has besides its rows.
    struct Rest
    {
        explicit Rest(const Lists& lists);
        bool HasSameContent(const Rest& other) const;

        std::array<RowSelection, 2> selections;
        std::array<SortArrow, 3> arrows;
        int32_t parameterCount;
        int32_t levelUnit;
    };
    /// One change.
    struct Step
    {
        Grid grid;
        Replaced parameters;
        Replaced channels;
        Rest before;
        Rest after;
    };

    static Replaced Difference(const std::vector<SharedRow>& before, const std::vector<SharedRow>& after);
    static void Put(std::vector<SharedRow>& rows, size_t at, size_t count, const std::vector<SharedRow>& others);
    static void Restore(Lists& lists, const Rest& rest);

    std::vector<Step> steps_;
    size_t done_ = 0;
};

}  // namespace tvn2x
