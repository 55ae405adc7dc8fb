#include "host/live/LiveState.h"

#include <algorithm>

namespace tvn2x {

FinishedRun RunOf(const LiveState& state, LiveMeasurementPtr LiveChannel::*which)
{
    FinishedRun run = *state.run;
    run.passes = 1;
    run.interval = 0;
    std::wstring last;
    for (const LiveChannel& channel : state.channels) {
        if (const LiveMeasurementPtr& measurement = channel.*which) {
            run.channels.push_back(measurement->result);
            run.channels.back().pass = 1;
            last = std::max(last, measurement->result.began);
        }
    }
    if (run.channels.size() == state.channels.size()) {
        run.ended = last;
    }
    run.Complete();
    return run;
}

}  // namespace tvn2x
