#pragma once

#include <functional>
#include <string>
#include <vector>

#include "reception/Reception.h"

namespace tvn2x::reception {

/// One line of the table: what was put in, what was read, and how far the two may be apart.
struct Row
{
    std::string quantity;
    std::string trial;
    bool brief = false;  ///< is also run with the other tests
    double expected = 0;
    double below = 0;  ///< what is read may be less by as much
    double above = 0;  ///< or more
    std::function<double()> read;
};

/// The receiver for recordings against what was put in.
std::vector<Row> QualityRows();

/// A channel drawn by a number from what the simulator's network model can say: the readings of the simulated receiver,
/// and those of the receiver for recordings of a signal with the same impairments. Two ways to one number that share
/// nothing; they may differ by what either of them may be off.
std::vector<Row> RowsAgainstSimulator(unsigned number);

/// How often a demodulator says of something that is no signal of its kind that it has locked to the carrier, the
/// frames or the packets: a row for each kind, with so many tries. Never is what is expected.
std::vector<Row> FalseLockRows(int tries);

}  // namespace tvn2x::reception
