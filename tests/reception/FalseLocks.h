#pragma once

#include <string>
#include <vector>

namespace tvn2x::reception {

/// How often a demodulator said of something that is no signal of its kind that it had locked to the carrier, the
/// frames or the packets.
struct FalseLocks
{
    std::string what;
    int tries = 0;
    int locked = 0;
};

std::vector<FalseLocks> CountFalseLocks(int tries);

}  // namespace tvn2x::reception
