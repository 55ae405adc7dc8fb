#pragma once

#include <array>
#include <cstdint>

/// What a constellation of quadrature amplitude modulation does with noise. Ratios are in dB.
///
/// Sources: the bit error ratio of square constellations is the nearest-neighbour approximation with Gray mapping, that
/// of the cross constellations the same with their mean number of neighbours and mean symbol energy (Proakis, Digital
/// Communications; Smith, "Odd-bit quadrature amplitude-shift keying"). The transport stream's block code is the
/// RS(204,188) of EN 300 429, which corrects eight bytes.
namespace tvn2x::dvbc {

/// The orders of QAM that DVB-C knows.
inline constexpr std::array<int32_t, 6> ordersOfQam{4, 16, 32, 64, 128, 256};
bool IsOrderOfQam(int32_t order);

double BitsPerSymbol(int32_t order);

/// Bit error ratio before Reed-Solomon at a ratio of symbol energy to noise density, without any implementation loss.
double BitErrorRatio(int32_t order, double esN0);

/// The Es/N0 at which BitErrorRatio gives `ber`, 0 < ber < 0.1.
double RequiredEsN0(int32_t order, double ber);

/// The bit error ratio before Reed-Solomon from which on packets are in danger: here a channel loses one in days, at
/// twice the ratio several an hour.
constexpr double failureBer = 2e-4;

constexpr int packetBytes = 204;
constexpr int correctableBytes = 8;

/// How often the block decoder fails, as shares of all packets.
struct PacketErrors
{
    double failed = 0;     ///< more bytes are wrong than the code corrects
    double syncWrong = 0;  ///< the synchronisation byte of such a packet is among the wrong ones
};

PacketErrors PacketErrorRatios(double ber);

/// Noise power in the signal's bandwidth in dBµV at 75 ohm, from the symbol rate in symbols per second and the
/// receiver's noise figure in dB.
double NoiseFloor(double symbolRate, double noiseFigure);

}  // namespace tvn2x::dvbc
