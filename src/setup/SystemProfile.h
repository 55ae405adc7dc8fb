#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "util/FileSystem.h"

namespace tvn2x {

/// Windows: the system's folder. Elsewhere the folder of the user's own settings.
std::wstring WindowsFolder();
/// Full path of the program or library that this code is part of.
std::wstring RunningModule();

/// WIN.INI: kept by the system's own functions on Windows, elsewhere a file "WIN.INI" of `files` in WindowsFolder().
/// Texts are in the system code page.
std::string WinIniString(FileSystem& files, const std::string& section, const std::string& key,
                         const std::string& defaultValue);
uint32_t WinIniInt(FileSystem& files, const std::string& section, const std::string& key, int32_t defaultValue);
/// The lines of a section, each ended by a NUL.
std::string WinIniSection(FileSystem& files, const std::string& section);
/// Sets a key, removes it (no value), or removes the section (no key either). False where nothing could be written.
bool WriteWinIni(FileSystem& files, const std::string& section, const std::optional<std::string>& key,
                 const std::optional<std::string>& value);

}  // namespace tvn2x
