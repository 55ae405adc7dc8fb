#include "dvbc/Qam.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "dvbc/Decibels.h"

namespace tvn2x::dvbc {
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

}  // namespace

bool IsOrderOfQam(int32_t order)
{
    return std::ranges::find(ordersOfQam, order) != ordersOfQam.end();
}

double BitsPerSymbol(int32_t order)
{
    return std::log2(order);
}

double BitErrorRatio(int32_t order, double esN0)
{
    const double snr = PowerOfDecibels(esN0);
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

double NoiseFloor(double symbolRate, double noiseFigure)
{
    constexpr double thermalDensity = -173.98;  // dBm in 1 Hz at room temperature
    constexpr double voltageOfOneMilliwatt = 108.75;
    return voltageOfOneMilliwatt + thermalDensity + DecibelsOfPower(symbolRate) + noiseFigure;
}

PacketErrors PacketErrorRatios(double ber)
{
    PacketErrors errors;
    const double byteError = -std::expm1(8 * std::log1p(-std::min(ber, 0.5)));
    if (byteError <= 0) {
        return errors;
    }
    double logCombinations = 0;
    for (int wrong = 1; wrong <= packetBytes; ++wrong) {
        logCombinations += std::log(static_cast<double>(packetBytes - wrong + 1) / wrong);
        if (wrong <= correctableBytes) {
            continue;
        }
        const double share =
            std::exp(logCombinations + wrong * std::log(byteError) + (packetBytes - wrong) * std::log1p(-byteError));
        errors.failed += share;
        errors.syncWrong += share * wrong / packetBytes;
    }
    return errors;
}

}  // namespace tvn2x::dvbc
