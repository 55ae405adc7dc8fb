#pragma once

#include <string>

#include "host/link/Plugin.h"
#include "host/setup/Setup.h"

namespace tvn2x {

/// The setup that the plug-in has loaded from `path`.
Setup ReadSetup(const Plugin& plugin, const std::wstring& path);

/// Its settings alone, which a receiver may have been read into since.
SetupSettings ReadSettings(const Plugin& plugin);

}  // namespace tvn2x
