#pragma once

#include <cstdint>
#include <optional>

namespace tvn2x::dvbc {

/// The receiver's codes for the unit that it shows levels in.
enum class LevelUnit : int32_t
{
    dBmV = 0,
    dBpW = 1,
    dBuW = 2,
    dBm = 3,
    dBuV = 4,
    mV = 5
};

/// A level in dBµV at 75 ohm in another unit. Millivolts are linear, all others logarithmic.
double LevelIn(LevelUnit unit, double dBuV);

/// The reverse. Nothing for a voltage that is not above 0.
std::optional<double> DecibelMicrovolts(LevelUnit unit, double level);

}  // namespace tvn2x::dvbc
