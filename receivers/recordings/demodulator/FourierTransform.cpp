#include "receivers/recordings/demodulator/FourierTransform.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace tvn2x::recordings {

FourierTransform::FourierTransform(size_t length) : reversed_(length)
{
    for (size_t half = 2; half < length; half *= 2) {
        for (size_t k = 0; k < half; ++k) {
            const double angle = -std::numbers::pi * static_cast<double>(k) / static_cast<double>(half);
            turns_.emplace_back(static_cast<float>(std::cos(angle)), static_cast<float>(std::sin(angle)));
        }
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
    for (size_t i = 0; i < length; i += 2) {
        const std::complex<float> a = values[i];
        values[i] = a + values[i + 1];
        values[i + 1] = a - values[i + 1];
    }
    // The turns of each stage lie behind those of the stage before.
    const std::complex<float>* turns = turns_.data();
    for (size_t half = 2; half < length; turns += half, half *= 2) {
        for (size_t start = 0; start < length; start += 2 * half) {
            std::complex<float>* const low = &values[start];
            std::complex<float>* const high = low + half;
            for (size_t k = 0; k < half; ++k) {
                const std::complex<float> turned(high[k].real() * turns[k].real() - high[k].imag() * turns[k].imag(),
                                                 high[k].real() * turns[k].imag() + high[k].imag() * turns[k].real());
                high[k] = low[k] - turned;
                low[k] += turned;
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
