#pragma once

#include <complex>

namespace tvn2x::recordings {

/// Holds the constellation still: a loop of the second order that follows the phase between what is received and what
/// is decided. Jitter slower than its bandwidth is followed and does not show in the constellation.
class CarrierLoop
{
public:
    /// Frequency in turns a symbol, phase in turns.
    void Start(double frequency, double phase);
    /// How far a phase error is put right at once: the loop's corner is `gain` / 2 pi of the symbol rate.
    void SetGain(float gain)
    {
        gain_ = gain;
        frequencyGain_ = gain * gain / 4;
    }

    std::complex<float> Turn() const { return turn_; }
    double Frequency() const;  ///< turns a symbol

    /// Goes on to the next symbol, after one that came out as `symbol` and was decided to be `decided`; their mean
    /// power is 1.
    void Follow(std::complex<float> symbol, std::complex<float> decided)
    {
        const float error = symbol.imag() * decided.real() - symbol.real() * decided.imag();
        frequency_ += frequencyGain_ * error;
        const float angle = frequency_ + gain_ * error;
        // The sine and the cosine of a small angle, and the turn's length kept at 1.
        const std::complex<float> step(1 - angle * angle / 2, -angle);
        const float re = turn_.real() * step.real() - turn_.imag() * step.imag();
        const float im = turn_.real() * step.imag() + turn_.imag() * step.real();
        const float length = 1.5F - 0.5F * (re * re + im * im);
        turn_ = {re * length, im * length};
    }

private:
    std::complex<float> turn_ = 1;
    float frequency_ = 0;  ///< radians a symbol
    float gain_ = 0;
    float frequencyGain_ = 0;
};

}  // namespace tvn2x::recordings
