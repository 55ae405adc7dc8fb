#include "dvbc/LevelUnit.h"

#include "dvbc/Decibels.h"

namespace tvn2x::dvbc {
namespace {

constexpr double ofOneMillivolt = 60;  // dBµV

/// What a level of 0 in a logarithmic unit is in dBµV at 75 ohm.
double AtZero(LevelUnit unit)
{
    switch (unit) {
        case LevelUnit::dBmV:
            return ofOneMillivolt;
        case LevelUnit::dBpW:
            return 18.75;
        case LevelUnit::dBuW:
            return 78.75;
        case LevelUnit::dBm:
            return 108.75;
        default:
            return 0;
    }
}

}  // namespace

double LevelIn(LevelUnit unit, double dBuV)
{
    return unit == LevelUnit::mV ? AmplitudeOfDecibels(dBuV - ofOneMillivolt) : dBuV - AtZero(unit);
}

std::optional<double> DecibelMicrovolts(LevelUnit unit, double level)
{
    if (unit != LevelUnit::mV) {
        return level + AtZero(unit);
    }
    return level > 0 ? std::optional(ofOneMillivolt + DecibelsOfAmplitude(level)) : std::nullopt;
}

}  // namespace tvn2x::dvbc
