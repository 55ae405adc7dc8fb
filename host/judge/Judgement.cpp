#include "host/judge/Judgement.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "fmt/format.h"
#include "fmt/xchar.h"
#include "setup/catalogue/LevelUnits.h"

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

/// What is compared: the reading in the unit of its limits.
struct Judged
{
    const ReadingKind& kind;
    std::wstring shown;  ///< value and unit as they were read
    std::optional<double> value;
    Bound bound = Bound::exact;
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

std::wstring WithUnit(const std::wstring& text, std::wstring_view unit)
{
    return unit.empty() ? text : text + (unit == L"°" ? L"" : L" ") + std::wstring(unit);
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
    const double distance = usesWarning ? warnMargin : failMargin;
    finding.text =
        fmt::format(L"{} {} is {} {} the {} of {}", kind.title, judged.shown,
                    MarginText({.parameter = kind.parameter, .margin = std::abs(distance)}),
                    side.isUpper == (distance < 0) ? L"above" : L"below", usesWarning ? L"warning limit" : L"limit",
                    WithUnit(NumberText(usesWarning ? *side.warn : *side.fail), kind.unit));
    return finding;
}

/// A reading that is only known to be beyond some number, or beyond what the receiver can read. It fails where it is on
/// the bad side of the limit for certain, passes where it is on the good side, and otherwise says nothing.
Finding JudgeBound(const Judged& judged, const Side& side)
{
    const bool isGoodDirection = (judged.bound == Bound::above) != side.isUpper;
    if (judged.value) {
        Finding finding = JudgeNumber(judged, side);
        if (isGoodDirection == (finding.verdict == Verdict::pass)) {
            return finding;
        }
    } else if (isGoodDirection) {
        return {.parameter = judged.kind.parameter,
                .rank = 1e9,
                .text = fmt::format(L"{} is {}, beyond the receiver's range", judged.kind.title, judged.shown)};
    } else if (side.fail) {
        return {.parameter = judged.kind.parameter,
                .verdict = Verdict::fail,
                .rank = -1e9,
                .text = fmt::format(L"{} is {}: beyond the receiver's range and the limit of {}", judged.kind.title,
                                    judged.shown, WithUnit(NumberText(*side.fail), judged.kind.unit))};
    }
    return {.parameter = judged.kind.parameter,
            .verdict = Verdict::notMeasured,
            .text = fmt::format(L"{} is {}, which the limits cannot judge", judged.kind.title, judged.shown)};
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
        Finding finding = judged.bound == Bound::exact ? JudgeNumber(judged, side) : JudgeBound(judged, side);
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

std::optional<Finding> FindingOf(const ChannelResult& channel, const ReadingKind& kind, const Limit& limit)
{
    const Reading* reading = channel.Find(kind.parameter);
    if (!reading) {
        return std::nullopt;
    }
    Judged judged{kind, WithUnit(reading->text, reading->value ? reading->unit : L""), reading->value, reading->bound};
    if (kind.parameter == MP_RFLEV && reading->value) {
        judged.value = LevelInDecibelMicrovolt(*reading->value, reading->unit);
    }
    if (judged.value || judged.bound != Bound::exact) {
        return JudgeReading(judged, limit);
    }
    if (!IsLocked(channel)) {
        return std::nullopt;
    }
    return Finding{.parameter = kind.parameter,
                   .verdict = Verdict::notMeasured,
                   .text = fmt::format(L"{} was not measured", kind.title)};
}

std::wstring LockReason(const ChannelResult& channel)
{
    std::wstring reason = L"not synchronised";
    const wchar_t* joint = L": ";
    for (const ReadingKind& kind : ReadingKinds()) {
        const Reading* lock = kind.isLock ? channel.Find(kind.parameter) : nullptr;
        if (lock && lock->text != L"OK") {
            reason += joint + (kind.title + (L" " + lock->text));
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

ChannelJudgement JudgeChannel(const ChannelResult& channel, int32_t orderOfQam, const Limits* limits,
                              const std::optional<double>& step)
{
    ChannelJudgement judgement;
    if (channel.outcome == ChannelOutcome::unmeasured) {
        judgement.verdict = Verdict::notMeasured;
        judgement.reason = L"the channel was not measured";
        return judgement;
    }
    if (channel.outcome == ChannelOutcome::error) {
        judgement.verdict = Verdict::error;
        judgement.reason = L"the instrument ended the channel with \"" + channel.status + L"\"";
        return judgement;
    }
    for (const ReadingKind& kind : ReadingKinds()) {
        const Limit* limit = limits ? limits->Find(kind.parameter, orderOfQam) : nullptr;
        if (!limit) {
            continue;
        }
        if (kind.parameter == levelStep && step) {
            const double size = std::abs(*step);
            judgement.findings.push_back(JudgeReading({kind, NumberText(size) + L" dB", size}, *limit));
        } else if (auto finding = FindingOf(channel, kind, *limit)) {
            judgement.findings.push_back(std::move(*finding));
        }
    }
    Conclude(channel, judgement);
    return judgement;
}

std::wstring Counted(int32_t count, const wchar_t* what, const wchar_t* several)
{
    return fmt::format(L"{} {}", count, count == 1 ? what : several);
}

}  // namespace

const wchar_t* VerdictName(Verdict verdict)
{
    constexpr const wchar_t* names[verdicts] = {L"pass", L"warning", L"not measured", L"error", L"fail"};
    return names[static_cast<size_t>(verdict)];
}

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

int RunJudgement::ExitCode() const
{
    return verdict <= Verdict::warning ? 0 : 1;
}

RunJudgement Judge(const FinishedRun& run, const Limits* limits)
{
    RunJudgement judgement;
    judgement.hasLimits = limits != nullptr;
    if (limits) {
        judgement.limits = limits->path;
        judgement.limitsSha256 = limits->sha256;
    }
    const auto steps = LevelSteps(run);
    for (size_t i = 0; i < run.channels.size(); ++i) {
        judgement.channels.push_back(JudgeChannel(run.channels[i], run.setup.settings.orderOfQam, limits, steps[i]));
        const ChannelJudgement& channel = judgement.channels.back();
        judgement.verdict = std::max(judgement.verdict, channel.verdict);
        ++judgement.counts[static_cast<size_t>(channel.verdict)];
        const Finding* finding = channel.Worst();
        if (finding && finding->margin &&
            (!judgement.worst || IsWorse(*finding, *judgement.channels[*judgement.worst].Worst()))) {
            judgement.worst = i;
        }
    }
    if (run.channels.empty()) {
        judgement.verdict = Verdict::notMeasured;
    }
    return judgement;
}

std::wstring VerdictSentence(const FinishedRun& run, const RunJudgement& judgement)
{
    const wchar_t* what = run.passes == 1 ? L"channel" : L"measurement";
    constexpr const wchar_t* heads[verdicts] = {L"PASS", L"PASS WITH WARNINGS", L"NOT MEASURED", L"ERROR", L"FAIL"};
    const auto total = static_cast<int32_t>(run.channels.size());
    std::wstring text =
        fmt::format(L"{}: {} of {} pass", heads[static_cast<size_t>(judgement.verdict)], judgement.Count(Verdict::pass),
                    Counted(total, what, (std::wstring(what) + L"s").c_str()));
    const auto add = [&](Verdict verdict, const wchar_t* one, const wchar_t* several) {
        if (const int32_t count = judgement.Count(verdict)) {
            text += L", " + Counted(count, one, several);
        }
    };
    add(Verdict::warning, L"with a warning", L"with warnings");
    add(Verdict::fail, L"fails", L"fail");
    add(Verdict::error, L"error of the instrument", L"errors of the instrument");
    add(Verdict::notMeasured, L"not measured", L"not measured");
    text += L".";
    if (judgement.worst) {
        const ChannelResult& channel = run.channels[*judgement.worst];
        const Finding& finding = *judgement.channels[*judgement.worst].Worst();
        text += fmt::format(L" Worst margin: {}, {}", channel.Name(), finding.text);
        text += run.passes == 1 ? L"." : fmt::format(L" (pass {}).", channel.pass);
    }
    return text;
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

std::wstring MarginText(const Finding& finding)
{
    const ReadingKind& kind = *FindReadingKind(finding.parameter);
    return WithUnit(kind.isRatio ? fmt::format(L"{:.2f}", *finding.margin) : NumberText(*finding.margin),
                    UnitOfDifference(kind));
}

std::wstring NumberText(double number)
{
    const double size = std::abs(number);
    if (size == 0 || size >= 1e-3) {
        return size >= 100 ? fmt::format(L"{:.0f}", number) : fmt::format(L"{:.3g}", number);
    }
    const int exponent = static_cast<int>(std::floor(std::log10(size)));
    return fmt::format(L"{:.3g}E{}", number / std::pow(10, exponent), exponent);
}

}  // namespace tvn2x
