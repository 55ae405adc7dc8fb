#pragma once

#include <vector>

#include "reception/QualityRows.h"

namespace tvn2x::reception {

/// How often a demodulator says of something that is no signal of its kind that it has locked to the carrier, the
/// frames or the packets: a row for each kind, with so many tries. Never is what is expected.
std::vector<Row> FalseLockRows(int tries);

}  // namespace tvn2x::reception
