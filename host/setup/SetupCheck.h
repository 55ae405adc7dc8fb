#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tvn2x {

/// Looks at a setup file before the plug-in loads it, because the plug-in only says yes or no and fills in defaults for
/// what is missing. Returns its number of channels.
///
/// Raises unusableInput, with the reason and a remedy, where the file is empty, no text, a channel plan, no setup, the
/// setup of another product or for another receiver, or where rows of its channel list are missing or a number is none
/// or outside what can be measured.
int32_t CheckSetupFile(std::string_view content, const std::wstring& path, std::wstring_view product);

}  // namespace tvn2x
