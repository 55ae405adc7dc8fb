#pragma once

#include <complex>
#include <cstddef>
#include <cstdint>

namespace tvn2x::recordings {

/// Complex numbers as two rows of floats, which the vector units take as they are. To be read.
struct ConstComplexRow
{
    const float* re = nullptr;
    const float* im = nullptr;

    ConstComplexRow From(size_t offset) const { return {re + offset, im + offset}; }
};

/// Such rows to be written.
struct ComplexRow
{
    float* re = nullptr;
    float* im = nullptr;

    ComplexRow From(size_t offset) const { return {re + offset, im + offset}; }
    operator ConstComplexRow() const { return {re, im}; }
};

/// Four complex numbers. What lies one after another is reckoned so many at a time, which costs less than four times
/// one of them.
struct ComplexGroup
{
    static constexpr size_t size = 4;

    float re[size];
    float im[size];

    std::complex<float> operator[](size_t place) const { return {re[place], im[place]}; }
};

/// The loops that nearly all of the time is spent in, compiled for two kinds of processor. Lengths are multiples of 8.
struct Kernels
{
    const char* name;

    /// out[i] = in[i] * base * turns[i]: `in` has real and imaginary parts in turn.
    void (*mix)(const float* in, ConstComplexRow turns, const float base[2], size_t length, ComplexRow out);
    /// out[i] = gain * sum of taps(place) * in at that place, for places `position + i * step`: see
    /// MatchedInterpolator. `outputs` is a multiple of 4.
    void (*interpolate)(const struct Interpolation& interpolation, size_t outputs, ComplexRow out);
    /// sums[k] = the sum of a[i] * b[k * step + i].
    void (*products)(ConstComplexRow a, ConstComplexRow b, size_t step, size_t length, ComplexGroup& sums);
    /// a[i] = keep * a[i] + factor * conj(b[i]).
    void (*adapt)(ComplexRow a, ConstComplexRow b, size_t length, float keep, const float factor[2]);
};

/// What `interpolate` works on.
struct Interpolation
{
    const float* taps;  ///< phases + 1 rows
    size_t tapCount;
    int32_t phases;
    ConstComplexRow in;
    double position;  ///< in samples of `in`: the taps of output 0 lie around it
    double step;
    float gain;
};

extern const Kernels baselineKernels;  ///< what every processor of 64 bits has (SSE2)
extern const Kernels wideKernels;      ///< AVX2 and FMA

bool HasWideKernels();
/// The best ones for the processor that the program runs on.
const Kernels& ChosenKernels();

}  // namespace tvn2x::recordings
