#include "receivers/recordings/receiver/ErroredSeconds.h"

#include <algorithm>
#include <cmath>

namespace tvn2x::recordings {
namespace {

constexpr double residualShare = 1e-6;  // of the time that nothing was wrong

}  // namespace

void ErroredSeconds::Add(double now, const DemodulatorState& state)
{
    if (last_) {
        // Packets that fail before the stream is there, or after it has gone, are part of that.
        const bool isLost = wasLost_ || !state.locks.reedSolomon;
        Count(sync_, isLost, state.counters.lostSymbols != counted_.lostSymbols, *last_, now);
        Count(data_, isLost, state.counters.failedPackets != counted_.failedPackets, *last_, now);
        time_.unavailable += (now - *last_) * (isLost ? 1 : residualShare);
    }
    last_ = now;
    wasLost_ = !state.locks.reedSolomon;
    counted_ = state.counters;
}

void ErroredSeconds::Reset()
{
    time_ = {};
    for (Kind* const kind : {&sync_, &data_}) {
        kind->isErrored = false;
        kind->passed = 0;
    }
}

void ErroredSeconds::Count(Kind& kind, bool isLost, bool isHit, double from, double to)
{
    double& counter = time_.*kind.counter;
    while (from < to) {
        const double second = std::floor(from);
        if (from == second) {
            kind.isErrored = false;
            kind.passed = 0;
        }
        const double end = std::min(second + 1, to);
        if (isHit && !isLost && !kind.isErrored) {
            kind.isErrored = true;
            counter += kind.passed;
        }
        if (isLost || kind.isErrored) {
            counter += end - from;
        } else {
            kind.passed += end - from;
            counter += (end - from) * residualShare;
        }
        from = end;
    }
}

}  // namespace tvn2x::recordings
