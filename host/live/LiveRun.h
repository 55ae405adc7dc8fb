#pragma once

#include <functional>
#include <span>

#include "host/live/LiveState.h"
#include "host/terminal/ProgressLine.h"
#include "util/Clock.h"

namespace tvn2x {

/// Follows a scan and publishes a LiveState at each change. Everything is called on the thread that measures, and so is
/// `publish`; what it needs of memory does not grow with the passes.
class LiveRun
{
public:
    using Publish = std::function<void(LiveStatePtr)>;

    /// `serving` is the moment it begins, UTC. `limits` may be null.
    LiveRun(std::wstring serving, std::shared_ptr<const Limits> limits, Clock& clock, Publish publish);

    /// The run's first line is known. The results that it has are those of a journal that is gone on with.
    void Begin(const FinishedRun& run);
    void BeginPass(int32_t pass, int32_t channels);
    void BeginChannel(int32_t number);
    /// How far the plug-in is with the channel, 0..1. Published now and then.
    void Step(double step, const std::wstring& status);
    /// `fault` is what went wrong where the instrument has failed, "" for what the result's status tells.
    void EndChannel(const ChannelResult& result, const std::wstring& fault = {});
    /// All channels of the pass are measured; `ended` is UTC, `resultFile` the plug-in's where there is one.
    void EndPass(double seconds, const std::wstring& ended, std::optional<std::string> resultFile);
    void Wait(double seconds);
    void End();

private:
    void Enter(LivePhase phase);
    void Take(std::span<const ChannelResult> results);
    void JudgeLatest();
    void Rejudge(LiveChannel& channel, const ChannelJudgement& judgement, const std::optional<double>& step);
    void PublishNow();

    Clock& clock_;
    Publish publish_;
    LiveState state_;     ///< the next one to be published
    FinishedRun latest_;  ///< the latest measurement of each channel as one pass
    double shown_ = 0;    ///< when the last step was published
    ScanProgress pass_;   ///< of the channels that this pass is to measure
    double passBegan_ = 0;
};

}  // namespace tvn2x
