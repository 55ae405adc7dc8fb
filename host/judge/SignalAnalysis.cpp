#include "host/judge/SignalAnalysis.h"

#include <algorithm>
#include <numeric>

#include "dvbc/Impairments.h"
#include "host/judge/Judgement.h"

namespace tvn2x {

std::optional<dvbc::LevelTilt> FitTilt(const std::vector<const ChannelResult*>& channels)
{
    std::vector<dvbc::LevelPoint> points;
    for (const ChannelResult* channel : channels) {
        if (const auto level = LevelOf(*channel)) {
            points.push_back({channel->frequency, *level});
        }
    }
    return dvbc::FitTilt(std::move(points));
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
    const auto mer = channel.Value(MP_MER);
    if (!mer) {
        return std::nullopt;
    }
    ErrorBudget budget{.mer = *mer, .power = {}, .share = {}};
    const auto set = [&](Impairment impairment, int32_t parameter, auto powerOf) {
        if (const auto value = channel.Value(parameter)) {
            budget.power[static_cast<size_t>(impairment)] = powerOf(*value);
        }
    };
    set(Impairment::noise, MP_SN, dvbc::ErrorPowerOfRatio);
    set(Impairment::interference, MP_CI, dvbc::ErrorPowerOfRatio);
    set(Impairment::phaseJitter, MP_PHASJIT, dvbc::JitterPower);
    set(Impairment::carrierSuppression, MP_CS, dvbc::ErrorPowerOfRatio);
    set(Impairment::iqImbalance, MP_IQIMBAL, dvbc::ImbalancePower);
    set(Impairment::quadratureError, MP_IQPHASE, dvbc::QuadraturePower);
    // The receiver's S/N counts interference as noise.
    double& noise = budget.power[static_cast<size_t>(Impairment::noise)];
    noise = std::max(0.0, noise - budget.power[static_cast<size_t>(Impairment::interference)]);
    const double merPower = dvbc::ErrorPowerOfRatio(*mer);
    const double known = std::accumulate(budget.power.begin(), budget.power.end(), 0.0);
    budget.power[static_cast<size_t>(Impairment::other)] = std::max(0.0, merPower - known);
    const double sum = std::max(known, merPower);
    std::ranges::transform(budget.power, budget.share.begin(), [&](double power) { return power / sum; });
    return budget;
}

}  // namespace tvn2x
