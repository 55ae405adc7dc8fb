#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>

#include "setup/PathParts.h"
#include "setup/SetupKeys.h"
#include "setup/clsIniFile.h"

namespace tvn2x::setup_file {

/// Folder and name of a path, the folder resolved.
inline std::wstring NormalisedPath(const clsIniFile& ini, const std::wstring& path)
{
    return path.empty() ? std::wstring() : JoinPath(ini.ExtractPath(path), ini.ExtractName(path, 0));
}

/// Display positions have 16 bits, and so has the number of parameters, with those that an old file gains.
constexpr int32_t lastPosition = std::numeric_limits<int16_t>::max();
constexpr int32_t mostParameters = lastPosition - addedParameters;

/// The highest row number that the open file is believed to hold: any that a 16-bit integer can name, and above that as
/// many as the file has room for, a row taking one line of at least 20 bytes.
inline int32_t MostRows(clsIniFile& ini)
{
    constexpr size_t always = std::numeric_limits<int16_t>::max();
    constexpr size_t bytesPerRow = 20;
    return static_cast<int32_t>(std::max(always, ini.TextSize() / bytesPerRow));
}

}  // namespace tvn2x::setup_file
