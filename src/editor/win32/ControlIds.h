#pragma once

#include "editor/EditorView.h"

namespace tvn2x::control_id {

// OK is not IDOK: that is what the system sends for Enter where no button is the default one.
constexpr int cancel = 2;
constexpr int ok = 3;
constexpr int tabs = 100;
constexpr int notes = 600;
constexpr int protect = 601;
constexpr int unprotect = 602;
constexpr int label = 0xFFFF;

constexpr int Of(Choice choice)
{
    return 200 + static_cast<int>(choice);
}
constexpr int Of(Field field)
{
    return 300 + static_cast<int>(field);
}
constexpr int Of(Check check)
{
    return 340 + static_cast<int>(check);
}
constexpr int Of(RowCommand command, Grid grid)
{
    return 400 + static_cast<int>(grid) + static_cast<int>(command);
}
constexpr int List(Grid grid)
{
    return 500 + static_cast<int>(grid);
}
constexpr int CellEditor(Grid grid)
{
    return 540 + static_cast<int>(grid);
}

}  // namespace tvn2x::control_id
