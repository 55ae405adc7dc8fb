#pragma once

#include <complex>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <random>
#include <vector>

#include "support/sender/Mapper.h"
#include "support/sender/OuterEncoder.h"

namespace tvn2x::sender {

/// The root-raised-cosine pulse of unit energy at a time in symbols.
double Pulse(double time, double rollOff);

/// A second way of the signal: later by `delay` seconds, `level` dB against the first way.
struct Echo
{
    double delay = 0;
    double level = 0;
    double phase = 0;  ///< radians
};

/// What is sent and what becomes of it on the way.
struct Signal
{
    int order = 64;
    double symbolRate = 6.9e6;
    double rollOff = 0.15;
    double rate = 10e6;    ///< of the samples
    double level = 0.1;    ///< RMS of the signal, of full scale
    double frequency = 0;  ///< Hz, where the carrier is
    double symbolRatePpm = 0;
    std::optional<double> noise;         ///< dB, C/N in the symbol rate's bandwidth
    std::optional<double> carrier{};     ///< dB, the signal over its residual carrier
    double imbalance = 0;                ///< per cent
    double quadrature = 0;               ///< degrees
    double jitter = 0;                   ///< degrees RMS, from 30 to 300 kHz
    std::optional<double> interferer{};  ///< dB, the signal over a sine wave at an eighth of the symbol rate
    std::optional<double> neighbours{};  ///< dB, of two channels 8 MHz to either side
    std::vector<Echo> echoes{};
    bool inverted = false;
    uint32_t seed = 1;
};

/// Samples of a signal without end.
class Transmitter
{
public:
    explicit Transmitter(const Signal& signal);
    std::vector<std::complex<float>> Send(size_t samples);
    /// From here on the signal is away, or there again; it goes on meanwhile.
    void Silence(bool silent) { silent_ = silent; }

private:
    /// One modulated carrier: its points, and what it looks like at a time in symbols.
    struct Carrier
    {
        Carrier(int order, uint32_t firstPacket) : mapper(order), packet(firstPacket) {}
        OuterEncoder encoder;
        Mapper mapper;
        uint32_t packet;
        std::vector<std::complex<double>> points;
        double first = 0;  ///< number of the first point that is kept
    };

    std::complex<double> At(Carrier& carrier, double time);
    std::complex<double> Sample();
    std::complex<double> Modulated(double time);

    Signal signal_;
    double meanPower_;
    std::vector<Carrier> carriers_;
    std::vector<double> pulse_;
    std::vector<double> jitterPhases_;
    std::mt19937 random_;
    std::normal_distribution<double> gaussian_;
    double sample_ = 0;
    bool silent_ = false;
};

}  // namespace tvn2x::sender
