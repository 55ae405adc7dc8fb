#include "simulator/model/SeededNoise.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tvn2x {
namespace {

/// The finalizer of SplitMix64: every bit of the input reaches every bit of the output.
uint64_t Mix(uint64_t value)
{
    value += 0x9E3779B97F4A7C15u;
    value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9u;
    value = (value ^ (value >> 27)) * 0x94D049BB133111EBu;
    return value ^ (value >> 31);
}

double UnitInterval(uint64_t bits)
{
    return static_cast<double>(bits >> 11) * 0x1p-53;
}

}  // namespace

SeededNoise::SeededNoise(uint64_t seed, uint64_t place, uint64_t occasion)
    : base_(Mix(Mix(Mix(seed) ^ place) + occasion))
{
}

double SeededNoise::Uniform(uint64_t stream, uint64_t index) const
{
    return UnitInterval(Mix(Mix(base_ ^ Mix(stream)) + index));
}

double SeededNoise::Gaussian(uint64_t stream, uint64_t index) const
{
    const double radius = std::sqrt(-2 * std::log(1 - Uniform(stream, 2 * index)));
    return radius * std::cos(2 * std::numbers::pi * Uniform(stream, 2 * index + 1));
}

uint64_t SeededNoise::Poisson(double mean, uint64_t stream, uint64_t index) const
{
    constexpr double normalFrom = 100;
    if (mean > normalFrom) {
        return static_cast<uint64_t>(std::max(0.0, std::round(mean + std::sqrt(mean) * Gaussian(stream, index))));
    }
    const double drawn = Uniform(stream, index);
    double term = std::exp(-mean);
    double sum = term;
    uint64_t count = 0;
    while (sum < drawn && term > 0) {
        ++count;
        term *= mean / static_cast<double>(count);
        sum += term;
    }
    return count;
}

}  // namespace tvn2x
