#pragma once

#include <complex>
#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "receivers/recordings/demodulator/FourierTransform.h"
#include "receivers/recordings/demodulator/SignalParameters.h"

namespace tvn2x::recordings {

/// Looks for a signal of the symbol rate that was set, wherever within 260 kHz its carrier is.
///
/// The two edges of such a signal's spectrum, one symbol rate apart, carry the same data: they are coherent, over a
/// band as wide as the roll-off, and its middle is the carrier. Noise, an analogue picture or another symbol rate have
/// no such band. How the coherence turns from one stretch of time to the next is the error of the symbol clock.
class SignalSearch
{
public:
    /// How many samples are looked at.
    static constexpr size_t searchSamples = 32768;

    struct Found
    {
        double frequency;         ///< Hz, within about 0.1 % of the symbol rate, or 2 % with strong echoes
        double symbolRateOffset;  ///< ppm, within about 5
    };

    SignalSearch(const SignalParameters& parameters, double rate);

    /// What was found in `searchSamples` samples.
    std::optional<Found> Search(std::span<const std::complex<float>> samples) const;

private:
    static constexpr size_t length = 4096;
    static constexpr size_t hop = length / 2;
    static constexpr double widest = 260e3;
    static constexpr double leastCoherence = 0.25;

    /// Of one stretch: the product of the edges at each frequency, and the mean of their powers.
    struct Edges
    {
        std::vector<std::complex<float>> product;
        std::vector<float> power;
    };

    Edges EdgesOf(std::span<const std::complex<float>> samples, double firstTime) const;
    std::complex<double> Weighed(const Edges& edges, int bin) const;
    double WeighedPower(const Edges& edges, int bin) const;

    double rate_;
    double symbolRate_;
    FourierTransform transform_;
    std::vector<float> window_;
    std::vector<std::complex<float>> turns_;  ///< of half a symbol rate
    std::vector<float> weights_;              ///< of the bins around the carrier: how coherent they are without noise
};

}  // namespace tvn2x::recordings
