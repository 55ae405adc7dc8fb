#include "receivers/recordings/demodulator/Mixer.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tvn2x::recordings {

using std::numbers::pi;

Mixer::Mixer(double rate, const Kernels& kernels) : rate_(rate), kernels_(&kernels), turnsRe_(span), turnsIm_(span)
{
    SetFrequency(0);
}

void Mixer::SetFrequency(double frequency)
{
    frequency_ = frequency;
    for (size_t i = 0; i < span; ++i) {
        const double angle = -2 * pi * frequency / rate_ * static_cast<double>(i);
        turnsRe_[i] = static_cast<float>(std::cos(angle));
        turnsIm_[i] = static_cast<float>(std::sin(angle));
    }
}

void Mixer::Process(std::span<const std::complex<float>> samples, ComplexRow out)
{
    const ComplexRow turns{turnsRe_.data(), turnsIm_.data()};
    for (size_t done = 0; done < samples.size(); done += span) {
        const size_t count = std::min(span, samples.size() - done);
        const float base[2] = {static_cast<float>(std::cos(2 * pi * phase_)),
                               static_cast<float>(std::sin(2 * pi * phase_))};
        kernels_->mix(reinterpret_cast<const float*>(samples.data() + done), turns, base, count, out.From(done));
        phase_ -= frequency_ / rate_ * static_cast<double>(count);
        phase_ -= std::floor(phase_);
    }
}

}  // namespace tvn2x::recordings
