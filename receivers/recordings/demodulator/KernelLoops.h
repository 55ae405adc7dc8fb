// The loops of Kernels.h. Included by one source file for each kind of processor, whose compiler options make the
// difference; therefore nothing here comes from a header that others share, and all of it has internal linkage.
#pragma once

#include "receivers/recordings/demodulator/Kernels.h"

namespace tvn2x::recordings {
namespace {

#if defined(__AVX2__)
constexpr size_t lanes = 8;
#else
constexpr size_t lanes = 4;
#endif

using Lanes = float __attribute__((vector_size(lanes * sizeof(float))));
using Four = float __attribute__((vector_size(4 * sizeof(float))));

inline Lanes Load(const float* from)
{
    Lanes loaded;
    __builtin_memcpy(&loaded, from, sizeof loaded);
    return loaded;
}

inline void Store(float* to, Four stored)
{
    __builtin_memcpy(to, &stored, sizeof stored);
}

inline Four Folded(Lanes value)
{
#if defined(__AVX2__)
    return __builtin_shufflevector(value, value, 0, 1, 2, 3) + __builtin_shufflevector(value, value, 4, 5, 6, 7);
#else
    return value;
#endif
}

/// The sums of the lanes of each of four values.
inline Four Sums(const Lanes (&values)[4])
{
    const Four a = Folded(values[0]);
    const Four b = Folded(values[1]);
    const Four c = Folded(values[2]);
    const Four d = Folded(values[3]);
    const Four ab = __builtin_shufflevector(a, b, 0, 4, 1, 5) + __builtin_shufflevector(a, b, 2, 6, 3, 7);
    const Four cd = __builtin_shufflevector(c, d, 0, 4, 1, 5) + __builtin_shufflevector(c, d, 2, 6, 3, 7);
    return __builtin_shufflevector(ab, cd, 0, 1, 4, 5) + __builtin_shufflevector(ab, cd, 2, 3, 6, 7);
}

void Mix(const float* in, ConstComplexRow turns, const float base[2], size_t length, ComplexRow out)
{
    float* __restrict outRe = out.re;
    float* __restrict outIm = out.im;
    const float baseRe = base[0];
    const float baseIm = base[1];
    for (size_t i = 0; i < length; ++i) {
        const float turnRe = baseRe * turns.re[i] - baseIm * turns.im[i];
        const float turnIm = baseRe * turns.im[i] + baseIm * turns.re[i];
        const float re = in[2 * i];
        const float im = in[2 * i + 1];
        outRe[i] = re * turnRe - im * turnIm;
        outIm[i] = re * turnIm + im * turnRe;
    }
}

void Interpolate(const Interpolation& interpolation, size_t outputs, ComplexRow out)
{
    constexpr double half = 0.5;  // to the nearest phase, by the fast conversion
    const size_t count = interpolation.tapCount;
    for (size_t i = 0; i < outputs; i += ComplexGroup::size) {
        const float* taps[ComplexGroup::size];
        size_t first[ComplexGroup::size];
        for (size_t k = 0; k < ComplexGroup::size; ++k) {
            const double position = interpolation.position + static_cast<int32_t>(i + k) * interpolation.step;
            // Signed numbers, because processors convert to those alone.
            const auto whole = static_cast<int32_t>(position);
            const auto phase = static_cast<int32_t>((position - whole) * interpolation.phases + half);
            taps[k] = interpolation.taps + static_cast<size_t>(phase) * count;
            first[k] = static_cast<size_t>(whole) + 1 - count / 2;
        }
        Lanes re[ComplexGroup::size] = {};
        Lanes im[ComplexGroup::size] = {};
        for (size_t tap = 0; tap < count; tap += lanes) {
            for (size_t k = 0; k < ComplexGroup::size; ++k) {
                const Lanes weights = Load(taps[k] + tap);
                re[k] += weights * Load(interpolation.in.re + first[k] + tap);
                im[k] += weights * Load(interpolation.in.im + first[k] + tap);
            }
        }
        Store(out.re + i, interpolation.gain * Sums(re));
        Store(out.im + i, interpolation.gain * Sums(im));
    }
}

void Products(ConstComplexRow a, ConstComplexRow b, size_t step, size_t length, ComplexGroup& sums)
{
    Lanes re[ComplexGroup::size] = {};
    Lanes im[ComplexGroup::size] = {};
    for (size_t i = 0; i < length; i += lanes) {
        const Lanes aRe = Load(a.re + i);
        const Lanes aIm = Load(a.im + i);
        for (size_t k = 0; k < ComplexGroup::size; ++k) {
            const Lanes bRe = Load(b.re + k * step + i);
            const Lanes bIm = Load(b.im + k * step + i);
            re[k] += aRe * bRe;
            re[k] -= aIm * bIm;
            im[k] += aRe * bIm;
            im[k] += aIm * bRe;
        }
    }
    Store(sums.re, Sums(re));
    Store(sums.im, Sums(im));
}

void Adapt(ComplexRow a, ConstComplexRow b, size_t length, float keep, const float factor[2])
{
    float* __restrict aRe = a.re;
    float* __restrict aIm = a.im;
    const float* __restrict bRe = b.re;
    const float* __restrict bIm = b.im;
    const float re = factor[0];
    const float im = factor[1];
    for (size_t i = 0; i < length; ++i) {
        aRe[i] = keep * aRe[i] + re * bRe[i] + im * bIm[i];
        aIm[i] = keep * aIm[i] + im * bRe[i] - re * bIm[i];
    }
}

}  // namespace
}  // namespace tvn2x::recordings
