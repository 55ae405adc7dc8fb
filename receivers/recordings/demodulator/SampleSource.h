#pragma once

#include <complex>
#include <cstddef>
#include <span>

namespace tvn2x::recordings {

/// Where a demodulator takes its samples from: one channel, centred at its nominal frequency.
///
/// The rate has to hold the whole signal with the carrier as far off as it may be: at least
/// symbol rate * (1 + roll-off) + 2 * 300 kHz, and at least 1.3 times the symbol rate. What else lies in the band
/// (a neighbouring channel) does no harm.
class SampleSource
{
public:
    virtual ~SampleSource() = default;

    virtual double Rate() const = 0;  ///< samples per second
    /// Fills `into` from its start and says how many samples that were: fewer than asked for only before the end, 0 at
    /// the end. The samples are finite; 1 is the recorder's full scale.
    virtual size_t Read(std::span<std::complex<float>> into) = 0;
};

}  // namespace tvn2x::recordings
