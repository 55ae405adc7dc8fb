#pragma once

#include <cstdint>

namespace tvn2x {

/// Random numbers that are a function of their address alone: the same seed, place, occasion, stream and index give the
/// same number whatever was asked before, so a scan reads the same values in any order of channels and on any system.
class SeededNoise
{
public:
    /// place and occasion: what the numbers belong to, the tuned frequency in Hz and how often it was tuned to.
    SeededNoise(uint64_t seed, uint64_t place, uint64_t occasion = 0);

    double Uniform(uint64_t stream, uint64_t index) const;   ///< 0 <= value < 1
    double Gaussian(uint64_t stream, uint64_t index) const;  ///< mean 0, standard deviation 1
    /// How many events happen where `mean` are expected.
    uint64_t Poisson(double mean, uint64_t stream, uint64_t index) const;

private:
    uint64_t base_;
};

}  // namespace tvn2x
