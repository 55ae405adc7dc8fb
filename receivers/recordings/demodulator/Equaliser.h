#pragma once

#include <complex>
#include <cstddef>
#include <vector>

#include "receivers/recordings/demodulator/Kernels.h"

namespace tvn2x::recordings {

/// An adaptive equaliser: a forward filter of 32 taps half a symbol apart, and a backward one that takes away what
/// earlier symbols have left behind, up to 64 symbols (9 µs at 6.9 MSymb/s).
///
/// The forward filter sees values at two to a symbol, the backward one what was decided (while nothing can be decided,
/// what came out). Both are adapted by the gradient of the error. Whoever uses it keeps the values in one row, with
/// `history` more ahead of them.
class Equaliser
{
public:
    static constexpr size_t forwardTaps = 32;
    static constexpr size_t backwardTaps = 64;
    static constexpr size_t history = forwardTaps - 2;  ///< values ahead of the first pair
    static constexpr size_t capacity = 4096;            ///< symbols to a block, at most

    explicit Equaliser(const Kernels& kernels);

    /// One tap is 1, all others are 0.
    void Reset();
    /// Makes room for the next block's symbols.
    void BeginBlock();

    /// The forward filter's sum for the symbol whose values end there.
    std::complex<float> Forward(ComplexRow firstOfHistory) const
    {
        float sum[2];
        kernels_->product({forwardRe_, forwardIm_}, firstOfHistory, forwardTaps, sum);
        return {sum[0], sum[1]};
    }

    /// What earlier symbols have left behind.
    std::complex<float> Backward()
    {
        if (!backwardUsed_) {
            return {};
        }
        float sum[2];
        kernels_->product({backwardRe_, backwardIm_}, Earlier(), backwardTaps, sum);
        return {sum[0], sum[1]};
    }

    /// Lets the taps follow an error: `forward` and `backward` are the error times the step, each in the sense of its
    /// filter's sum.
    void Adapt(ComplexRow firstOfHistory, std::complex<float> forward, std::complex<float> backward)
    {
        constexpr float keep = 1 - 1e-7F;  // nothing else holds taps that only see frequencies without signal
        const float forwardFactor[2] = {forward.real(), forward.imag()};
        kernels_->adapt({forwardRe_, forwardIm_}, firstOfHistory, forwardTaps, keep, forwardFactor);
        if (backwardUsed_) {
            const float backwardFactor[2] = {backward.real(), backward.imag()};
            kernels_->adapt({backwardRe_, backwardIm_}, Earlier(), backwardTaps, keep, backwardFactor);
        }
    }

    /// The next symbol, as decided.
    void Push(std::complex<float> symbol)
    {
        earlierRe_[symbols_ + backwardTaps] = symbol.real();
        earlierIm_[symbols_ + backwardTaps] = symbol.imag();
        ++symbols_;
    }

    /// Whether a tap of the backward filter stands out from the others, which noise moves.
    bool HasEchoes() const;
    /// Of the forward filter, at a frequency in turns a symbol.
    double PowerResponse(double frequency) const;
    void UseBackward(bool use);
    bool BackwardUsed() const { return backwardUsed_; }

private:
    ComplexRow Earlier() { return {earlierRe_.data() + symbols_, earlierIm_.data() + symbols_}; }

    const Kernels* kernels_;
    // Mutable for the kernels, which take rows that they may write to.
    mutable float forwardRe_[forwardTaps];
    mutable float forwardIm_[forwardTaps];
    float backwardRe_[backwardTaps];
    float backwardIm_[backwardTaps];
    std::vector<float> earlierRe_;
    std::vector<float> earlierIm_;
    size_t symbols_ = 0;  ///< of this block
    bool backwardUsed_ = true;
};

}  // namespace tvn2x::recordings
