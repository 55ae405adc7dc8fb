#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tvn2x::reception {

/// A reading of the simulated receiver, and what the receiver for recordings reads of a signal with the same
/// impairments: two ways to one number that share nothing.
struct Comparison
{
    std::string quantity;
    double simulated = 0;
    std::optional<double> recorded;  ///< nothing where it is not measured
    double below = 0;                ///< the recorded one may be less by as much
    double above = 0;                ///< or more

    bool Agree() const { return recorded && *recorded >= simulated - below && *recorded <= simulated + above; }
};

/// A channel of the simulator's network model, drawn by a number, and the readings of both.
struct Encounter
{
    std::string channel;
    std::vector<Comparison> readings;
};

Encounter MeetSimulator(unsigned number);

}  // namespace tvn2x::reception
