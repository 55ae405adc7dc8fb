#pragma once

#include <complex>
#include <cstddef>
#include <span>
#include <vector>

namespace tvn2x::recordings {

/// The discrete Fourier transform of a length that is a power of two, in place.
class FourierTransform
{
public:
    explicit FourierTransform(size_t length);

    size_t Length() const { return reversed_.size(); }
    /// The number k of the result is the frequency k / Length() of the sampling rate, those from the middle on are the
    /// negative ones.
    void Forward(std::span<std::complex<float>> values) const;

private:
    std::vector<std::complex<float>> turns_;
    std::vector<size_t> reversed_;
};

/// A window that fades in and out as a sine squared (Hann).
std::vector<float> FadingWindow(size_t length);

}  // namespace tvn2x::recordings
