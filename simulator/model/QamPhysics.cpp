#include "simulator/model/QamPhysics.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace tvn2x::qam {

namespace {

/// The cross constellations lack the corners of a square, so their figures do not follow from the order alone.
struct CrossShape
{
    double neighbours;
    double meanEnergy;
};

constexpr CrossShape cross32{3.25, 20};
constexpr CrossShape cross128{3.625, 82};

double GaussianTail(double x)
{
    return 0.5 * std::erfc(x / std::numbers::sqrt2);
}

double RadiansOf(double degrees)
{
    return degrees * std::numbers::pi / 180;
}

double RatioOfAmplitude(double amplitude)
{
    return amplitude > 0 ? -20 * std::log10(amplitude) : std::numeric_limits<double>::infinity();
}

}  // namespace

bool IsOrder(int32_t order)
{
    return std::ranges::find(orders, order) != orders.end();
}

double BitsPerSymbol(int32_t order)
{
    return std::log2(order);
}

double ToDecibels(double powerRatio)
{
    return powerRatio > 0 ? 10 * std::log10(powerRatio) : -std::numeric_limits<double>::infinity();
}

double FromDecibels(double decibels)
{
    return std::pow(10, decibels / 10);
}

double BitErrorRatio(int32_t order, double esN0)
{
    const double snr = FromDecibels(esN0);
    const double bits = BitsPerSymbol(order);
    if (order == 32 || order == 128) {
        const CrossShape& shape = order == 32 ? cross32 : cross128;
        return shape.neighbours / bits * GaussianTail(std::sqrt(2 * snr / shape.meanEnergy));
    }
    return 4 / bits * (1 - 1 / std::sqrt(order)) * GaussianTail(std::sqrt(3 * snr / (order - 1)));
}

double RequiredEsN0(int32_t order, double ber)
{
    double low = -20;
    double high = 60;
    while (high - low > 1e-9) {
        const double middle = (low + high) / 2;
        (BitErrorRatio(order, middle) > ber ? low : high) = middle;
    }
    return high;
}

double Combine(std::span<const double> ratios)
{
    double errorPower = 0;
    for (const double ratio : ratios)
        errorPower += FromDecibels(-ratio);
    return -ToDecibels(errorPower);
}

double JitterRatio(double degreesRms)
{
    return RatioOfAmplitude(RadiansOf(degreesRms));
}

double ImbalanceRatio(double percent)
{
    return RatioOfAmplitude(percent / 200);
}

double QuadratureRatio(double degrees)
{
    return RatioOfAmplitude(std::sin(RadiansOf(std::abs(degrees)) / 2));
}

double MerPercent(double mer)
{
    return 100 * std::pow(10, -mer / 20);
}

double NoiseFloor(double symbolRate, double noiseFigure)
{
    constexpr double thermalDensity = -173.98;  // dBm in 1 Hz at room temperature
    constexpr double voltageOfOneMilliwatt = 108.75;
    return voltageOfOneMilliwatt + thermalDensity + ToDecibels(symbolRate) + noiseFigure;
}

PacketErrors PacketErrorRatios(double ber)
{
    PacketErrors errors;
    const double byteError = -std::expm1(8 * std::log1p(-std::min(ber, 0.5)));
    if (byteError <= 0)
        return errors;
    double logCombinations = 0;
    for (int wrong = 1; wrong <= packetBytes; ++wrong) {
        logCombinations += std::log(static_cast<double>(packetBytes - wrong + 1) / wrong);
        if (wrong <= correctableBytes)
            continue;
        const double share =
            std::exp(logCombinations + wrong * std::log(byteError) + (packetBytes - wrong) * std::log1p(-byteError));
        errors.failed += share;
        errors.syncWrong += share * wrong / packetBytes;
    }
    return errors;
}

}  // namespace tvn2x::qam
