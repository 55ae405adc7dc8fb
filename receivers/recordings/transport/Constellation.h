#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace tvn2x::recordings {

/// The points of a constellation (EN 300 429, clause 8) and their labels. Points are told by cells: the columns and
/// rows of a grid of 16 by 16, whose centres are the odd numbers from -15 to 15, so that the distance between
/// neighbours is 2.
class Constellation
{
public:
    using Cell = uint8_t;  ///< 16 * row + column

    /// Of 16, 32, 64, 128 or 256 points.
    explicit Constellation(int32_t order);

    int32_t Order() const { return order_; }
    int Bits() const { return bits_; }
    double MeanPower() const { return meanPower_; }
    /// The mean of the points' fourth powers, a real number.
    double MeanFourthPower() const { return meanFourthPower_; }
    /// The mean of the points' squared powers over the mean power: what a blind equaliser strives for.
    double Dispersion() const { return dispersion_; }
    /// The mean number of neighbours at the least distance.
    double Neighbours() const { return neighbours_; }

    /// Moves a place to the point nearest to it.
    void Decide(float& i, float& q) const
    {
        const float placeI = i;
        const float placeQ = q;
        i = NearestOdd(placeI);
        q = NearestOdd(placeQ);
        if (corners_ && std::min(std::abs(i), std::abs(q)) > cornerLimit_) {
            LeaveCorner(placeI, placeQ, i, q);
        }
    }

    static Cell CellOf(float i, float q) { return static_cast<Cell>(static_cast<int>(8 * q + 0.5F * i + 127.5F)); }
    static float I(Cell cell) { return static_cast<float>(2 * (cell & 15) - 15); }
    static float Q(Cell cell) { return static_cast<float>(2 * (cell >> 4) - 15); }
    /// The same point with the sign of Q turned, as it is seen in an inverted spectrum.
    static Cell Mirrored(Cell cell) { return static_cast<Cell>((15 - (cell >> 4)) << 4 | (cell & 15)); }

    /// The quadrant, 0 to 3 anticlockwise, in the highest two bits; below them the bits of the label that turning by 90
    /// degrees does not change.
    uint8_t Label(Cell cell) const { return labels_[cell]; }

private:
    static constexpr uint8_t missing = 0x3F;

    /// Within the constellation.
    float NearestOdd(float place) const
    {
        // In this order what is no number becomes the limit. So far from 0 only even numbers can be told apart.
        constexpr float distant = 25165824.0F;
        return std::max(-limit_, std::min(limit_, place)) + 1 + distant - distant - 1;
    }

    void LeaveCorner(float placeI, float placeQ, float& i, float& q) const;
    void AddPoint(int i, int q, unsigned label);
    void AddSquare();
    void AddCross();
    void TakeMoments();

    int32_t order_;
    int bits_;
    bool corners_ = false;   ///< are missing
    float limit_ = 0;        ///< places beyond belong to the outermost points
    float cornerLimit_ = 0;  ///< the highest coordinate that goes with any other one
    double meanPower_ = 0;
    double meanFourthPower_ = 0;
    double dispersion_ = 0;
    double neighbours_ = 0;
    std::array<uint8_t, 256> labels_{};
};

}  // namespace tvn2x::recordings
