#pragma once

#include <complex>
#include <cstdint>
#include <span>
#include <vector>

#include "receivers/recordings/demodulator/Kernels.h"

namespace tvn2x::recordings {

/// Shifts a signal in frequency.
class Mixer
{
public:
    Mixer(double rate, const Kernels& kernels);

    /// Hz; a signal at this frequency comes out at 0. The phase goes on where it was.
    void SetFrequency(double frequency);
    double Frequency() const { return frequency_; }
    /// Writes as many values as there are samples.
    void Process(std::span<const std::complex<float>> samples, ComplexRow out);

private:
    static constexpr size_t span = 256;  // samples between two exact phases

    double rate_;
    const Kernels* kernels_;
    double frequency_ = 0;
    double phase_ = 0;  ///< turns
    std::vector<float> turnsRe_;
    std::vector<float> turnsIm_;
};

}  // namespace tvn2x::recordings
