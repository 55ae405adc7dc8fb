#include "receivers/recordings/demodulator/FourierTransform.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace tvn2x::recordings {

FourierTransform::FourierTransform(size_t length) : turns_(length / 2), reversed_(length)
{
    for (size_t i = 0; i < turns_.size(); ++i) {
        const double angle = -2 * std::numbers::pi * static_cast<double>(i) / static_cast<double>(length);
        turns_[i] = {static_cast<float>(std::cos(angle)), static_cast<float>(std::sin(angle))};
    }
    for (size_t i = 1; i < length; ++i) {
        reversed_[i] = reversed_[i / 2] / 2 + (i % 2 != 0 ? length / 2 : 0);
    }
}

void FourierTransform::Forward(std::span<std::complex<float>> values) const
{
    const size_t length = reversed_.size();
    for (size_t i = 0; i < length; ++i) {
        if (i < reversed_[i]) {
            std::swap(values[i], values[reversed_[i]]);
        }
    }
    for (size_t half = 1; half < length; half *= 2) {
        const size_t stride = length / (2 * half);
        for (size_t start = 0; start < length; start += 2 * half) {
            for (size_t k = 0; k < half; ++k) {
                const std::complex<float> turn = turns_[k * stride];
                const std::complex<float> a = values[start + k];
                const std::complex<float> b = values[start + k + half];
                const std::complex<float> turned(b.real() * turn.real() - b.imag() * turn.imag(),
                                                 b.real() * turn.imag() + b.imag() * turn.real());
                values[start + k] = a + turned;
                values[start + k + half] = a - turned;
            }
        }
    }
}

std::vector<float> FadingWindow(size_t length)
{
    std::vector<float> window(length);
    for (size_t i = 0; i < length; ++i) {
        const double sine = std::sin(std::numbers::pi * (static_cast<double>(i) + 0.5) / static_cast<double>(length));
        window[i] = static_cast<float>(sine * sine);
    }
    return window;
}

}  // namespace tvn2x::recordings
