// The loops of Kernels.h. Included by one source file for each kind of processor, whose compiler options make the
// difference; therefore nothing here comes from a header that others share, and all of it has internal linkage.
#pragma once

#include "receivers/recordings/demodulator/Kernels.h"

namespace tvn2x::recordings {
namespace {

void Mix(const float* in, ComplexRow turns, const float base[2], size_t length, ComplexRow out)
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
    const size_t count = interpolation.tapCount;
    const float gain = interpolation.gain;
    double position = interpolation.position;
    for (size_t i = 0; i < outputs; ++i, position += interpolation.step) {
        const auto whole = static_cast<size_t>(position);
        const double part = position - static_cast<double>(whole);
        const auto phase = static_cast<size_t>(part * static_cast<double>(interpolation.phases) + 0.5);
        const float* __restrict taps = interpolation.taps + phase * count;
        const float* __restrict re = interpolation.in.re + whole + 1 - count / 2;
        const float* __restrict im = interpolation.in.im + whole + 1 - count / 2;
        float sumRe = 0;
        float sumIm = 0;
        for (size_t k = 0; k < count; ++k) {
            sumRe += taps[k] * re[k];
            sumIm += taps[k] * im[k];
        }
        out.re[i] = gain * sumRe;
        out.im[i] = gain * sumIm;
    }
}

void Product(ComplexRow a, ComplexRow b, size_t length, float sum[2])
{
    const float* __restrict aRe = a.re;
    const float* __restrict aIm = a.im;
    const float* __restrict bRe = b.re;
    const float* __restrict bIm = b.im;
    float re = 0;
    float im = 0;
    for (size_t i = 0; i < length; ++i) {
        re += aRe[i] * bRe[i] - aIm[i] * bIm[i];
        im += aRe[i] * bIm[i] + aIm[i] * bRe[i];
    }
    sum[0] = re;
    sum[1] = im;
}

void Adapt(ComplexRow a, ComplexRow b, size_t length, float keep, const float factor[2])
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
