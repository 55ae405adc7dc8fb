#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/judge/Judgement.h"
#include "host/judge/Limits.h"
#include "host/run/FinishedRun.h"

namespace tvn2x {

/// One measurement of a channel with what was found in it.
struct LiveMeasurement
{
    ChannelResult result;
    ChannelJudgement judgement;
    std::optional<double> step;  ///< dB to the channel below, as it was measured last
};
using LiveMeasurementPtr = std::shared_ptr<const LiveMeasurement>;

/// What is kept of each measurement of a channel: few enough bytes for a history of months.
struct LivePoint
{
    int32_t pass = 0;
    int64_t began = 0;  ///< milliseconds since 1970, UTC
    Verdict verdict = Verdict::notMeasured;
    std::optional<float> level{};  ///< dBµV
    std::optional<float> mer{};    ///< dB
    std::optional<float> ber{};    ///< before Reed-Solomon
    bool isBerBound = false;       ///< the ratio is at most `ber`
};
using LiveHistory = std::vector<LivePoint>;

/// A channel of a run that goes on, with what was measured of it so far.
struct LiveChannel
{
    PlannedChannel planned;
    int32_t orderOfQam = 0;
    LiveMeasurementPtr latest;  ///< null before the first one
    LiveMeasurementPtr first;
    LiveMeasurementPtr worst;  ///< by verdict, then by the worst reading's rank; of equal ones the earliest
    /// By pass. Of the older part neighbours have been merged, the worse one stays, so that it spans the whole run.
    std::shared_ptr<const LiveHistory> history = std::make_shared<LiveHistory>();
    int64_t measurements = 0;  ///< made so far
    int64_t errors = 0;        ///< of the instrument, among them
    std::wstring badSince;     ///< UTC, when the verdict stopped being a pass or warning; "" where it is one
    uint64_t changed = 0;      ///< the state's version in which any of this became what it is
};

/// What a run that goes on is doing.
enum class LivePhase
{
    preparing,  ///< the receiver is brought on line
    measuring,
    waiting,  ///< for the next pass
    ended     ///< all passes are done, or the scan was stopped
};

/// Where the scan is. Seconds are reckoned at LiveState::at.
struct LiveNow
{
    LivePhase phase = LivePhase::preparing;
    int32_t pass = 1;
    std::optional<int32_t> channel;  ///< the number of the one that is measured
    double step = 0;                 ///< of that channel, 0..1
    std::wstring status;             ///< what the plug-in says it does
    int32_t done = 0;                ///< channels of the pass
    std::optional<double> left;      ///< seconds to the end of the pass; nothing while nobody can know
    std::optional<double> nextPass;  ///< seconds until the next pass, while waiting
    std::wstring fault;              ///< what is wrong with the receiver now, "" for nothing
    std::wstring faultSince;         ///< UTC; "" without a fault
};

/// One moment of a run that is served. Never changed once it is published; the next moment is another object, which
/// shares with it what has stayed the same.
struct LiveState
{
    std::wstring serving;  ///< told apart from earlier servings of the same page: the moment it began, UTC
    uint64_t version = 0;  ///< grows with each state of a serving, from 1
    double at = 0;         ///< SteadySeconds of this moment: ages are told from it, whoever sets the clock
    /// What is known before the first channel: setups, receiver, columns, selection, passes. Without channels.
    std::shared_ptr<const FinishedRun> run = std::make_shared<FinishedRun>();
    std::shared_ptr<const Limits> limits;  ///< null for none
    std::vector<LiveChannel> channels;     ///< as FinishedRun::selection
    /// The verdict on the latest measurement of each channel, as if they were one pass; without its channels.
    RunJudgement verdict;
    std::wstring sentence;  ///< that verdict in words
    LiveNow now;
    int32_t passesDone = 0;
    std::optional<double> lastPassSeconds;          ///< that the last whole pass took
    std::wstring lastPassEnded;                     ///< UTC; "" before that
    std::shared_ptr<const std::string> resultFile;  ///< of the last pass, the plug-in's own; null before that
};
using LiveStatePtr = std::shared_ptr<const LiveState>;

/// One measurement of each channel as a run of one pass that ended when the last of them did: what reports, comparisons
/// and result files are made from. `which` is the member to take; channels without it are not measured.
FinishedRun RunOf(const LiveState& state, LiveMeasurementPtr LiveChannel::*which = &LiveChannel::latest);

}  // namespace tvn2x
