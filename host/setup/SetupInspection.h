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
    bool isFatal = false;      ///< the file cannot be loaded
    int32_t firstChannel = 0;  ///< the channels whose measurement it is about, 0 where it is about none
    int32_t lastChannel = 0;

    bool IsAbout(int32_t channel) const { return channel >= firstChannel && channel <= lastChannel; }
};

/// What is to be said of a setup file.
struct SetupInspection
{
    std::wstring version;
    int32_t channels = 0;  ///< that the plug-in reads, where it loads the file
    bool isBackup = false;
    std::vector<SetupRemark> remarks;  ///< by line
    size_t leftOut = 0;                ///< remarks beyond the first thousand

    bool IsUsable() const;  ///< whether the plug-in loads the file for receivers of model "2x"
};

/// Looks at every line of a setup file: what the plug-in refuses it for, and what it passes over or takes otherwise
/// than it is written: unknown and repeated names, missing and surplus rows, values that are no number or in no list,
/// channels outside what can be measured, and texts that another code page than the system's has written. Neighbouring
/// lines with one fault get one remark where they are many.
SetupInspection InspectSetup(const std::string& content, std::wstring_view product,
                             const CodePage& codePage = SystemCodePage());

}  // namespace tvn2x
