#include "receivers/recordings/demodulator/MatchedInterpolator.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tvn2x::recordings {

using std::numbers::pi;

double RootRaisedCosine(double time, double rollOff)
{
    if (std::abs(time) < 1e-9) {
        return 1 - rollOff + 4 * rollOff / pi;
    }
    const double pole = 4 * rollOff * time;
    if (std::abs(std::abs(pole) - 1) < 1e-5) {
        const double angle = pi / (4 * rollOff);
        return rollOff / std::numbers::sqrt2 * ((1 + 2 / pi) * std::sin(angle) + (1 - 2 / pi) * std::cos(angle));
    }
    return (std::sin(pi * time * (1 - rollOff)) + pole * std::cos(pi * time * (1 + rollOff))) /
           (pi * time * (1 - pole * pole));
}

MatchedInterpolator::MatchedInterpolator(double nominalStep, double rollOff, const Kernels& kernels)
    : kernels_(&kernels), nominalStep_(nominalStep)
{
    constexpr size_t tableFloats = 1 << 16;  // the second level of a processor's memory holds it
    const double samplesPerSymbol = 2 * nominalStep;
    tapCount_ = (static_cast<size_t>(2 * halfSymbols * samplesPerSymbol) / 8 + 1) * 8;
    phases_ = std::min<size_t>(512, tableFloats / tapCount_);
    taps_.resize((phases_ + 1) * tapCount_);
    // The taps of a phase are those of its counterpart the other way round.
    for (size_t phase = 0; phase <= phases_ / 2; ++phase) {
        const double part = static_cast<double>(phase) / static_cast<double>(phases_);
        for (size_t k = 0; k < tapCount_; ++k) {
            const double samples = static_cast<double>(k) - (static_cast<double>(tapCount_) / 2 - 1) - part;
            const double edge = std::min(1.0, std::abs(samples) / (static_cast<double>(tapCount_) / 2));
            const double fade = std::sqrt(std::max(0.0, std::cos(pi / 2 * edge)));
            const double tap = fade * RootRaisedCosine(samples / samplesPerSymbol, rollOff) / samplesPerSymbol;
            taps_[phase * tapCount_ + k] = static_cast<float>(tap);
            taps_[(phases_ - phase + 1) * tapCount_ - 1 - k] = static_cast<float>(tap);
        }
    }
    held_ = tapCount_ + slack;
    re_.resize(held_);
    im_.resize(held_);
    position_ = static_cast<double>(tapCount_) / 2 + slack;
}

void MatchedInterpolator::Take(std::span<const std::complex<float>> samples, Mixer& mixer)
{
    const auto first = static_cast<size_t>(position_) - tapCount_ / 2 - slack;
    if (first > 0) {
        std::copy(re_.begin() + static_cast<ptrdiff_t>(first), re_.begin() + static_cast<ptrdiff_t>(held_),
                  re_.begin());
        std::copy(im_.begin() + static_cast<ptrdiff_t>(first), im_.begin() + static_cast<ptrdiff_t>(held_),
                  im_.begin());
        held_ -= first;
        position_ -= static_cast<double>(first);
    }
    if (re_.size() < held_ + samples.size()) {
        re_.resize(held_ + samples.size());
        im_.resize(held_ + samples.size());
    }
    mixer.Process(samples, Input().From(held_));
    held_ += samples.size();
}

size_t MatchedInterpolator::Give(size_t values, ComplexRow out)
{
    const double step = nominalStep_ * (1 + stretch_);
    const double end = position_ + step * static_cast<double>(values);
    if (static_cast<size_t>(end) + tapCount_ / 2 + slack > held_) {
        return 0;
    }
    kernels_->interpolate({taps_.data(), tapCount_, static_cast<int32_t>(phases_), Input(), position_, step, gain_},
                          values, out);
    position_ = end;
    return values;
}

}  // namespace tvn2x::recordings
