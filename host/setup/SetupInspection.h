#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "util/CodePage.h"

namespace tvn2x {

/// Something in a setup file that its user should look at.
struct SetupRemark
{
    int32_t line = 0;  ///< 0 where it is about the file as a whole
    std::wstring text;
    bool isFatal = false;  ///< the file cannot be loaded
};

struct SetupInspection
{
    std::wstring version;
    int32_t channels = 0;
    bool isBackup = false;
    std::vector<SetupRemark> remarks;  ///< by line
    size_t leftOut = 0;                ///< remarks beyond the first thousand

    bool IsUsable() const;
};

/// Looks at every line of a setup file: what the plug-in refuses it for, and what it passes over or takes otherwise
/// than it is written: unknown and repeated names, missing and surplus rows, values that are no number or in no list,
/// channels outside what can be measured, and texts that another code page than the system's has written.
SetupInspection InspectSetup(std::string_view content, std::wstring_view product,
                             const CodePage& codePage = SystemCodePage());

}  // namespace tvn2x
