#pragma once

#include <windows.h>

namespace tvn2x {

/// The system's present look for the windows that are made during the life of this object, by the manifest in the
/// resources of this module. Without one, or where it cannot be used, the controls have the classic look.
class ThemeScope
{
public:
    ThemeScope();
    ThemeScope(const ThemeScope&) = delete;
    ThemeScope& operator=(const ThemeScope&) = delete;
    ~ThemeScope();

private:
    HANDLE context_ = INVALID_HANDLE_VALUE;
    ULONG_PTR cookie_ = 0;
    bool active_ = false;
};

/// The module that this code is in.
HINSTANCE OwnModule();

}  // namespace tvn2x
