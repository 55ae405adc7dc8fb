#pragma once

#include <vector>

#include "reception/QualityRows.h"

namespace tvn2x::reception {

/// A channel drawn by a number from what the simulator's network model can say: the readings of the simulated receiver,
/// and those of the receiver for recordings of a signal with the same impairments. Two ways to one number that share
/// nothing; they may differ by what either of them may be off.
std::vector<Row> RowsAgainstSimulator(unsigned number);

}  // namespace tvn2x::reception
