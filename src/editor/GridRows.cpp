#include "editor/GridRows.h"

#include <algorithm>

namespace tvn2x {

void GridRows::ScrollTo(int32_t row)
{
    top = std::clamp(row, 0, std::max(0, Count() - visible));
}

void GridRows::Select(int32_t row)
{
    selected = row;
    ScrollTo(std::clamp(top, std::max(0, row - visible + 1), row));
}

}  // namespace tvn2x
