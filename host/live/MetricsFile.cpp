#include "host/live/MetricsFile.h"

#include "host/live/LiveMetrics.h"

namespace tvn2x {

bool MetricsFile::IsDue(const LiveState& state) const
{
    constexpr double againAfter = 15;  // seconds; how often such files are read
    const bool hasEnded = state.now.phase == LivePhase::ended && phase_ != LivePhase::ended;
    return !writtenAt_ || hasEnded || state.passesDone != passes_ || state.at - *writtenAt_ >= againAfter;
}

void MetricsFile::Take(const LiveState& state)
{
    // Before the run is known the file may be one that the scan will refuse to replace.
    if (state.run->setups.empty() || !IsDue(state)) {
        return;
    }
    const FileFault before = fault_;
    fault_ = ReplaceContent(files_, path_, LiveMetrics(state, MetricsFormat::prometheus));
    if (fault_ != before && (fault_ == FileFault::none || before == FileFault::none)) {
        tell_(fault_);
    }
    writtenAt_ = state.at;
    if (fault_ == FileFault::none) {
        passes_ = state.passesDone;
        phase_ = state.now.phase;
    }
}

}  // namespace tvn2x
