#pragma once

#include "instrument/ConfigurationSteps.h"
#include "setup/SetupDocument.h"

namespace tvn2x {

/// Takes the receiver's present settings over into the document, whose channel list becomes the one channel that the
/// receiver is tuned to. What the receiver does not know, the first channel's user field among it, stays.
///
/// A receiver in another mode than the DVB-C demodulator is reported as 1002, and read nevertheless. An error of the
/// receiver, the parent or a setter ends the reading and is passed on; what was taken over until then stays. A
/// frequency or a symbol rate that is no number raises 13.
void ReadConfiguration(SetupDocument& document, const ConfigurationPeers& with);

}  // namespace tvn2x
