#pragma once

#include <complex>
#include <functional>
#include <span>
#include <vector>

#include "receivers/recordings/demodulator/SignalReadings.h"
#include "receivers/recordings/transport/Constellation.h"

namespace tvn2x::recordings {

/// Symbols as received, in units of half the distance between neighbours, and the points that they were taken for.
struct ReceivedSymbols
{
    std::span<const std::complex<float>> symbols;
    std::span<const Constellation::Cell> points;
};

/// The readings of ETSI TR 101 290, clause 6.9, from received symbols r and the points d that they were taken for; sums
/// and means go over all N symbols, P is the mean of |d|^2.
///
/// - MER (6.9.2): P over the mean of |r - d|^2. Where noise takes symbols to a neighbour, what is decided flatters: the
///   share is put back that white noise as strong as e (below) loses that way. Not measured where the errors are more
///   than 0.40, about 3 dB below the MER of a bit error ratio of 1e-3: there the decisions say too little.
/// - Carrier suppression (6.9.4): P over |mean of r - d|^2, as it was ahead of the equaliser. At most 70 dB, which is
///   about what N resolves.
/// - Amplitude imbalance and quadrature error (6.9.5, 6.9.6): of the straight lines that I and Q of d are received as
///   (least squares): how much longer one is, and how far they are from a right angle. Without signs, because the
///   carrier recovery may rest at any of four phases.
/// - Phase jitter (6.9.9): what is left behind these lines, e = r - fit(d), is rounder with noise and longer across d
///   with jitter: its square is the sum of |d|^2 (across^2 - along^2) over the sum of |d|^4. Noise takes no part, but
///   blurs the square, by (mean of |e|^2) / root of the sum of |d|^4: less than two and a half times that reads 0, and
///   where that is more than 0.2 degrees squared (with 65,536 symbols, a MER below about 25 dB) jitter is not measured.
///   Within 0.1 degrees above a MER of 34 dB. What is slower than the carrier loop (about 3 kHz at 6.9 MSymb/s) is not
///   seen.
/// - Interferer (6.9.8): lines in the spectrum of e, with what the equaliser took away of them put back. One is seen
///   down to about 25 dB below the noise.
/// - Signal to noise (6.9.10): P over what is left of e without jitter. Lines count as noise, as the other receivers
///   have it, and as much of them as came in: taking the interferer's power away leaves that of the noise.
class ConstellationAnalysis
{
public:
    static constexpr size_t leastSymbols = 8192;

    explicit ConstellationAnalysis(const Constellation& constellation) : constellation_(&constellation) {}

    /// What has come through the equaliser of what is no symbol, as a share of its power.
    struct Response
    {
        std::function<double(double)> at;  ///< a frequency, in turns a symbol from -0.5 to 0.5
        double carrier = 1;                ///< the residual one, whose echoes no decision takes away
    };

    /// Nothing is measured of fewer than `leastSymbols` symbols.
    SignalReadings Measure(const ReceivedSymbols& received, const Response& response) const;

private:
    /// Where the origin and the two axes of the decided constellation are received.
    struct Axes
    {
        std::complex<double> origin;
        std::complex<double> i;
        std::complex<double> q;
    };

    Axes FitAxes(const ReceivedSymbols& received) const;
    double ErrorPower(const ReceivedSymbols& received) const;
    double FlatteredPower(double power) const;
    double TruePower(double flattered) const;

    const Constellation* constellation_;
};

}  // namespace tvn2x::recordings
