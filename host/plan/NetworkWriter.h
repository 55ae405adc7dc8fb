#pragma once

#include <string>

#include "host/plan/NetworkDraft.h"

namespace tvn2x {

/// A network as the model file of the simulated receiver (docs/network-model.md): UTF-8, CR LF, a comment line above
/// each channel that says what it is. planName stands in the file's first line.
std::string WriteNetworkModel(const NetworkDraft& network, const std::wstring& planName);

}  // namespace tvn2x
