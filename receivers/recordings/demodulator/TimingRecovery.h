#pragma once

#include <complex>
#include <cstddef>
#include <vector>

#include "receivers/recordings/demodulator/FourierTransform.h"
#include "receivers/recordings/demodulator/Kernels.h"

namespace tvn2x::recordings {

/// Follows the symbol clock, without knowing any symbol and whatever the carrier's phase is: the phase between the two
/// edges of the spectrum, half a symbol rate above and below its middle, says where between the symbols the values were
/// taken (Godard, "Passband timing recovery"). That has none of the pattern noise of methods that look at single
/// values, which at a roll-off of 0.15 is large.
class TimingRecovery
{
public:
    /// Values, two to a symbol, between two corrections; the first of them are looked at.
    static constexpr size_t blockValues = 2048;

    /// `symbolRateOffset` is what the loop begins with, in ppm.
    TimingRecovery(double rollOff, double symbolRateOffset);

    /// What to do after a block.
    struct Correction
    {
        double delay = 0;    ///< symbols
        double stretch = 0;  ///< of the time between symbols, relative
    };

    Correction Process(ComplexRow values);

    /// ppm of the symbol rate.
    double SymbolRateOffset() const { return -meanStretch_ * 1e6; }
    /// Of the edges; a third with a signal, 0 with noise. Smoothed over a few blocks.
    double Coherence() const { return coherence_; }

private:
    static constexpr size_t length = 512;

    /// The sum of the products of what lies one symbol rate apart, and of their mean powers.
    struct Edges
    {
        std::complex<float> product;
        float power = 0;
    };

    Edges Measure(ComplexRow values);

    double rollOff_;
    FourierTransform transform_;
    std::vector<float> window_;
    std::vector<std::complex<float>> values_;
    double stretch_;
    double meanStretch_;
    double coherence_ = 0;
    int blocks_ = 0;
};

}  // namespace tvn2x::recordings
