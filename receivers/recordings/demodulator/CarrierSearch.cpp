#include "receivers/recordings/demodulator/CarrierSearch.h"

#include <cmath>
#include <numbers>

namespace tvn2x::recordings {

CarrierSearch::CarrierSearch(const Constellation& constellation)
    : negative_(constellation.MeanFourthPower() < 0), transform_(searchSymbols)
{
}

/// The line's magnitude at a frequency between the bins, and its phase at the first symbol.
double CarrierSearch::MagnitudeAt(std::span<const std::complex<float>> powers, double frequency, double* phase) const
{
    const std::complex<double> turn = std::polar(1.0, -2 * std::numbers::pi * frequency);
    std::complex<double> angle = 1;
    std::complex<double> sum;
    for (const std::complex<float>& power : powers) {
        sum += std::complex<double>(power) * angle;
        angle *= turn;
    }
    *phase = std::arg(negative_ ? -sum : sum) / (2 * std::numbers::pi);
    return std::abs(sum);
}

CarrierSearch::Turning CarrierSearch::Search(std::span<const std::complex<float>> symbols) const
{
    constexpr double widest = 0.03;
    std::vector<std::complex<float>> powers;
    powers.reserve(searchSymbols);
    for (const std::complex<float>& symbol : symbols) {
        const std::complex<float> square = symbol * symbol;
        powers.push_back(square * square);
    }
    std::vector<std::complex<float>> spectrum = powers;
    transform_.Forward(spectrum);
    const int most = static_cast<int>(4 * widest * searchSymbols);
    int best = 0;
    float strongest = 0;
    for (int bin = -most; bin <= most; ++bin) {
        const float strength =
            std::norm(spectrum[static_cast<size_t>(bin + static_cast<int>(searchSymbols)) % searchSymbols]);
        if (strength > strongest) {
            strongest = strength;
            best = bin;
        }
    }
    // The peak between the bins, by halving the way to either side.
    double frequency = static_cast<double>(best) / searchSymbols;
    double phase = 0;
    double magnitude = MagnitudeAt(powers, frequency, &phase);
    constexpr int halvings = 7;
    double step = 0.5 / searchSymbols;
    for (int i = 0; i < halvings; ++i, step /= 2) {
        for (const double tried : {frequency - step, frequency + step}) {
            double triedPhase = 0;
            const double triedMagnitude = MagnitudeAt(powers, tried, &triedPhase);
            if (triedMagnitude > magnitude) {
                magnitude = triedMagnitude;
                frequency = tried;
                phase = triedPhase;
            }
        }
    }
    return {frequency / 4, phase / 4};
}

}  // namespace tvn2x::recordings
