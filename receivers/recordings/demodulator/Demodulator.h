#pragma once

#include <complex>
#include <memory>
#include <span>
#include <vector>

#include "receivers/recordings/demodulator/DemodulatorState.h"
#include "receivers/recordings/demodulator/Kernels.h"
#include "receivers/recordings/demodulator/SignalParameters.h"
#include "receivers/recordings/demodulator/SignalReadings.h"
#include "receivers/recordings/transport/TransportDecoder.h"

namespace tvn2x::recordings {

/// A receiver of one DVB-C channel (EN 300 429), from complex samples to transport packets and readings. Time is what
/// the samples last: nothing here looks at a clock. Tuning to another channel is a new demodulator.
class Demodulator
{
public:
    /// `rate` is that of the samples, see SampleSource for the least. Raises std::invalid_argument where the parameters
    /// or the rate are out of range. `sink` may be null; it outlives the demodulator.
    /// `kernels` is how it reckons; that is for comparisons.
    Demodulator(const SignalParameters& parameters, double rate, PacketSink* sink = nullptr,
                const Kernels& kernels = ChosenKernels());
    ~Demodulator();

    /// Takes in the next samples: any number of them. Some remain inside until enough for a block are there.
    void Process(std::span<const std::complex<float>> samples);

    const DemodulatorState& State() const;
    /// Reckoned when asked for, over what was received since the carrier lock, at most the last 65,536 symbols.
    SignalReadings Readings() const;
    /// The symbols received last, the oldest first, in units of half the distance between neighbours: the points are at
    /// odd numbers. Empty without carrier lock.
    std::vector<std::complex<float>> Constellation(size_t most) const;

private:
    class Chain;
    std::unique_ptr<Chain> chain_;
};

}  // namespace tvn2x::recordings
