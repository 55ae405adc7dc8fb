#pragma once

#include <windows.h>

#include "editor/Commands.h"

namespace tvn2x {

/// The keys that are held while a message is dealt with.
inline unsigned PressedModifiers()
{
    return (GetKeyState(VK_SHIFT) < 0 ? modifier::shift : 0) | (GetKeyState(VK_CONTROL) < 0 ? modifier::control : 0) |
           (GetKeyState(VK_MENU) < 0 ? modifier::alt : 0);
}

}  // namespace tvn2x
