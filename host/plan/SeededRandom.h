#pragma once

#include <cstdint>

namespace tvn2x {

/// Random numbers that are the same on every system: whole-number arithmetic and exact conversions only.
class SeededRandom
{
public:
    explicit SeededRandom(uint64_t seed) : state_(seed) {}

    uint64_t Next()
    {
        state_ += 0x9E3779B97F4A7C15;
        uint64_t mixed = (state_ ^ (state_ >> 30)) * 0xBF58476D1CE4E5B9;
        mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EB;
        return mixed ^ (mixed >> 31);
    }

    /// 0 <= value < 1
    double Uniform() { return static_cast<double>(Next() >> 11) * 0x1p-53; }
    double Between(double low, double high) { return low + (high - low) * Uniform(); }
    uint64_t Below(uint64_t count) { return Next() % count; }

    /// Mean 0, standard deviation 1, never beyond 6: a sum of twelve uniform numbers.
    double Normal()
    {
        double sum = -6;
        for (int i = 0; i < 12; ++i) {
            sum += Uniform();
        }
        return sum;
    }

private:
    uint64_t state_;
};

}  // namespace tvn2x
