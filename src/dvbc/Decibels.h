#pragma once

#include <cmath>
#include <limits>

/// Decibels, with what the ratio is of in the name: ten a decade of power, twenty a decade of amplitude (voltage). A
/// ratio of 0 is -infinity, without the exception that the logarithm of 0 raises.
namespace tvn2x::dvbc {

inline double DecibelsOfPower(double ratio)
{
    return ratio > 0 ? 10 * std::log10(ratio) : -std::numeric_limits<double>::infinity();
}

inline double PowerOfDecibels(double decibels)
{
    return std::pow(10, decibels / 10);
}

inline double DecibelsOfAmplitude(double ratio)
{
    return 2 * DecibelsOfPower(ratio);
}

inline double AmplitudeOfDecibels(double decibels)
{
    return std::pow(10, decibels / 20);
}

}  // namespace tvn2x::dvbc
