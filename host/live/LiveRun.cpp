#include "host/live/LiveRun.h"

#include <algorithm>
#include <utility>

#include "host/judge/VerdictText.h"

namespace tvn2x {
namespace {

constexpr size_t longestHistory = 512;
constexpr double stepsShownAgainAfter = 0.5;  // seconds

bool IsGood(Verdict verdict)
{
    return verdict <= Verdict::warning;
}

std::optional<float> Number(const std::optional<double>& value)
{
    return value ? std::optional(static_cast<float>(*value)) : std::nullopt;
}

LivePoint PointOf(const LiveMeasurement& measurement)
{
    const ChannelResult& result = measurement.result;
    LivePoint point{.pass = result.pass,
                    .began = MillisecondsOf(result.began).value_or(0),
                    .verdict = measurement.judgement.verdict};
    point.level = Number(LevelOf(result));
    point.mer = Number(result.Value(MP_MER));
    if (const Reading* const ber = result.Find(MP_BER); ber && ber->bound != Bound::above) {
        point.ber = Number(ber->value);
        point.isBerBound = ber->bound == Bound::below;
    }
    return point;
}

/// Merges neighbours of the older half, so that what is left of it is spread evenly: the worst of each group stays.
void Thin(LiveHistory& history)
{
    constexpr int32_t groups = longestHistory / 4;
    const auto recent = history.begin() + longestHistory / 2;
    const int32_t width = (recent->pass - history.front().pass) / groups + 1;
    LiveHistory thin;
    thin.reserve(longestHistory);
    int32_t group = -1;
    for (auto point = history.begin(); point != recent; ++point) {
        const int32_t next = (point->pass - history.front().pass) / width;
        if (next != group) {
            thin.push_back(*point);
        } else if (point->verdict > thin.back().verdict) {
            thin.back() = *point;
        }
        group = next;
    }
    thin.insert(thin.end(), recent, history.end());
    history = std::move(thin);
}

}  // namespace

LiveRun::LiveRun(std::wstring serving, std::shared_ptr<const Limits> limits, Clock& clock, Publish publish)
    : clock_(clock), publish_(std::move(publish))
{
    state_.serving = std::move(serving);
    state_.limits = std::move(limits);
    JudgeLatest();
    PublishNow();
}

void LiveRun::Begin(const FinishedRun& run)
{
    latest_ = run;
    latest_.passes = 1;
    latest_.channels.clear();
    auto header = std::make_shared<FinishedRun>(run);
    header->channels.clear();
    state_.run = std::move(header);
    state_.channels.clear();
    for (const PlannedChannel& planned : run.selection) {
        LiveChannel& channel = state_.channels.emplace_back();
        channel.planned = planned;
        channel.orderOfQam = run.setups[run.SetupOf(planned.number)].settings.orderOfQam;
        channel.changed = state_.version + 1;
    }
    latest_.Complete();
    std::span<const ChannelResult> left = run.channels;
    while (!left.empty()) {
        const auto next =
            std::ranges::find_if(left, [&](const ChannelResult& result) { return result.pass != left.front().pass; });
        const auto size = static_cast<size_t>(next - left.begin());
        Take(left.first(size));
        left = left.subspan(size);
    }
    JudgeLatest();
    PublishNow();
}

void LiveRun::BeginPass(int32_t pass, int32_t channels)
{
    pass_ = {.channels = channels, .channel = {}, .status = {}};
    passBegan_ = clock_.SteadySeconds();
    Enter(LivePhase::measuring);
    state_.now.pass = pass;
    state_.now.done = static_cast<int32_t>(state_.channels.size()) - channels;
    PublishNow();
}

void LiveRun::BeginChannel(int32_t number)
{
    state_.now.channel = number;
    state_.now.step = 0;
    state_.now.status.clear();
    PublishNow();
}

void LiveRun::Step(double step, const std::wstring& status)
{
    state_.now.step = std::clamp(step, 0.0, 1.0);
    state_.now.status = status;
    if (clock_.SteadySeconds() - shown_ >= stepsShownAgainAfter) {
        PublishNow();
    }
}

void LiveRun::EndChannel(const ChannelResult& result, const std::wstring& fault)
{
    ++pass_.done;
    pass_.elapsedAtDone = clock_.SteadySeconds() - passBegan_;
    ++state_.now.done;
    state_.now.channel.reset();
    if (result.outcome == ChannelOutcome::error) {
        state_.now.fault = fault.empty() ? result.status : fault;
        state_.now.faultSince = state_.now.faultSince.empty() ? result.began : state_.now.faultSince;
    } else if (result.outcome != ChannelOutcome::unmeasured) {
        state_.now.fault.clear();
        state_.now.faultSince.clear();
    }
    Take({&result, 1});
    PublishNow();
}

void LiveRun::EndPass(double seconds, const std::wstring& ended, std::optional<std::string> resultFile)
{
    ++state_.passesDone;
    state_.lastPassSeconds = seconds;
    state_.lastPassEnded = ended;
    state_.resultFile = resultFile ? std::make_shared<const std::string>(std::move(*resultFile)) : nullptr;
    PublishNow();
}

void LiveRun::Wait(double seconds)
{
    Enter(LivePhase::waiting);
    state_.now.nextPass = seconds;
    PublishNow();
}

void LiveRun::End()
{
    Enter(LivePhase::ended);
    PublishNow();
}

/// No channel and no waiting time goes on into another phase.
void LiveRun::Enter(LivePhase phase)
{
    state_.now.phase = phase;
    state_.now.channel.reset();
    state_.now.nextPass.reset();
}

/// Results of one pass, which are judged together.
void LiveRun::Take(std::span<const ChannelResult> results)
{
    std::vector<LiveChannel*> taken;
    for (const ChannelResult& result : results) {
        const auto place = std::ranges::find(latest_.channels, result.number, &ChannelResult::number);
        if (place == latest_.channels.end() || result.outcome == ChannelOutcome::unmeasured) {
            continue;
        }
        *place = result;
        place->pass = 1;
        LiveChannel& channel = state_.channels[static_cast<size_t>(place - latest_.channels.begin())];
        channel.latest =
            std::make_shared<LiveMeasurement>(LiveMeasurement{.result = result, .judgement = {}, .step = {}});
        ++channel.measurements;
        channel.errors += result.outcome == ChannelOutcome::error ? 1 : 0;
        auto history = std::make_shared<LiveHistory>(*channel.history);
        if (history->size() >= longestHistory) {
            Thin(*history);
        }
        history->push_back({.pass = result.pass});
        channel.history = std::move(history);
        taken.push_back(&channel);
        channel.changed = 0;
    }
    if (!taken.empty()) {
        JudgeLatest();
    }
}

/// A channel's verdict follows from itself and from its level above the channel below, so that one result may change
/// the next channel's as well.
void LiveRun::JudgeLatest()
{
    const RunJudgement judgement = Judge(latest_, state_.limits.get());
    const auto steps = LevelSteps(latest_);
    for (size_t i = 0; i < state_.channels.size(); ++i) {
        LiveChannel& channel = state_.channels[i];
        if (channel.latest && (channel.changed == 0 || channel.latest->step != steps[i])) {
            Rejudge(channel, judgement.channels[i], steps[i]);
        }
    }
    state_.sentence = VerdictSentence(latest_, judgement);
    state_.verdict = judgement;
    state_.verdict.channels.clear();
}

void LiveRun::Rejudge(LiveChannel& channel, const ChannelJudgement& judgement, const std::optional<double>& step)
{
    const LiveMeasurementPtr before = channel.latest;
    channel.latest = std::make_shared<LiveMeasurement>(LiveMeasurement{before->result, judgement, step});
    if (!channel.first || channel.first == before) {
        channel.first = channel.latest;
    }
    if (!channel.worst || channel.worst == before || judgement.IsWorseThan(channel.worst->judgement)) {
        channel.worst = channel.latest;
    }
    auto history = std::make_shared<LiveHistory>(*channel.history);
    history->back() = PointOf(*channel.latest);
    channel.history = std::move(history);
    if (IsGood(judgement.verdict)) {
        channel.badSince.clear();
    } else if (channel.badSince.empty()) {
        channel.badSince = before->result.began;
    }
    channel.changed = state_.version + 1;
}

void LiveRun::PublishNow()
{
    state_.at = clock_.SteadySeconds();
    LiveNow& now = state_.now;
    now.left.reset();
    if (now.phase == LivePhase::measuring && pass_.done > 0) {
        const double each = pass_.elapsedAtDone / pass_.done;
        const double sinceDone = state_.at - passBegan_ - pass_.elapsedAtDone;
        now.left = std::max(0.0, each * (pass_.channels - pass_.done) - sinceDone);
    }
    ++state_.version;
    shown_ = state_.at;
    publish_(std::make_shared<const LiveState>(state_));
}

}  // namespace tvn2x
