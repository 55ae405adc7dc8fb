#pragma once

#include <complex>

#include "receivers/recordings/demodulator/Kernels.h"

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

    double Frequency() const;  ///< turns a symbol

    /// What holds the symbols of the next group still.
    ComplexGroup Turns() const
    {
        ComplexGroup turns;
        for (size_t i = 0; i < ComplexGroup::size; ++i) {
            const std::complex<float> turn = TurnedBy(static_cast<float>(i) * frequency_);
            turns.re[i] = turn.real();
            turns.im[i] = turn.imag();
        }
        return turns;
    }

    /// Goes on to the next group. `error` is how far the symbols of this one were turned, in the mean: the imaginary
    /// part of a symbol times its point's conjugate, where their mean power is 1.
    void Follow(float error)
    {
        constexpr float symbols = ComplexGroup::size;
        frequency_ += symbols * frequencyGain_ * error;
        turn_ = TurnedBy(symbols * (frequency_ + gain_ * error));
        turn_ *= 1.5F - 0.5F * std::norm(turn_);  // its length is kept at 1
    }

private:
    /// By a small angle, the other way.
    std::complex<float> TurnedBy(float angle) const
    {
        const float square = angle * angle;
        const float cosine = 1 - square * 0.5F;
        const float sine = angle * (square * (1 / 6.0F) - 1);
        return {turn_.real() * cosine - turn_.imag() * sine, turn_.real() * sine + turn_.imag() * cosine};
    }

    std::complex<float> turn_ = 1;
    float frequency_ = 0;  ///< radians a symbol
    float gain_ = 0;
    float frequencyGain_ = 0;
};

}  // namespace tvn2x::recordings
