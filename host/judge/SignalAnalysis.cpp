#include "host/judge/SignalAnalysis.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

#include "host/judge/Judgement.h"

namespace tvn2x {

namespace {

double FromDecibel(double decibel)
{
    return std::pow(10, -decibel / 10);
}

double Square(double value)
{
    return value * value;
}

double Radian(double degrees)
{
    return degrees * std::numbers::pi / 180;
}

}  // namespace

double LevelTilt::At(double frequency) const
{
    const double position = (std::sqrt(frequency) - std::sqrt(lowestFrequency)) /
                            (std::sqrt(highestFrequency) - std::sqrt(lowestFrequency));
    return atLowest + position * Tilt();
}

std::optional<LevelTilt> FitTilt(const std::vector<const ChannelResult*>& channels)
{
    std::vector<std::pair<double, double>> points;  // square root of MHz, dBµV
    for (const ChannelResult* channel : channels) {
        if (const auto level = LevelOf(*channel); level && channel->frequency > 0) {
            points.emplace_back(std::sqrt(channel->frequency), *level);
        }
    }
    std::ranges::sort(points);
    constexpr size_t fewest = 3;
    if (points.size() < fewest || points.back().first <= points.front().first) {
        return std::nullopt;
    }
    const auto count = static_cast<double>(points.size());
    double x = 0, y = 0;
    for (const auto& point : points) {
        x += point.first / count;
        y += point.second / count;
    }
    double xx = 0, xy = 0;
    for (const auto& point : points) {
        xx += Square(point.first - x);
        xy += (point.first - x) * (point.second - y);
    }
    const double slope = xy / xx;
    double rest = 0;
    for (const auto& point : points) {
        rest += Square(point.second - y - slope * (point.first - x));
    }
    return LevelTilt{.lowestFrequency = Square(points.front().first),
                     .highestFrequency = Square(points.back().first),
                     .atLowest = y + slope * (points.front().first - x),
                     .atHighest = y + slope * (points.back().first - x),
                     .spread = std::sqrt(rest / count)};
}

const char* ImpairmentName(Impairment impairment)
{
    constexpr const char* names[impairments] = {
        "noise", "interference", "phase jitter", "carrier suppression", "I/Q imbalance", "quadrature error", "other"};
    return names[static_cast<size_t>(impairment)];
}

Impairment ErrorBudget::Largest() const
{
    return static_cast<Impairment>(std::ranges::max_element(power) - power.begin());
}

std::optional<ErrorBudget> BudgetOf(const ChannelResult& channel)
{
    const auto mer = channel.Value(parameter::mer);
    if (!mer) {
        return std::nullopt;
    }
    ErrorBudget budget{.mer = *mer, .power = {}, .share = {}};
    const auto set = [&](Impairment impairment, int32_t parameter, auto powerOf) {
        if (const auto value = channel.Value(parameter)) {
            budget.power[static_cast<size_t>(impairment)] = powerOf(*value);
        }
    };
    set(Impairment::noise, parameter::signalToNoise, FromDecibel);
    set(Impairment::interference, parameter::carrierToInterference, FromDecibel);
    set(Impairment::phaseJitter, parameter::phaseJitter, [](double value) { return Square(Radian(value)); });
    set(Impairment::carrierSuppression, parameter::carrierSuppression, FromDecibel);
    set(Impairment::iqImbalance, parameter::iqImbalance, [](double value) { return Square(value / 200); });
    set(Impairment::quadratureError, parameter::iqPhase,
        [](double value) { return Square(std::sin(Radian(value) / 2)); });
    // The receiver's S/N counts interference as noise.
    double& noise = budget.power[static_cast<size_t>(Impairment::noise)];
    noise = std::max(0.0, noise - budget.power[static_cast<size_t>(Impairment::interference)]);
    const double known = std::accumulate(budget.power.begin(), budget.power.end(), 0.0);
    budget.power[static_cast<size_t>(Impairment::other)] = std::max(0.0, FromDecibel(*mer) - known);
    const double sum = std::max(known, FromDecibel(*mer));
    std::ranges::transform(budget.power, budget.share.begin(), [&](double power) { return power / sum; });
    return budget;
}

}  // namespace tvn2x
