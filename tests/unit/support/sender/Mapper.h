#pragma once

#include <complex>
#include <cstdint>
#include <vector>

namespace tvn2x::sender {

/// Bytes to points on the odd grid: tuples, differential coding, labels.
class Mapper
{
public:
    explicit Mapper(int order);
    void Map(const std::vector<uint8_t>& bytes, std::vector<std::complex<double>>& points);
    /// The point of the next tuple of bits.
    std::complex<double> Point(unsigned tuple);
    static double MeanPower(int order);

private:
    int order_;
    int bits_ = 0;
    unsigned waiting_ = 0;
    int waitingBits_ = 0;
    bool i_ = false;
    bool q_ = false;
};

}  // namespace tvn2x::sender
