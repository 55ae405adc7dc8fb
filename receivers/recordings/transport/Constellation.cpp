#include "receivers/recordings/transport/Constellation.h"

#include <array>
#include <bit>
#include <complex>
#include <span>
#include <stdexcept>
#include <string>

namespace tvn2x::recordings {
namespace {

constexpr int none = -1;

/// The first quadrant of the cross constellations, a row for each Q = 1, 3, ..., in it I = 1, 3, ...
constexpr std::array<int, 9> cross32{0b000, 0b001, 0b011, 0b100, 0b101, 0b111, 0b110, 0b010, none};
constexpr std::array<int, 36> cross128{0b00000, 0b00001, 0b00101, 0b00100, 0b01100, 0b01101,  //
                                       0b00010, 0b00011, 0b00111, 0b00110, 0b01110, 0b01111,  //
                                       0b10010, 0b10011, 0b10111, 0b10110, 0b11110, 0b11111,  //
                                       0b10000, 0b10001, 0b10101, 0b10100, 0b11100, 0b11101,  //
                                       0b11000, 0b11001, 0b01001, 0b01000, none,    none,     //
                                       0b11010, 0b11011, 0b01011, 0b01010, none,    none};

/// Every other bit of a label is one axis's: spreads a number over the even places.
unsigned Spread(unsigned number)
{
    return (number & 1) | (number & 2) << 1 | (number & 4) << 2;
}

unsigned Gray(unsigned number)
{
    return number ^ number >> 1;
}

}  // namespace

Constellation::Constellation(int32_t order) : order_(order)
{
    if (order != 16 && order != 32 && order != 64 && order != 128 && order != 256) {
        throw std::invalid_argument("An order of QAM is 16, 32, 64, 128 or 256, not " + std::to_string(order) + ".");
    }
    bits_ = static_cast<int>(std::bit_width(static_cast<unsigned>(order))) - 1;
    corners_ = bits_ % 2 != 0;
    labels_.fill(missing);
    if (corners_) {
        AddCross();
    } else {
        AddSquare();
    }
    TakeMoments();
}

/// Adds a point of the first quadrant and its three rotations.
void Constellation::AddPoint(int i, int q, unsigned label)
{
    for (unsigned quadrant = 0; quadrant < 4; ++quadrant) {
        labels_[CellOf(static_cast<float>(i), static_cast<float>(q))] = static_cast<uint8_t>(quadrant << 6 | label);
        const int turned = -q;
        q = i;
        i = turned;
    }
}

void Constellation::AddSquare()
{
    const unsigned half = 1U << (bits_ / 2 - 1);
    for (unsigned row = 0; row < half; ++row) {
        for (unsigned column = 0; column < half; ++column) {
            const unsigned label = Spread(Gray(column)) | Spread(Gray(row)) << 1;
            AddPoint(static_cast<int>(2 * column + 1), static_cast<int>(2 * row + 1), label);
        }
    }
    limit_ = static_cast<float>(2 * half) - 0.01F;
}

void Constellation::AddCross()
{
    const std::span<const int> labels = order_ == 32 ? std::span<const int>(cross32) : std::span<const int>(cross128);
    const int half = order_ == 32 ? 3 : 6;
    auto label = labels.begin();
    for (int row = 0; row < half; ++row) {
        for (int column = 0; column < half; ++column, ++label) {
            if (*label != none) {
                AddPoint(2 * column + 1, 2 * row + 1, static_cast<unsigned>(*label));
            }
        }
    }
    limit_ = static_cast<float>(2 * half) - 0.01F;
    cornerLimit_ = order_ == 32 ? 3 : 7;
}

void Constellation::TakeMoments()
{
    for (int i = -15; i <= 15; i += 2) {
        for (int q = -15; q <= 15; q += 2) {
            const auto isPoint = [&](int column, int row) {
                return static_cast<float>(std::max(std::abs(column), std::abs(row))) < limit_ &&
                       (!corners_ || labels_[CellOf(static_cast<float>(column), static_cast<float>(row))] != missing);
            };
            if (!isPoint(i, q)) {
                continue;
            }
            const std::complex<double> point(i, q);
            meanPower_ += std::norm(point) / order_;
            dispersion_ += std::norm(point) * std::norm(point) / order_;
            meanFourthPower_ += std::pow(point, 4).real() / order_;
            const int beside = isPoint(i + 2, q) + isPoint(i - 2, q) + isPoint(i, q + 2) + isPoint(i, q - 2);
            neighbours_ += static_cast<double>(beside) / order_;
        }
    }
    dispersion_ /= meanPower_;
}

/// In a missing corner, the nearest point is beside it or above it: where less has to be gone.
void Constellation::LeaveCorner(float placeI, float placeQ, float& i, float& q) const
{
    float& shortened = std::abs(placeI) < std::abs(placeQ) ? i : q;
    shortened = std::copysign(cornerLimit_, shortened);
}

}  // namespace tvn2x::recordings
