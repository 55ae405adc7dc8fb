#include "receivers/recordings/source/FirFilter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <numeric>

namespace tvn2x::recordings {
namespace {

constexpr size_t lanes = 8;  // floats that are reckoned side by side, four samples

std::complex<float> Product(const float* samples, const std::vector<float>& taps)
{
    std::array<float, lanes> sums{};
    for (size_t i = 0; i < taps.size(); i += lanes) {
        for (size_t lane = 0; lane < lanes; ++lane) {
            sums[lane] += samples[i + lane] * taps[i + lane];
        }
    }
    return {(sums[0] + sums[2]) + (sums[4] + sums[6]), (sums[1] + sums[3]) + (sums[5] + sums[7])};
}

}  // namespace

std::vector<float> LowPass(double pass, double stop, double attenuation)
{
    const double beta = 0.1102 * (attenuation - 8.7);
    const double transition = 2 * std::numbers::pi * (stop - pass);
    const auto half = static_cast<int>(std::ceil((attenuation - 7.95) / (2.285 * transition) / 2));
    const double cut = pass + stop;  // twice the middle of the transition
    std::vector<double> taps;
    for (int i = -half; i <= half; ++i) {
        const double angle = std::numbers::pi * cut * i;
        const double place = static_cast<double>(i) / (half + 1);
        taps.push_back((i == 0 ? cut : cut * std::sin(angle) / angle) *
                       std::cyl_bessel_i(0, beta * std::sqrt(1 - place * place)));
    }
    const double gain = std::accumulate(taps.begin(), taps.end(), 0.0);
    std::vector<float> scaled;
    std::ranges::transform(taps, std::back_inserter(scaled),
                           [&](double tap) { return static_cast<float>(tap / gain); });
    return scaled;
}

FirFilter::FirFilter(const std::vector<float>& taps, size_t decimation) : decimation_(decimation)
{
    for (const float tap : taps) {
        taps_.insert(taps_.end(), 2, tap);
    }
    taps_.resize((taps_.size() + lanes - 1) / lanes * lanes);
    length_ = taps_.size() / 2;
}

void FirFilter::Process(std::span<const std::complex<float>> samples, std::vector<std::complex<float>>& out)
{
    pending_.insert(pending_.end(), samples.begin(), samples.end());
    size_t first = skipped_;
    for (; first + length_ <= pending_.size(); first += decimation_) {
        out.push_back(Product(reinterpret_cast<const float*>(pending_.data() + first), taps_));
    }
    const size_t done = std::min(first, pending_.size());
    pending_.erase(pending_.begin(), pending_.begin() + static_cast<std::ptrdiff_t>(done));
    skipped_ = first - done;
}

}  // namespace tvn2x::recordings
