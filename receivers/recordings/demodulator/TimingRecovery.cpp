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
    constexpr int blocksBetween = 4;  // later on: a clock does not change faster
    const bool acquiring = blocks_ < blocksOfAcquisition;
    if (blocks_++ % (acquiring ? 1 : blocksBetween) != 0) {
        return {0, stretch_};
    }
    const Edges edges = Measure(values);
    const double late = -static_cast<double>(std::arg(edges.product)) / (2 * std::numbers::pi);
    if (edges.power > 0) {
        coherence_ += (static_cast<double>(edges.product.real() / edges.power) - coherence_) / 4;
    }
    if (blocks_ == 1) {
        return {late, stretch_};
    }
    const double symbols = static_cast<double>(blockValues) / 2 * (acquiring ? 1 : blocksBetween);
    stretch_ += (acquiring ? 0.01 : 0.0012) * late / symbols;
    meanStretch_ += (stretch_ - meanStretch_) / (acquiring ? 4 : 16);
    return {(acquiring ? 0.2 : 0.06) * late, stretch_};
}

TimingRecovery::Edges TimingRecovery::Measure(ComplexRow values)
{
    for (size_t i = 0; i < length; ++i) {
        values_[i] = {values.re[i] * window_[i], values.im[i] * window_[i]};
    }
    transform_.Forward(values_);

    // With two values to a symbol the symbol rate is half of the bins, and its half a quarter of them.
    const auto halfWidth = static_cast<size_t>(rollOff_ * length / 4);
    Edges edges;
    for (size_t bin = length / 4 - halfWidth; bin <= length / 4 + halfWidth; ++bin) {
        edges.product += values_[bin] * std::conj(values_[bin + length / 2]);
        edges.power += (std::norm(values_[bin]) + std::norm(values_[bin + length / 2])) / 2;
    }
    return edges;
}

}  // namespace tvn2x::recordings
