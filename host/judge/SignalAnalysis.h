#pragma once

#include <array>
#include <optional>
#include <vector>

#include "host/run/FinishedRun.h"

namespace tvn2x {

/// The straight line through the levels over the square root of the frequency, as cable attenuates: its ends and what
/// the levels spread round it.
struct LevelTilt
{
    double lowestFrequency = 0;  ///< MHz
    double highestFrequency = 0;
    double atLowest = 0;   ///< dBµV of the line
    double atHighest = 0;  ///< dBµV
    double spread = 0;     ///< dB, standard deviation of the levels from the line

    double At(double frequency) const;  ///< dBµV at a frequency in MHz
    double Tilt() const { return atHighest - atLowest; }
};

/// Nothing with fewer than three levels at different frequencies.
std::optional<LevelTilt> FitTilt(const std::vector<const ChannelResult*>& channels);

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
