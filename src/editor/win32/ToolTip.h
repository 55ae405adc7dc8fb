#pragma once

#include <windows.h>

#include <string>

#include "editor/win32/Handles.h"

namespace tvn2x {

/// A text that appears where the mouse rests in a window.
class ToolTip
{
public:
    /// A system without tooltips does without this one.
    void Create(HWND window);
    /// What the mouse over an area of the window shows from now on, "" for nothing.
    void Show(const RECT& area, const std::wstring& text);
    /// Every message of the mouse in the window.
    void Pass(UINT message, WPARAM wParam, LPARAM lParam) const;

private:
    HWND window_ = nullptr;
    HWND tip_ = nullptr;  ///< goes with the window
};

}  // namespace tvn2x
