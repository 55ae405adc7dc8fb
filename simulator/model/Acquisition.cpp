#include "simulator/model/Acquisition.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace tvn2x {
namespace {

/// Seconds that each step takes on a strong signal.
constexpr std::array<double, stageCount> strongSignal{0.040, 0.060, 0.080, 0.070, 0.040, 0.030};

constexpr double longestSearch = 2;     // seconds, on a signal that locks at all
constexpr double captureRange = 170e3;  // Hz
constexpr double offsetSearch = 0.080;  // seconds to sweep from the centre to the end of the capture range
constexpr double referenceSettling = 0.3;
constexpr double spread = 0.1;  // of the durations, from one tuning to another
constexpr uint64_t durationStream = 0x6C6F636B;

size_t IndexOf(Stage stage)
{
    return static_cast<size_t>(stage);
}

/// How much longer the decision-directed steps average when the constellation is dense and the signal has little
/// margin.
double Slowness(const Reception& reception, double bitsPerSymbol)
{
    const double weakness = std::exp(-std::max(0.0, reception.margin) / 2);
    const double density = bitsPerSymbol / 6;
    return 1 + 6 * weakness * density * density;
}

Stage FirstLost(LockKind lock)
{
    switch (lock) {
        case LockKind::carrier:
            return Stage::carrier;
        case LockKind::ts:
            return Stage::frameSync;
        default:
            return Stage::gainControl;
    }
}

}  // namespace

Acquisition::Acquisition(const Reception& reception, const SeededNoise& noise) : stagesReached_(reception.stagesReached)
{
    durations_ = strongSignal;
    const double slowness = Slowness(reception, reception.bitsPerSymbol);
    for (const Stage stage : {Stage::equaliser, Stage::carrier, Stage::frameSync}) {
        durations_[IndexOf(stage)] *= slowness;
    }
    durations_[IndexOf(Stage::carrier)] +=
        offsetSearch * std::min(1.0, std::abs(reception.frequencyOffset) / captureRange);
    for (size_t i = 0; i < durations_.size(); ++i) {
        durations_[i] *= 1 + spread * (2 * noise.Uniform(durationStream, i) - 1);
    }
    const double all = std::accumulate(durations_.begin(), durations_.end(), 0.0);
    const double scale = std::min(1.0, longestSearch / all) * reception.channel.lockTimeFactor;
    for (double& duration : durations_) {
        duration *= scale;
    }

    for (int i = 0; i < stageCount; ++i) {
        const auto stage = static_cast<Stage>(i);
        std::vector<Interval> lost{{0, TimeOf(Stage::gainControl, stage)}};
        for (const Outage& outage : reception.channel.outages) {
            const Stage first = FirstLost(outage.lock);
            if (outage.lock != LockKind::reference && first <= stage) {
                lost.push_back({outage.from, outage.from + outage.duration + TimeOf(first, stage)});
            }
        }
        std::ranges::sort(lost, {}, &Interval::from);
        for (const Interval& interval : lost) {
            std::vector<Interval>& merged = unlocked_[IndexOf(stage)];
            if (!merged.empty() && interval.from <= merged.back().to) {
                merged.back().to = std::max(merged.back().to, interval.to);
            } else {
                merged.push_back(interval);
            }
        }
    }
    for (const Outage& outage : reception.channel.outages) {
        if (outage.lock == LockKind::reference) {
            referenceLost_.push_back({outage.from, outage.from + outage.duration + referenceSettling});
        }
    }
}

double Acquisition::TimeOf(Stage first, Stage last) const
{
    return std::accumulate(durations_.begin() + static_cast<int>(first),
                           durations_.begin() + static_cast<int>(last) + 1, 0.0);
}

bool Acquisition::Locked(Stage stage, double elapsed) const
{
    if (static_cast<int>(stage) >= stagesReached_ || elapsed < 0) {
        return false;
    }
    return std::ranges::none_of(unlocked_[IndexOf(stage)], [&](const Interval& interval) {
        return elapsed >= interval.from && elapsed < interval.to;
    });
}

double Acquisition::UnlockedTime(Stage stage, double from, double to) const
{
    if (static_cast<int>(stage) >= stagesReached_) {
        return to - from;
    }
    double sum = 0;
    for (const Interval& interval : unlocked_[IndexOf(stage)]) {
        sum += std::max(0.0, std::min(to, interval.to) - std::max(from, interval.from));
    }
    return sum;
}

double Acquisition::Duration() const
{
    return stagesReached_ == 0 ? 0 : TimeOf(Stage::gainControl, static_cast<Stage>(stagesReached_ - 1));
}

bool Acquisition::ReferenceLost(double elapsed) const
{
    return std::ranges::any_of(
        referenceLost_, [&](const Interval& interval) { return elapsed >= interval.from && elapsed < interval.to; });
}

}  // namespace tvn2x
