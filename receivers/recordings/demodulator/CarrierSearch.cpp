#include "receivers/recordings/demodulator/CarrierSearch.h"

#include <cmath>
#include <numbers>

namespace tvn2x::recordings {

CarrierSearch::CarrierSearch(const Constellation& constellation)
    : negative_(constellation.MeanFourthPower() < 0), transform_(searchSymbols)
{
}

/// The sums of stretches of the powers with their turning at a frequency taken away: what turns slowly from there on
/// need not be looked at power by power.
std::vector<std::complex<double>> CarrierSearch::SumsAt(std::span<const std::complex<float>> powers, double frequency)
{
    constexpr size_t stretch = searchSymbols / 64;
    const double angle = -2 * std::numbers::pi * frequency;
    std::vector<std::complex<double>> sums(powers.size() / stretch);
    for (size_t i = 0; i < sums.size() * stretch; ++i) {
        sums[i / stretch] += std::complex<double>(powers[i]) * std::polar(1.0, angle * static_cast<double>(i));
    }
    return sums;
}

/// The line's magnitude at a frequency in turns a stretch, and its phase at the first symbol.
double CarrierSearch::MagnitudeAt(std::span<const std::complex<double>> sums, double frequency, double* phase) const
{
    std::complex<double> line;
    for (size_t i = 0; i < sums.size(); ++i) {
        line += sums[i] * std::polar(1.0, -2 * std::numbers::pi * frequency * (static_cast<double>(i) + 0.5));
    }
    *phase = std::arg(negative_ ? -line : line) / (2 * std::numbers::pi);
    return std::abs(line);
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
    const double nearest = static_cast<double>(best) / searchSymbols;
    const std::vector<std::complex<double>> sums = SumsAt(powers, nearest);
    double beside = 0;  // turns a stretch
    double phase = 0;
    double magnitude = MagnitudeAt(sums, beside, &phase);
    constexpr int halvings = 7;
    double step = 0.5 / static_cast<double>(sums.size());
    for (int i = 0; i < halvings; ++i, step /= 2) {
        for (const double tried : {beside - step, beside + step}) {
            double triedPhase = 0;
            const double triedMagnitude = MagnitudeAt(sums, tried, &triedPhase);
            if (triedMagnitude > magnitude) {
                magnitude = triedMagnitude;
                beside = tried;
                phase = triedPhase;
            }
        }
    }
    return {(nearest + beside * static_cast<double>(sums.size()) / searchSymbols) / 4, phase / 4};
}

}  // namespace tvn2x::recordings
