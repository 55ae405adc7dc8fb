#pragma once

#include <windows.h>

#include <commctrl.h>

#include <utility>

namespace tvn2x {

/// A handle that is given back when its owner goes.
template <class Handle, auto GiveBack>
class Owned
{
public:
    Owned() = default;
    explicit Owned(Handle handle) : handle_(handle) {}
    Owned(Owned&& other) noexcept : handle_(std::exchange(other.handle_, Handle{})) {}
    Owned& operator=(Owned&& other) noexcept
    {
        std::swap(handle_, other.handle_);
        return *this;
    }
    ~Owned()
    {
        if (handle_) {
            GiveBack(handle_);
        }
    }
    Handle Get() const { return handle_; }

private:
    Handle handle_{};
};

namespace give_back {

inline void Object(HGDIOBJ object)
{
    DeleteObject(object);
}
inline void Context(HDC context)
{
    DeleteDC(context);
}
inline void Module(HMODULE module)
{
    FreeLibrary(module);
}
inline void Window(HWND window)
{
    DestroyWindow(window);
}

}  // namespace give_back

using Font = Owned<HFONT, give_back::Object>;
using Brush = Owned<HBRUSH, give_back::Object>;
using Bitmap = Owned<HBITMAP, give_back::Object>;
using MemoryContext = Owned<HDC, give_back::Context>;
using Library = Owned<HMODULE, give_back::Module>;
using Dialog = Owned<HWND, give_back::Window>;

/// Selects an object into a device context for the length of a block.
class Selected
{
public:
    Selected(HDC context, HGDIOBJ object) : context_(context), before_(SelectObject(context, object)) {}
    Selected(const Selected&) = delete;
    Selected& operator=(const Selected&) = delete;
    ~Selected() { SelectObject(context_, before_); }

private:
    HDC context_;
    HGDIOBJ before_;
};

/// The screen's device context, with a font or none in particular.
class ScreenContext
{
public:
    explicit ScreenContext(HFONT font)
        : context_(GetDC(nullptr)),
          before_(SelectObject(context_, font ? static_cast<HGDIOBJ>(font) : GetStockObject(SYSTEM_FONT)))
    {
    }
    ScreenContext(const ScreenContext&) = delete;
    ScreenContext& operator=(const ScreenContext&) = delete;
    ~ScreenContext()
    {
        SelectObject(context_, before_);
        ReleaseDC(nullptr, context_);
    }
    HDC Get() const { return context_; }

private:
    HDC context_;
    HGDIOBJ before_;
};

}  // namespace tvn2x
