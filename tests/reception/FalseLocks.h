#pragma once

#include <functional>
#include <string>

namespace tvn2x::reception {

/// How often a demodulator said of something that is no signal of its kind that it had locked to the carrier, the
/// frames or the packets.
struct FalseLocks
{
    std::string what;
    int tries = 0;
    int locked = 0;
};

/// Tells of each kind when it is done with it.
void CountFalseLocks(int tries, const std::function<void(const FalseLocks&)>& tell);

}  // namespace tvn2x::reception
