#include "simulator/model/ErrorCounter.h"

#include <algorithm>
#include <cmath>

namespace tvn2x {
namespace {

/// Impulses, switching and the like: one errored second in eleven days, whatever the signal.
constexpr double residualShare = 1e-6;
constexpr uint64_t secondStream = 0x736563;

/// The share of seconds in which at least one packet is hit.
double ErroredShare(double packetShare, double packetRate)
{
    return -std::expm1(packetRate * std::log1p(-std::min(packetShare, 0.5)));
}

}  // namespace

void ErrorCounter::Add(const Reception& reception, const Acquisition& acquisition, const SeededNoise& noise,
                       double from, double to)
{
    const double syncShare = ErroredShare(reception.packets.syncWrong, reception.PacketRate());
    const double dataShare = ErroredShare(reception.packets.failed, reception.PacketRate());
    while (from < to) {
        const double second = std::floor(from);
        const double end = std::min(second + 1, to);
        const double unlocked = acquisition.UnlockedTime(Stage::reedSolomon, from, end);
        const double locked = std::max(0.0, end - from - unlocked);
        // One draw for both: who loses packets' sync loses data.
        const double drawn = noise.Uniform(secondStream, static_cast<uint64_t>(std::max(0.0, second)));
        const auto errored = [&](double share) { return unlocked + locked * (drawn < share ? 1 : residualShare); };
        time_.syncErrors += errored(syncShare);
        time_.dataErrors += errored(dataShare);
        time_.unavailable += errored(0);
        from = end;
    }
}

}  // namespace tvn2x
