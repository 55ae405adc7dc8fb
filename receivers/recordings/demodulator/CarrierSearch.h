#pragma once

#include <complex>
#include <cstddef>
#include <span>
#include <vector>

#include "receivers/recordings/demodulator/FourierTransform.h"
#include "receivers/recordings/transport/Constellation.h"

namespace tvn2x::recordings {

/// Finds how fast a constellation turns, before any symbol can be decided: the fourth power of QAM symbols has a mean
/// that is not 0 and turns four times as fast, a line in its spectrum.
class CarrierSearch
{
public:
    static constexpr size_t searchSymbols = 16384;

    explicit CarrierSearch(const Constellation& constellation);

    /// How a constellation turns: what the phase was at the first symbol, in turns, but for whole quarters.
    struct Turning
    {
        double frequency = 0;  ///< turns a symbol
        double phase = 0;
    };

    /// Of `searchSymbols` symbols with a mean power of about 1. Within 3 % of the symbol rate.
    Turning Search(std::span<const std::complex<float>> symbols) const;

private:
    static std::vector<std::complex<double>> SumsAt(std::span<const std::complex<float>> powers, double frequency);
    double MagnitudeAt(std::span<const std::complex<double>> sums, double frequency, double* phase) const;

    bool negative_;  ///< is the mean of the fourth power
    FourierTransform transform_;
};

}  // namespace tvn2x::recordings
