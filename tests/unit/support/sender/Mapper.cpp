#include "support/sender/Mapper.h"

#include <algorithm>
#include <map>

namespace tvn2x::sender {
namespace {

/// Labels of the first quadrant as the standard prints it: row by row from Q = 1, in a row from I = 1.
const std::map<int, std::vector<std::vector<unsigned>>>& Tables()
{
    static const std::map<int, std::vector<std::vector<unsigned>>> tables{
        {16, {{0b00, 0b01}, {0b10, 0b11}}},
        {32, {{0b000, 0b001, 0b011}, {0b100, 0b101, 0b111}, {0b110, 0b010}}},
        {64,
         {{0b0000, 0b0001, 0b0101, 0b0100},
          {0b0010, 0b0011, 0b0111, 0b0110},
          {0b1010, 0b1011, 0b1111, 0b1110},
          {0b1000, 0b1001, 0b1101, 0b1100}}},
        {128,
         {{0b00000, 0b00001, 0b00101, 0b00100, 0b01100, 0b01101},
          {0b00010, 0b00011, 0b00111, 0b00110, 0b01110, 0b01111},
          {0b10010, 0b10011, 0b10111, 0b10110, 0b11110, 0b11111},
          {0b10000, 0b10001, 0b10101, 0b10100, 0b11100, 0b11101},
          {0b11000, 0b11001, 0b01001, 0b01000},
          {0b11010, 0b11011, 0b01011, 0b01010}}},
        {256,
         {{0b000000, 0b000001, 0b000101, 0b000100, 0b010100, 0b010101, 0b010001, 0b010000},
          {0b000010, 0b000011, 0b000111, 0b000110, 0b010110, 0b010111, 0b010011, 0b010010},
          {0b001010, 0b001011, 0b001111, 0b001110, 0b011110, 0b011111, 0b011011, 0b011010},
          {0b001000, 0b001001, 0b001101, 0b001100, 0b011100, 0b011101, 0b011001, 0b011000},
          {0b101000, 0b101001, 0b101101, 0b101100, 0b111100, 0b111101, 0b111001, 0b111000},
          {0b101010, 0b101011, 0b101111, 0b101110, 0b111110, 0b111111, 0b111011, 0b111010},
          {0b100010, 0b100011, 0b100111, 0b100110, 0b110110, 0b110111, 0b110011, 0b110010},
          {0b100000, 0b100001, 0b100101, 0b100100, 0b110100, 0b110101, 0b110001, 0b110000}}}};
    return tables;
}

}  // namespace

Mapper::Mapper(int order) : order_(order)
{
    while (1 << bits_ < order) {
        ++bits_;
    }
}

double Mapper::MeanPower(int order)
{
    return std::map<int, double>{{16, 10}, {32, 20}, {64, 42}, {128, 82}, {256, 170}}.at(order);
}

void Mapper::Map(const std::vector<uint8_t>& bytes, std::vector<std::complex<double>>& points)
{
    for (const unsigned byte : bytes) {
        waiting_ = waiting_ << 8 | byte;
        waitingBits_ += 8;
        while (waitingBits_ >= bits_) {
            waitingBits_ -= bits_;
            points.push_back(Point(waiting_ >> waitingBits_ & ((1U << bits_) - 1)));
        }
    }
}

std::complex<double> Mapper::Point(unsigned tuple)
{
    const bool a = (tuple >> (bits_ - 1) & 1) != 0;
    const bool b = (tuple >> (bits_ - 2) & 1) != 0;
    const bool i = a == b ? a != i_ : a != q_;
    const bool q = a == b ? b != q_ : b != i_;
    i_ = i;
    q_ = q;
    const unsigned label = tuple & ((1U << (bits_ - 2)) - 1);
    std::complex<double> point;
    const auto& rows = Tables().at(order_);
    for (size_t row = 0; row < rows.size(); ++row) {
        const auto found = std::find(rows[row].begin(), rows[row].end(), label);
        if (found != rows[row].end()) {
            point = {2.0 * static_cast<double>(found - rows[row].begin()) + 1, 2.0 * static_cast<double>(row) + 1};
        }
    }
    // IQ = 00 is the first quadrant, 10 the second, 11 the third, 01 the fourth.
    const std::complex<double> turn = i ? (q ? std::complex<double>(-1, 0) : std::complex<double>(0, 1))
                                        : (q ? std::complex<double>(0, -1) : std::complex<double>(1, 0));
    return point * turn;
}

}  // namespace tvn2x::sender
