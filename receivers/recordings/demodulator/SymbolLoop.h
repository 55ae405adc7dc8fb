#pragma once

#include <complex>
#include <cstddef>
#include <span>

#include "receivers/recordings/demodulator/CarrierLoop.h"
#include "receivers/recordings/demodulator/CarrierSearch.h"
#include "receivers/recordings/demodulator/Equaliser.h"
#include "receivers/recordings/transport/Constellation.h"

namespace tvn2x::recordings {

/// From values, two to a symbol, to decided points: equaliser, carrier loop and decision, which adapt one another
/// symbol by symbol. First blind (the constant-modulus algorithm, which no phase matters to), then by what is decided
/// (LMS).
class SymbolLoop
{
public:
    SymbolLoop(const Constellation& constellation, const Kernels& kernels);

    /// What came out of a block of decisions: means over its symbols, in units of half the distance between neighbours.
    struct Outcome
    {
        double error = 0;  ///< power of what the symbols lie away from their points
        double power = 0;
        int pointsUsed = 0;  ///< different ones
    };

    /// Behind SetBlindProgress. `values` begins with Equaliser::history values of the block before; `symbols` fill
    /// `out`, their mean power is about 1.
    void Blind(ComplexRow values, std::span<std::complex<float>> out);
    /// Ends the blind time, once. The constellation is where it will be at the next symbol.
    void StartDeciding(const CarrierSearch::Turning& turning);
    /// The symbols in units of half the distance between neighbours, and the points that they are taken for.
    Outcome Decide(ComplexRow values, std::span<std::complex<float>> out, std::span<Constellation::Cell> points);

    /// Steps of a blind equaliser, from 1 at its beginning to 0.
    void SetBlindProgress(double remaining);
    /// After the acquisition: small steps, and the backward filter only if there are echoes for it.
    void Settle();

    /// While the signal is away there is nothing to adapt to.
    void HoldEqualiser(bool hold) { held_ = hold; }

    const CarrierLoop& Carrier() const { return carrier_; }
    /// How much the equaliser lets through of the power at a frequency in the constellation's spectrum, in turns a
    /// symbol from -0.5 to 0.5: adapted to a sine wave beside the signal, it is a notch.
    double PowerResponse(double frequency) const { return equaliser_.PowerResponse(frequency + carrier_.Frequency()); }
    double CarrierPowerResponse() const { return equaliser_.CarrierPowerResponse(); }

private:
    struct Steps
    {
        float forward;
        float backward;
    };

    ComplexGroup DecideGroup(ComplexGroup& symbols) const;

    const Constellation* constellation_;
    Equaliser equaliser_;
    CarrierLoop carrier_;
    Steps blind_{};
    Steps decided_{};
    size_t adaptEvery_ = 1;
    bool held_ = false;
    std::complex<float> meanError_;  ///< of a residual carrier, which is no matter for an equaliser
};

}  // namespace tvn2x::recordings
