#pragma once

#include <complex>
#include <span>
#include <vector>

#include "receivers/recordings/demodulator/Mixer.h"

namespace tvn2x::recordings {

/// The root-raised-cosine pulse (EN 300 429, clause 9) at a time in symbols, of unit energy.
double RootRaisedCosine(double time, double rollOff);

/// Matched filter and interpolation in one: the pulse, sampled at the rate of the input with 512 places between two
/// samples, is laid around each moment at which a value is wanted, two to a symbol. The pulse is that of the standard,
/// 18 symbols to either side.
class MatchedInterpolator
{
public:
    /// `nominalStep`: input samples in half a symbol, above 0.6.
    MatchedInterpolator(double nominalStep, double rollOff, const Kernels& kernels);

    /// Input samples between two values: nominal * (1 + stretch).
    void SetStretch(double stretch) { stretch_ = stretch; }
    /// Lets all further values come later by that many input samples (earlier, below 0), by less than eight of them.
    void Delay(double samples) { position_ += samples; }
    void SetGain(double gain) { gain_ = static_cast<float>(gain); }

    /// Takes in the samples of one block through the mixer.
    void Take(std::span<const std::complex<float>> samples, Mixer& mixer);
    /// As many values as asked for, in pairs; 0 if the samples do not suffice for that.
    size_t Give(size_t values, ComplexRow out);

private:
    static constexpr int halfSymbols = 18;
    static constexpr size_t slack = 8;  ///< samples that a delay may go back by

    ComplexRow Input() { return {re_.data(), im_.data()}; }

    const Kernels* kernels_;
    double nominalStep_;
    double stretch_ = 0;
    float gain_ = 1;
    size_t tapCount_;
    size_t phases_;
    std::vector<float> taps_;
    std::vector<float> re_;
    std::vector<float> im_;
    size_t held_ = 0;
    double position_ = 0;  ///< of the next value, in held samples
};

}  // namespace tvn2x::recordings
