#pragma once

#include <windows.h>

#include <algorithm>

namespace tvn2x::client {

/// The handles that this process holds.
struct HeldHandles
{
    int graphics = 0;  ///< GDI objects
    int windows = 0;   ///< windows and menus

    static HeldHandles Now()
    {
        const HANDLE self = GetCurrentProcess();
        HeldHandles held{static_cast<int>(GetGuiResources(self, GR_GDIOBJECTS)),
                         static_cast<int>(GetGuiResources(self, GR_USEROBJECTS))};
        if (held.graphics != 0) {
            return held;
        }
        // A system that does not count them is asked one by one: their lower halves alone name them there.
        for (uintptr_t lower = 0; lower < 0x10000; ++lower) {
            held.graphics += GetObjectType(reinterpret_cast<HGDIOBJ>(lower)) != 0;
            held.windows += IsWindow(reinterpret_cast<HWND>(lower)) || IsMenu(reinterpret_cast<HMENU>(lower));
        }
        return held;
    }

    /// How many more there are, of the kind that grew most. The system itself keeps some for later whenever it likes,
    /// so that only what grows each time is a leak.
    int Since(const HeldHandles& before) const
    {
        return std::max(graphics - before.graphics, windows - before.windows);
    }
};

}  // namespace tvn2x::client
