#pragma once

#include <windows.h>

#include "editor/win32/Handles.h"

namespace tvn2x {

/// The resolution of the monitor that a window is on, as far as the process knows of more than one; 96 is the usual.
int DpiOf(HWND window);

/// The font of the system's message boxes, for a resolution.
Font MessageFont(int dpi);

}  // namespace tvn2x
