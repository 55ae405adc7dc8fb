#pragma once

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

}  // namespace tvn2x::setup_file
