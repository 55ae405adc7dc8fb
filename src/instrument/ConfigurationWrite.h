#pragma once

#include <functional>

#include "instrument/ConfigurationSteps.h"
#include "setup/SetupDocument.h"

namespace tvn2x {

/// Brings the receiver into the state that the document describes, from its basic state on.
///
/// forgetTuning is called as soon as the receiver may have left the frequency it was tuned to: the next channel has to
/// be tuned whatever its frequency.
///
/// An error of the receiver or the parent ends the writing and is passed on with its number and source; a missing
/// filter or reference input is described in words meant for the user. Raises 1002 where the receiver cannot be brought
/// into DVB-C demodulator mode.
void WriteConfiguration(const SetupDocument& document, const ConfigurationPeers& with,
                        const std::function<void()>& forgetTuning);

}  // namespace tvn2x
