#include "dvbc/Impairments.h"

#include <cmath>
#include <limits>
#include <numbers>

#include "dvbc/Decibels.h"

namespace tvn2x::dvbc {
namespace {

constexpr double radian = std::numbers::pi / 180;

/// An imbalance of a per cent is half a per cent too much on one axis and half a per cent too little on the other.
constexpr double imbalanceOfOne = 200;

double Square(double value)
{
    return value * value;
}

}  // namespace

double JitterPower(double degreesRms)
{
    return Square(degreesRms * radian);
}

double ImbalancePower(double percent)
{
    return Square(percent / imbalanceOfOne);
}

double QuadraturePower(double degrees)
{
    return Square(std::sin(degrees * radian / 2));
}

double RatioOfErrorPower(double power)
{
    return power > 0 ? -DecibelsOfPower(power) : std::numeric_limits<double>::infinity();
}

double ErrorPowerOfRatio(double ratio)
{
    return PowerOfDecibels(-ratio);
}

double CombineRatios(std::span<const double> ratios)
{
    double power = 0;
    for (const double ratio : ratios) {
        power += ErrorPowerOfRatio(ratio);
    }
    return RatioOfErrorPower(power);
}

double JitterOfRatio(double ratio)
{
    return AmplitudeOfDecibels(-ratio) / radian;
}

double ImbalanceOfRatio(double ratio)
{
    return AmplitudeOfDecibels(-ratio) * imbalanceOfOne;
}

double MerPercent(double mer)
{
    return 100 * AmplitudeOfDecibels(-mer);
}

}  // namespace tvn2x::dvbc
