#include "receivers/recordings/demodulator/LevelControl.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

namespace tvn2x::recordings {

/// The matched filter takes a quarter of the roll-off from the signal's edges.
LevelControl::LevelControl(double rollOff) : matchedShare_(1 - rollOff / 4) {}

void LevelControl::Process(ComplexRow values, size_t count)
{
    std::array<float, 8> sums{};  // many, because each waits for the one before
    for (size_t i = 0; i < count; i += sums.size()) {
        for (size_t k = 0; k < sums.size(); ++k) {
            sums[k] += values.re[i + k] * values.re[i + k] + values.im[i + k] * values.im[i + k];
        }
    }
    const double power =
        std::accumulate(sums.begin(), sums.end(), 0.0) / static_cast<double>(count) / matchedShare_ / (gain_ * gain_);
    ++blocks_;
    power_ = blocks_ == 1 ? power : power_ + (power - power_) / std::min(blocks_, 64);
}

void LevelControl::Adjust()
{
    gain_ = power_ > 0 ? 1 / std::sqrt(power_) : 1;
}

void LevelControl::Reset()
{
    gain_ = 1;
    blocks_ = 0;
}

}  // namespace tvn2x::recordings
