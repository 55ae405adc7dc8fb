#pragma once

#include "host/commands/Files.h"
#include "host/commands/Plugin.h"

namespace tvn2x {

/// Saves the plug-in's setup into a pending file. Where the plug-in does not, raises unusableInput with the reason as
/// far as it can be told: the plug-in itself says yes or no.
void SaveInto(const Plugin& plugin, const PendingFile& pending);

}  // namespace tvn2x
