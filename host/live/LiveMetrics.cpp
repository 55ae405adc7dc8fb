#include "host/live/LiveMetrics.h"

namespace tvn2x {

std::string LiveMetrics(const LiveState& state, MetricsFormat format)
{
    FinishedRun run = RunOf(state);
    const RunJudgement judgement = Judge(run, state.limits.get());
    run.interval = state.run->interval;
    RunMetrics metrics{.run = run, .judgement = judgement, .counts = {}, .pass = state.now.pass};
    if (state.lastPassSeconds) {
        metrics.lastPass = {.seconds = *state.lastPassSeconds, .ended = state.lastPassEnded};
    }
    for (const LiveChannel& channel : state.channels) {
        metrics.counts[channel.planned.number] = {channel.measurements, channel.errors};
    }
    if (state.now.phase != LivePhase::ended) {
        metrics.answers = state.now.fault.empty();
    }
    return MetricsText(metrics, format);
}

}  // namespace tvn2x
