#pragma once

#include <cstddef>

namespace tvn2x::recordings {

/// Complex numbers as two rows of floats, which the vector units take as they are.
struct ComplexRow
{
    float* re = nullptr;
    float* im = nullptr;

    ComplexRow From(size_t offset) const { return {re + offset, im + offset}; }
};

/// The loops that nearly all of the time is spent in, compiled for two kinds of processor. Lengths are multiples of 8.
struct Kernels
{
    const char* name;

    /// out[i] = in[i] * base * turns[i]: `in` has real and imaginary parts in turn.
    void (*mix)(const float* in, ComplexRow turns, const float base[2], size_t length, ComplexRow out);
    /// out[i] = gain * sum of taps(place) * in at that place, for places `position + i * step`: see
    /// MatchedInterpolator.
    void (*interpolate)(const struct Interpolation& interpolation, size_t outputs, ComplexRow out);
    /// The sum of a[i] * b[i].
    void (*product)(ComplexRow a, ComplexRow b, size_t length, float sum[2]);
    /// a[i] = keep * a[i] + factor * conj(b[i]).
    void (*adapt)(ComplexRow a, ComplexRow b, size_t length, float keep, const float factor[2]);
};

/// What `interpolate` works on.
struct Interpolation
{
    const float* taps;  ///< phases + 1 rows
    size_t tapCount;
    size_t phases;
    ComplexRow in;
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
