#include "editor/GridRows.h"

#include <algorithm>
#include <utility>

namespace tvn2x {

std::vector<int32_t> GridRows::SelectedRows() const
{
    std::vector<int32_t> selected = selection.Rows();
    std::erase_if(selected, [this](int32_t row) { return !Takes(row); });
    return selected;
}

GridRow& GridRows::Change(int32_t row)
{
    const auto own = std::make_shared<GridRow>(At(row));
    rows[static_cast<size_t>(row)] = own;
    return *own;
}

void GridRows::Insert(int32_t row, GridRow inserted)
{
    rows.insert(rows.begin() + row, std::make_shared<const GridRow>(std::move(inserted)));
}

void GridRows::ScrollTo(int32_t row)
{
    top = std::clamp(row, Pinned(), std::max(Pinned(), Count() - visible));
}

void GridRows::Show(int32_t row)
{
    ScrollTo(row < Pinned() ? top : std::clamp(top, std::max(0, row - visible + 1), row));
}

void GridRows::Select(int32_t row)
{
    selection.Only(row);
    Show(row);
}

}  // namespace tvn2x
