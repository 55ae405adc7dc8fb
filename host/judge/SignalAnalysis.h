#pragma once

#include <array>
#include <optional>
#include <vector>

#include "dvbc/Tilt.h"
#include "host/run/FinishedRun.h"

namespace tvn2x {

/// The tilt of the levels of channels. Nothing with fewer than three levels at different frequencies.
std::optional<dvbc::LevelTilt> FitTilt(const std::vector<const ChannelResult*>& channels);

/// What spoils a channel's modulation.
enum class Impairment
{
    noise,
    interference,
    phaseJitter,
    carrierSuppression,
    iqImbalance,
    quadratureError,
    other  ///< what the readings do not account for: head end, echoes beyond the equaliser, rounding
};

constexpr size_t impairments = 7;

const char* ImpairmentName(Impairment impairment);

/// The error power of a channel relative to its signal power, split by what causes it.
struct ErrorBudget
{
    double mer = 0;                           ///< dB, as read
    std::array<double, impairments> power{};  ///< linear, by Impairment
    std::array<double, impairments> share{};  ///< of the sum, 0..1

    Impairment Largest() const;
};

/// The budget from a channel's readings: S/N and C/I as noise and interference, carrier suppression, phase jitter, I/Q
/// imbalance and quadrature error; the rest up to the MER is "other". Nothing where the MER was not measured.
std::optional<ErrorBudget> BudgetOf(const ChannelResult& channel);

}  // namespace tvn2x
