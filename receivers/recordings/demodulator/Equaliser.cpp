#include "receivers/recordings/demodulator/Equaliser.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <numeric>

namespace tvn2x::recordings {
namespace {

/// The forward filter's main tap: an even number, because the even values are those of the symbols themselves. As many
/// symbols come ahead of it as behind it.
constexpr size_t mainTap = 14;

}  // namespace

Equaliser::Equaliser(const Kernels& kernels)
    : kernels_(&kernels), earlierRe_(capacity + backwardTaps), earlierIm_(capacity + backwardTaps)
{
    forwardRe_[mainTap] = 1;
}

void Equaliser::BeginBlock()
{
    const auto taken = static_cast<ptrdiff_t>(symbols_);
    for (std::vector<float>* row : {&earlierRe_, &earlierIm_}) {
        std::copy_n(row->begin() + taken, backwardTaps, row->begin());
        std::fill_n(row->begin() + backwardTaps, taken, 0.0F);
    }
    symbols_ = 0;
}

bool Equaliser::HasEchoes() const
{
    constexpr float least = 1e-5F;
    std::array<float, backwardTaps> powers{};
    for (size_t i = 0; i < backwardTaps; ++i) {
        powers[i] = backwardRe_[i] * backwardRe_[i] + backwardIm_[i] * backwardIm_[i];
    }
    std::sort(powers.begin(), powers.end());
    return powers.back() > std::max(least, 20 * powers[backwardTaps / 2]);
}

double Equaliser::PowerResponse(double frequency) const
{
    std::complex<double> sum;
    for (size_t i = 0; i < forwardTaps; ++i) {
        const double angle = std::numbers::pi * frequency * static_cast<double>(i);
        sum += std::complex<double>(forwardRe_[i], forwardIm_[i]) * std::polar(1.0, angle);
    }
    return std::norm(sum);
}

double Equaliser::CarrierPowerResponse() const
{
    return std::norm(std::complex<double>(std::accumulate(backwardRe_, backwardRe_ + backwardTaps, 1.0),
                                          std::accumulate(backwardIm_, backwardIm_ + backwardTaps, 0.0)));
}

void Equaliser::UseBackward(bool use)
{
    if (!use) {
        std::fill_n(backwardRe_, backwardTaps, 0.0F);
        std::fill_n(backwardIm_, backwardTaps, 0.0F);
        backward_ = {};
    }
    backwardUsed_ = use;
}

}  // namespace tvn2x::recordings
