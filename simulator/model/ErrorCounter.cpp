#include "simulator/model/ErrorCounter.h"

#include <algorithm>
#include <cmath>

namespace tvn2x {
namespace {

/// Impulses, switching and the like: one errored second in eleven days, whatever the signal.
constexpr double residualShare = 1e-6;

/// The share of seconds in which at least one packet is hit.
double ErroredShare(double packetShare, double packetRate)
{
    const double hit = -std::expm1(packetRate * std::log1p(-std::min(packetShare, 0.5)));
    return hit + residualShare * (1 - hit);
}

}  // namespace

void ErrorCounter::Add(const Reception& reception, const Acquisition& acquisition, double from, double to)
{
    const double duration = to - from;
    if (duration <= 0) {
        return;
    }
    const double unlocked = acquisition.UnlockedTime(Stage::reedSolomon, from, to);
    const double locked = std::max(0.0, duration - unlocked);
    time_.syncErrors += unlocked + locked * ErroredShare(reception.packets.syncWrong, reception.PacketRate());
    time_.dataErrors += unlocked + locked * ErroredShare(reception.packets.failed, reception.PacketRate());
    time_.unavailable += unlocked + locked * residualShare;
}

}  // namespace tvn2x
