#include "receivers/recordings/demodulator/TimingRecovery.h"

#include <numbers>

namespace tvn2x::recordings {

TimingRecovery::TimingRecovery(double rollOff, double symbolRateOffset)
    : rollOff_(rollOff),
      transform_(length),
      window_(FadingWindow(length)),
      values_(length),
      stretch_(-symbolRateOffset * 1e-6),
      meanStretch_(stretch_)
{
}

TimingRecovery::Correction TimingRecovery::Process(ComplexRow values)
{
    constexpr int blocksOfAcquisition = 24;
    constexpr double blockSymbols = blockValues / 2;
    for (size_t i = 0; i < length; ++i) {
        values_[i] = {values.re[i] * window_[i], values.im[i] * window_[i]};
    }
    transform_.Forward(values_);

    // With two values to a symbol the symbol rate is half of the bins, and its half a quarter of them.
    const auto halfWidth = static_cast<size_t>(rollOff_ * length / 4);
    std::complex<float> product;
    float power = 0;
    for (size_t bin = length / 4 - halfWidth; bin <= length / 4 + halfWidth; ++bin) {
        product += values_[bin] * std::conj(values_[bin + length / 2]);
        power += (std::norm(values_[bin]) + std::norm(values_[bin + length / 2])) / 2;
    }
    const double late = -static_cast<double>(std::arg(product)) / (2 * std::numbers::pi);
    const bool first = blocks_ == 0;
    const bool acquiring = blocks_ < blocksOfAcquisition;
    ++blocks_;
    if (power > 0) {
        coherence_ += (static_cast<double>(product.real() / power) - coherence_) / (acquiring ? 4 : 8);
    }
    if (first) {
        return {late, stretch_};
    }
    stretch_ += (acquiring ? 0.01 : 0.0004) * late / blockSymbols;
    meanStretch_ += (stretch_ - meanStretch_) / (acquiring ? 4 : 32);
    return {(acquiring ? 0.2 : 0.03) * late, stretch_};
}

}  // namespace tvn2x::recordings
