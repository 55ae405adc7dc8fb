#pragma once

#include <complex>
#include <cstddef>
#include <span>
#include <vector>

namespace tvn2x::recordings {

/// Taps of a low-pass filter of linear phase with a gain of 1 (Kaiser's window): `pass` and `stop` are the edges of the
/// transition as shares of the sampling rate, 0 < pass < stop <= 0.5, `attenuation` is in dB, above 50.
std::vector<float> LowPass(double pass, double stop, double attenuation);

/// Filters complex samples with real taps and keeps every n-th.
class FirFilter
{
public:
    FirFilter(const std::vector<float>& taps, size_t decimation);

    /// Takes in samples and puts what comes out of them behind `out`.
    void Process(std::span<const std::complex<float>> samples, std::vector<std::complex<float>>& out);

private:
    std::vector<float> taps_;  ///< each twice, for the two parts of a sample; a multiple of eight
    size_t length_;            ///< in samples
    size_t decimation_;
    std::vector<std::complex<float>> pending_;  ///< that the next output begins with
    size_t skipped_ = 0;                        ///< samples of it that are none of the next output's
};

}  // namespace tvn2x::recordings
