#include "editor/win32/Subclass.h"

#include "util/FloatingPoint.h"

namespace tvn2x {

Subclass::Subclass(MessageFilter& filter, HWND target, Control kind, int32_t controlNumber)
    : window(target), control(kind), number(controlNumber), filter_(filter)
{
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    original_ = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Subclass::Procedure)));
}

LRESULT CALLBACK Subclass::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept
{
    const OwnFloatingPoint floatingPoint;
    const auto* const self = reinterpret_cast<const Subclass*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (message == WM_NCDESTROY) {
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(self->original_));
        return self->Default(message, wParam, lParam);
    }
    try {
        return self->filter_.OnMessage(*self, message, wParam, lParam);
    } catch (...) {
        self->filter_.OnException();
        return 0;
    }
}

}  // namespace tvn2x
