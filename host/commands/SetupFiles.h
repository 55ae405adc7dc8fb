#pragma once

#include <string>

#include "host/console/Files.h"
#include "host/link/Plugin.h"
#include "host/setup/SetupInspection.h"

namespace tvn2x {

/// "FILE, line 12: ...", as a message.
std::wstring RemarkText(const std::wstring& path, const SetupRemark& remark);

/// What there is to say of a setup file before the plug-in loads it. Raises unusableInput with every reason where the
/// plug-in would refuse it.
SetupInspection RequireUsable(const std::string& content, const std::wstring& path);

/// Saves the plug-in's setup into a pending file. Where the plug-in does not, raises unusableInput with the reason as
/// far as it can be told: the plug-in itself says yes or no.
void SaveInto(const Plugin& plugin, const PendingFile& pending);

/// Saves the plug-in's setup to the file that it was loaded from: what the setup does not mean, comments among it,
/// stays there. Raises unusableInput where that fails; the file is then as it was.
void SaveInPlace(const Plugin& plugin, const std::wstring& path);

}  // namespace tvn2x
