#pragma once

#include <array>
#include <cstdint>
#include <span>

/// The arithmetic of a DVB-C receiver. Ratios are in dB unless a name says otherwise.
///
/// Sources: the bit error ratio of square constellations is the nearest-neighbour approximation with Gray mapping, that
/// of the cross constellations the same with their mean number of neighbours and mean symbol energy (Proakis, Digital
/// Communications; Smith, "Odd-bit quadrature amplitude-shift keying"). Error vector measures follow the definitions of
/// ETSI TR 101 290. The transport stream's block code is the RS(204,188) of EN 300 429, which corrects eight bytes.
namespace tvn2x::qam {

inline constexpr std::array<int32_t, 6> orders{4, 16, 32, 64, 128, 256};

constexpr int packetBytes = 204;
constexpr int correctableBytes = 8;

bool IsOrder(int32_t order);
double BitsPerSymbol(int32_t order);

double ToDecibels(double powerRatio);
double FromDecibels(double decibels);

/// Bit error ratio before Reed-Solomon at a ratio of symbol energy to noise density, without any implementation loss.
double BitErrorRatio(int32_t order, double esN0);

/// The Es/N0 at which BitErrorRatio gives `ber`, 0 < ber < 0.1.
double RequiredEsN0(int32_t order, double ber);

/// One ratio out of several independent ones: their error powers add up.
double Combine(std::span<const double> ratios);

/// What an impairment leaves of the MER when it is the only one: +infinity where it is zero.
double JitterRatio(double degreesRms);
double ImbalanceRatio(double percent);
double QuadratureRatio(double degrees);

double MerPercent(double mer);

/// Noise power in the signal's bandwidth in dBµV at 75 ohm, from the symbol rate in symbols per second.
double NoiseFloor(double symbolRate, double noiseFigure);

/// How often the block decoder fails, as shares of all packets.
struct PacketErrors
{
    double failed = 0;     ///< more bytes are wrong than the code corrects
    double syncWrong = 0;  ///< the synchronisation byte of such a packet is among the wrong ones
};

PacketErrors PacketErrorRatios(double ber);

}  // namespace tvn2x::qam
