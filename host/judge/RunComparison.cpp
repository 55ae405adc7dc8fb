#include "host/judge/RunComparison.h"

#include <cmath>

#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/judge/Judgement.h"
#include "host/judge/VerdictText.h"
#include "host/run/UserNumber.h"

namespace tvn2x {
namespace {

/// By frequency in kHz, because setups may name one frequency with different decimals, and by order of QAM: what is
/// measured with another order is another signal.
using ChannelMap = std::map<std::pair<long long, int32_t>, const ChannelResult*>;

ChannelMap ByFrequency(const FinishedRun& run)
{
    ChannelMap channels;
    for (const size_t position : run.Latest()) {
        const ChannelResult& channel = run.channels[position];
        channels[{std::llround(channel.frequency * 1000), channel.orderOfQam}] = &channel;
    }
    return channels;
}

std::wstring OutcomeIn(const ChannelResult& channel)
{
    std::wstring text = OutcomeText(channel.outcome);
    for (const ReadingKind& kind : ReadingKinds()) {
        const Reading* lock = kind.isLock ? channel.Find(kind.parameter) : nullptr;
        if (lock && channel.outcome == ChannelOutcome::notSynchronised && lock->text != L"OK") {
            text += fmt::format(L", {} {}", kind.title, lock->text);
        }
    }
    return text;
}

/// The number that drift is reckoned from; nothing where a reading has none.
std::optional<double> Comparable(const ChannelResult& channel, const ReadingKind& kind)
{
    if (kind.parameter == MP_RFLEV) {
        return LevelOf(channel);
    }
    const Reading* reading = channel.Find(kind.parameter);
    // A ratio below what could be counted is compared by what it is below of.
    if (!reading || !reading->value || (kind.isRatio && *reading->value <= 0)) {
        return std::nullopt;
    }
    return kind.isRatio ? std::log10(*reading->value) : *reading->value;
}

std::wstring Shown(const ChannelResult& channel, int32_t parameter)
{
    const Reading* reading = channel.Find(parameter);
    return reading ? ReadingText(*reading) : L"not measured";
}

/// A channel that is in both runs.
struct ComparedChannel
{
    std::wstring name;
    const ChannelResult& before;
    const ChannelResult& after;
};

/// Two bounds of one direction ("<1.7E-8", "<1.2E-7") tell nothing of a change.
bool AreBothBounds(const ComparedChannel& channel, int32_t parameter)
{
    const Bound before = channel.before.Find(parameter)->bound;
    return before != Bound::exact && before == channel.after.Find(parameter)->bound;
}

void CompareReading(const ComparedChannel& channel, const ReadingKind& kind, double drift, RunComparison& comparison)
{
    const auto& [name, before, after] = channel;
    const auto old = Comparable(before, kind);
    const auto now = Comparable(after, kind);
    const bool areLocked =
        before.outcome == ChannelOutcome::synchronised && after.outcome == ChannelOutcome::synchronised;
    if (areLocked && old.has_value() != now.has_value()) {
        comparison.changes.push_back(
            {name, kind.title, Shown(before, kind.parameter), Shown(after, kind.parameter), L""});
    }
    if (!old || !now || AreBothBounds(channel, kind.parameter)) {
        return;
    }
    // Readings have few decimals: what differs by the limit itself has not gone beyond it.
    constexpr double rounding = 1e-9;
    const double change = *now - *old;
    if (std::abs(change) > drift + rounding) {
        comparison.changes.push_back(
            {name, kind.title, Shown(before, kind.parameter), Shown(after, kind.parameter),
             (change > 0 ? L"+" : L"") + WithUnit(NumberText(change), UnitOfDifference(kind))});
    }
}

void CompareChannel(const ComparedChannel& channel, const std::map<int32_t, double>& drift, RunComparison& comparison)
{
    const auto& [name, before, after] = channel;
    const bool isUnmeasured =
        before.outcome == ChannelOutcome::unmeasured || after.outcome == ChannelOutcome::unmeasured;
    if (isUnmeasured || OutcomeIn(before) != OutcomeIn(after)) {
        comparison.changes.push_back({name, L"outcome", OutcomeIn(before), OutcomeIn(after), L""});
    }
    if (isUnmeasured) {
        return;
    }
    for (const auto& [parameter, limit] : drift) {
        CompareReading(channel, *FindReadingKind(parameter), limit, comparison);
    }
}

}  // namespace

RunComparison CompareRuns(const FinishedRun& before, const FinishedRun& after, const std::map<int32_t, double>& drift)
{
    const ChannelMap old = ByFrequency(before);
    ChannelMap all = ByFrequency(after);
    const ChannelMap now = all;
    all.insert(old.begin(), old.end());
    RunComparison comparison;
    for (const auto& [signal, channel] : all) {
        const size_t changes = comparison.changes.size();
        const auto was = old.find(signal);
        const auto is = now.find(signal);
        const std::wstring what = fmt::format(L"{}-QAM channel", signal.second);
        const std::wstring name = (is == now.end() ? before : after).NameOf(*channel);
        if (was == old.end()) {
            comparison.changes.push_back({name, what, L"not in the run", OutcomeIn(*channel), L""});
        } else if (is == now.end()) {
            comparison.changes.push_back({name, what, OutcomeIn(*channel), L"not in the run", L""});
        } else {
            ++comparison.channels;
            CompareChannel({name, *was->second, *is->second}, drift, comparison);
        }
        comparison.changed += comparison.changes.size() > changes;
    }
    return comparison;
}

}  // namespace tvn2x
