#pragma once

#include <windows.h>

#include "editor/EditorView.h"

namespace tvn2x {

class Subclass;

/// Who sees the messages of the controls before they do.
class MessageFilter
{
public:
    virtual LRESULT OnMessage(const Subclass& control, UINT message, WPARAM wParam, LPARAM lParam) = 0;
    /// Called inside the handler of an exception that must not leave the window procedure.
    virtual void OnException() noexcept = 0;

protected:
    ~MessageFilter() = default;
};

/// A control whose messages go through a filter. Outlives its window; is not moved.
class Subclass
{
public:
    /// number: Field or Column, as the kind of control says.
    Subclass(MessageFilter& filter, HWND control, Control kind, int32_t controlNumber);
    Subclass(const Subclass&) = delete;
    Subclass& operator=(const Subclass&) = delete;

    LRESULT Default(UINT message, WPARAM wParam, LPARAM lParam) const
    {
        return CallWindowProcW(original_, window, message, wParam, lParam);
    }

    const HWND window;
    const Control control;
    const int32_t number;

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;

    MessageFilter& filter_;
    WNDPROC original_;
};

}  // namespace tvn2x
