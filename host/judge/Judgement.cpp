#include "host/judge/Judgement.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/judge/VerdictText.h"
#include "host/run/UserNumber.h"
#include "setup/catalogue/LevelUnits.h"
#include "util/RaisedError.h"

namespace tvn2x {
namespace {

/// Where a value is on one side of its limit. Everything is turned so that more is better.
struct Side
{
    std::optional<double> fail;
    std::optional<double> warn;
    bool isUpper = false;
    std::optional<double> span{};  ///< between the failure bounds of both sides
};

/// What is compared.
struct Judged
{
    const ReadingKind& kind;
    Reading reading;
    std::optional<double> value;  ///< in the unit of the limits
};

double Scaled(const ReadingKind& kind, double value)
{
    return kind.isRatio ? std::log10(std::max(value, 1e-30)) : value;
}

/// How far a value is on the good side of a bound.
double Margin(const ReadingKind& kind, const Side& side, double bound, double value)
{
    // Readings have few decimals; the difference of two should not have more than they can tell.
    constexpr double precision = 1e6;
    const double above = std::round((Scaled(kind, value) - Scaled(kind, bound)) * precision) / precision;
    return side.isUpper ? -above : above;
}

/// What a margin is counted in so that parameters compare: the width of the warning band, but at most a tenth of the
/// bound, or of what lies between two failure bounds.
double StepWidth(const ReadingKind& kind, const Side& side)
{
    const double bound = std::abs(Scaled(kind, side.fail ? *side.fail : *side.warn));
    double width = side.span ? *side.span / 10 : bound > 0 ? bound / 10 : 1;
    if (side.fail && side.warn && *side.fail != *side.warn) {
        width = std::min(width, std::abs(Scaled(kind, *side.warn) - Scaled(kind, *side.fail)));
    }
    return width;
}

std::optional<double> InUnitOfLimits(const ReadingKind& kind, double value, const std::wstring& unit)
{
    return kind.parameter == MP_RFLEV ? LevelInDecibelMicrovolt(value, unit) : value;
}

/// A reading as it is shown, and the number that this shows, in the unit of the limits.
struct Shown
{
    std::wstring text;
    double value;
};

/// Nothing for the text of a stored run that somebody has spoilt.
std::optional<double> NumberIn(const std::wstring& text)
{
    try {
        return ParseNumber(text, SystemLocale());
    } catch (const RaisedError&) {
        return std::nullopt;
    }
}

/// The reading with some decimals more than its text has.
std::wstring MoreDecimals(const Reading& reading, int more)
{
    const size_t exponentAt = std::min(reading.text.find(L'E'), reading.text.size());
    const size_t mark = reading.text.find(SystemLocale().DecimalMark());
    const int decimals = more + (mark < exponentAt ? static_cast<int>(exponentAt - mark - 1) : 0);
    if (exponentAt == reading.text.size() || *reading.value == 0) {
        return WithUserMark(fmt::format(L"{:.{}f}", *reading.value, decimals));
    }
    const int exponent = static_cast<int>(std::floor(std::log10(std::abs(*reading.value))));
    return WithUserMark(fmt::format(L"{:.{}f}E{}", *reading.value / std::pow(10, exponent), decimals, exponent));
}

/// The reading as the grid has it, or with as many decimals more as it takes to tell on which side of a bound it is.
Shown ShowBeside(const Judged& judged, const Side& side, double bound)
{
    constexpr int mostMore = 5;
    const auto sideOf = [&](double value) {
        const double margin = Margin(judged.kind, side, bound, value);
        return (margin > 0) - (margin < 0);
    };
    Shown shown{judged.reading.text, *judged.value};
    if (judged.reading.bound != Bound::exact) {
        return shown;
    }
    for (int more = 1; more <= mostMore; ++more) {
        const std::optional<double> number = NumberIn(shown.text);
        const auto value = number ? InUnitOfLimits(judged.kind, *number, judged.reading.unit) : std::nullopt;
        if (value && sideOf(*value) == sideOf(*judged.value)) {
            return {shown.text, *value};
        }
        shown.text = MoreDecimals(judged.reading, more);
    }
    return shown;
}

Finding JudgeNumber(const Judged& judged, const Side& side)
{
    const ReadingKind& kind = judged.kind;
    const double value = *judged.value;
    Finding finding{.parameter = kind.parameter};
    const double failMargin = side.fail ? Margin(kind, side, *side.fail, value) : 0;
    const double warnMargin = side.warn ? Margin(kind, side, *side.warn, value) : 0;
    finding.margin = side.fail ? failMargin : warnMargin;
    finding.rank =
        side.fail ? failMargin / StepWidth(kind, side) + (side.warn ? 0 : 1) : 1 + warnMargin / StepWidth(kind, side);
    if (side.fail && failMargin < 0) {
        finding.verdict = Verdict::fail;
    } else if (side.warn && warnMargin < 0) {
        finding.verdict = Verdict::warning;
    }
    const bool usesWarning = !side.fail || finding.verdict == Verdict::warning;
    const double bound = usesWarning ? *side.warn : *side.fail;
    const Shown shown = ShowBeside(judged, side, bound);
    const double distance = Margin(kind, side, bound, shown.value);
    finding.text = fmt::format(L"{} {} is {} {} the {} of {}", kind.title, WithUnit(shown.text, judged.reading.unit),
                               MarginText({.parameter = kind.parameter, .margin = std::abs(distance)}),
                               side.isUpper == (distance < 0) ? L"above" : L"below",
                               usesWarning ? L"warning limit" : L"limit", WithUnit(NumberText(bound), kind.unit));
    return finding;
}

/// A reading that is only known to be beyond some number, or beyond what the receiver can read. It fails where it is on
/// the bad side of the limit for certain, passes where it is on the good side, and otherwise says nothing.
Finding JudgeBound(const Judged& judged, const Side& side)
{
    const bool isGoodDirection = (judged.reading.bound == Bound::above) != side.isUpper;
    if (judged.value) {
        Finding finding = JudgeNumber(judged, side);
        if (isGoodDirection == (finding.verdict == Verdict::pass)) {
            return finding;
        }
    } else if (isGoodDirection) {
        return {.parameter = judged.kind.parameter,
                .rank = 1e9,
                .text = fmt::format(L"{} is {}, beyond the receiver's range", judged.kind.title, judged.reading.text)};
    } else if (side.fail) {
        return {.parameter = judged.kind.parameter,
                .verdict = Verdict::fail,
                .rank = -1e9,
                .text = fmt::format(L"{} is {}: beyond the receiver's range and the limit of {}", judged.kind.title,
                                    judged.reading.text, WithUnit(NumberText(*side.fail), judged.kind.unit))};
    }
    return {.parameter = judged.kind.parameter,
            .verdict = Verdict::notMeasured,
            .text = fmt::format(L"{} is {}, which the limits cannot judge", judged.kind.title, judged.reading.text),
            .unapplied = L"beyond what can be judged"};
}

bool IsWorse(const Finding& left, const Finding& right)
{
    return left.verdict != right.verdict ? left.verdict > right.verdict : left.rank < right.rank;
}

Finding JudgeReading(const Judged& judged, const Limit& limit)
{
    std::optional<Finding> worst;
    std::optional<double> span;
    if (limit.failBelow && limit.failAbove && *limit.failAbove > *limit.failBelow) {
        span = *limit.failAbove - *limit.failBelow;
    }
    for (const Side& side :
         {Side{limit.failBelow, limit.warnBelow, false, span}, Side{limit.failAbove, limit.warnAbove, true, span}}) {
        if (!side.fail && !side.warn) {
            continue;
        }
        Finding finding = judged.reading.bound == Bound::exact ? JudgeNumber(judged, side) : JudgeBound(judged, side);
        if (!worst || IsWorse(finding, *worst)) {
            worst = std::move(finding);
        }
    }
    return *worst;
}

bool IsLocked(const ChannelResult& channel)
{
    return channel.outcome == ChannelOutcome::synchronised;
}

Finding Unapplied(const ReadingKind& kind, const std::wstring& text, const wchar_t* reason)
{
    return {.parameter = kind.parameter, .verdict = Verdict::notMeasured, .text = text, .unapplied = reason};
}

/// What a channel should have and has not. A receiver that is not calibrated cannot know a level: that is nobody's
/// fault, and the limit is told as one that was not applied.
Finding Missing(const ChannelResult& channel, const ReadingKind& kind)
{
    if (channel.details.hasUnknownLevel && (kind.parameter == MP_RFLEV || kind.parameter == levelStep)) {
        return {.parameter = kind.parameter, .rank = 1e9, .text = L"", .unapplied = L"the receiver is not calibrated"};
    }
    return Unapplied(kind, fmt::format(L"{} was not measured", kind.title), L"not measured");
}

/// Of a channel without its locks nothing is missed that nobody can read.
std::optional<Finding> FindingOf(const ChannelResult& channel, const ReadingKind& kind, const Limit& limit)
{
    const Reading* reading = channel.Find(kind.parameter);
    if (reading && (reading->value || reading->bound != Bound::exact)) {
        Judged judged{kind, *reading, {}};
        if (reading->value) {
            judged.value = InUnitOfLimits(kind, *reading->value, reading->unit);
        }
        if (judged.value || !reading->value) {
            return JudgeReading(judged, limit);
        }
        return Unapplied(kind,
                         fmt::format(L"{} {} cannot be converted to {}", kind.title,
                                     WithUnit(reading->text, reading->unit), kind.unit),
                         L"no level that can be converted");
    }
    if (!IsLocked(channel)) {
        return std::nullopt;
    }
    return Missing(channel, kind);
}

std::optional<Finding> StepFinding(const ChannelResult& channel, const std::optional<double>& step,
                                   const ReadingKind& kind, const Limit& limit)
{
    if (step) {
        const double size = std::abs(*step);
        const Reading reading{.parameter = levelStep, .text = NumberText(size), .value = size, .unit = kind.unit};
        return JudgeReading({kind, reading, size}, limit);
    }
    if (!IsLocked(channel) || LevelOf(channel)) {
        return std::nullopt;
    }
    return Missing(channel, kind);
}

std::wstring LockReason(const ChannelResult& channel)
{
    std::wstring reason = L"not synchronised";
    const wchar_t* joint = L": ";
    for (const ReadingKind& kind : ReadingKinds()) {
        const Reading* lock = kind.isLock ? channel.Find(kind.parameter) : nullptr;
        if (kind.isLock && (!lock || lock->text != L"OK")) {
            reason += joint + (kind.title + (L" " + (lock ? lock->text : L"not measured")));
            joint = L", ";
        }
    }
    return reason;
}

/// The worst findings first; those of the channel's own verdict are its reason.
void Conclude(const ChannelResult& channel, ChannelJudgement& judgement)
{
    std::vector<std::wstring> reasons;
    if (channel.outcome == ChannelOutcome::notSynchronised) {
        judgement.verdict = Verdict::fail;
        reasons.push_back(LockReason(channel));
    }
    for (const Finding& finding : judgement.findings) {
        judgement.verdict = std::max(judgement.verdict, finding.verdict);
    }
    for (const Finding& finding : judgement.findings) {
        if (judgement.verdict != Verdict::pass && finding.verdict == judgement.verdict) {
            reasons.push_back(finding.text);
        }
    }
    judgement.reason = fmt::format(L"{}", fmt::join(reasons, L"; "));
}

ChannelJudgement JudgeChannel(const ChannelResult& channel, const Limits* limits, const std::optional<double>& step)
{
    ChannelJudgement judgement;
    if (channel.outcome == ChannelOutcome::unmeasured) {
        judgement.verdict = Verdict::notMeasured;
        judgement.reason = L"the channel was not measured";
        return judgement;
    }
    if (channel.outcome == ChannelOutcome::error) {
        judgement.verdict = Verdict::error;
        judgement.reason = L"the instrument ended the channel with \"" + channel.status + L"\"" +
                           (channel.details.remark.empty() ? L"" : L": " + channel.details.remark);
        return judgement;
    }
    for (const ReadingKind& kind : ReadingKinds()) {
        const Limit* limit = limits ? limits->Find(kind.parameter, channel.orderOfQam) : nullptr;
        if (!limit) {
            continue;
        }
        if (auto finding = kind.parameter == levelStep ? StepFinding(channel, step, kind, *limit)
                                                       : FindingOf(channel, kind, *limit)) {
            judgement.findings.push_back(std::move(*finding));
        }
    }
    Conclude(channel, judgement);
    return judgement;
}

void AddUnapplied(int32_t parameter, const std::wstring& reason, RunJudgement& judgement)
{
    for (UnappliedLimit& known : judgement.unapplied) {
        if (known.parameter == parameter && known.reason == reason) {
            ++known.channels;
            return;
        }
    }
    judgement.unapplied.push_back({parameter, reason, 1});
}

/// Which limits were held against a channel, and which could not be.
void CountApplied(const ChannelResult& result, const ChannelJudgement& channel, const Limits& limits,
                  const std::set<int32_t>& parameters, RunJudgement& judgement)
{
    for (const Finding& finding : channel.findings) {
        if (finding.unapplied.empty()) {
            judgement.unjudged.erase(result.orderOfQam);
        } else {
            AddUnapplied(finding.parameter, finding.unapplied, judgement);
        }
    }
    if (result.outcome == ChannelOutcome::unmeasured) {
        return;
    }
    for (const int32_t parameter : parameters) {
        if (!limits.Find(parameter, result.orderOfQam)) {
            AddUnapplied(parameter, fmt::format(L"no section for {}-QAM", result.orderOfQam), judgement);
        }
    }
}

/// Whatever was planned and is no result counts as not measured, also where the run has no place for it.
void CountPlanned(const FinishedRun& run, RunJudgement& judgement)
{
    const auto places = static_cast<int64_t>(run.channels.size());
    judgement.isComplete = run.IsComplete();
    judgement.planned = std::max(run.Planned(), places);
    judgement.counts[static_cast<size_t>(Verdict::notMeasured)] += judgement.planned - places;
}

/// A lost lock comes before a missed limit.
bool IsWorseChannel(const FinishedRun& run, const RunJudgement& judgement, size_t left, size_t right)
{
    const bool leftLocked = IsLocked(run.channels[left]);
    const bool rightLocked = IsLocked(run.channels[right]);
    if (leftLocked != rightLocked) {
        return rightLocked;
    }
    const Finding* const worst = judgement.channels[left].Worst();
    const Finding* const other = judgement.channels[right].Worst();
    return worst && other && IsWorse(*worst, *other);
}

/// Of the channels that have the run's verdict the worst one that can tell more than the counts do.
std::optional<size_t> WorstChannel(const FinishedRun& run, const RunJudgement& judgement)
{
    std::optional<size_t> worst;
    for (size_t i = 0; i < run.channels.size(); ++i) {
        const ChannelJudgement& channel = judgement.channels[i];
        const bool tells = channel.verdict == Verdict::pass ? channel.Worst() && channel.Worst()->margin
                                                            : run.channels[i].outcome != ChannelOutcome::unmeasured;
        if (channel.verdict == judgement.verdict && tells && (!worst || IsWorseChannel(run, judgement, i, *worst))) {
            worst = i;
        }
    }
    return worst;
}

}  // namespace

const Finding* ChannelJudgement::Worst() const
{
    const auto worst = std::ranges::min_element(findings, IsWorse);
    return worst == findings.end() ? nullptr : &*worst;
}

const Finding* ChannelJudgement::Find(int32_t parameter) const
{
    const auto found = std::ranges::find(findings, parameter, &Finding::parameter);
    return found == findings.end() ? nullptr : &*found;
}

bool ChannelJudgement::IsWorseThan(const ChannelJudgement& other) const
{
    if (verdict != other.verdict) {
        return verdict > other.verdict;
    }
    return Worst() && other.Worst() && Worst()->rank < other.Worst()->rank;
}

int RunJudgement::ExitCode() const
{
    return verdict <= Verdict::warning ? 0 : 1;
}

RunJudgement Judge(const FinishedRun& run, const Limits* limits)
{
    RunJudgement judgement;
    judgement.hasLimits = limits != nullptr;
    std::set<int32_t> parameters;
    if (limits) {
        parameters = limits->Parameters();
        judgement.limits = limits->path;
        judgement.limitsSha256 = limits->sha256;
        judgement.unjudged = run.OrdersOfQam();
    }
    const auto steps = LevelSteps(run);
    for (size_t i = 0; i < run.channels.size(); ++i) {
        judgement.channels.push_back(JudgeChannel(run.channels[i], limits, steps[i]));
        const ChannelJudgement& channel = judgement.channels.back();
        judgement.verdict = std::max(judgement.verdict, channel.verdict);
        ++judgement.counts[static_cast<size_t>(channel.verdict)];
        if (limits) {
            CountApplied(run.channels[i], channel, *limits, parameters, judgement);
        }
    }
    CountPlanned(run, judgement);
    if (!judgement.isComplete || !judgement.IsJudged()) {
        judgement.verdict = std::max(judgement.verdict, Verdict::notMeasured);
    }
    judgement.worst = WorstChannel(run, judgement);
    return judgement;
}

std::vector<std::optional<double>> LevelSteps(const FinishedRun& run)
{
    constexpr double neighbourhood = 8.5;  // MHz; a European channel is 7 or 8 wide
    std::vector<std::optional<double>> steps(run.channels.size());
    std::map<int32_t, std::map<double, size_t>> passes;
    for (size_t i = 0; i < run.channels.size(); ++i) {
        if (LevelOf(run.channels[i])) {
            passes[run.channels[i].pass].emplace(run.channels[i].frequency, i);
        }
    }
    for (const auto& [pass, channels] : passes) {
        const ChannelResult* below = nullptr;
        for (const auto& [frequency, position] : channels) {
            const ChannelResult& channel = run.channels[position];
            if (below && frequency - below->frequency <= neighbourhood) {
                steps[position] = *LevelOf(channel) - *LevelOf(*below);
            }
            below = &channel;
        }
    }
    return steps;
}

std::optional<double> LevelOf(const ChannelResult& channel)
{
    const std::optional<double> level = channel.Value(MP_RFLEV);
    return level ? LevelInDecibelMicrovolt(*level, channel.Find(MP_RFLEV)->unit) : std::nullopt;
}

}  // namespace tvn2x
