#pragma once

#include <algorithm>
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

    /// One tap is 1, all others are 0.
    explicit Equaliser(const Kernels& kernels);

    /// Makes room for the next block's symbols.
    void BeginBlock();

    /// Makes both filters' sums for the next group of symbols; the values of the first one end there. Taps stay as they
    /// are within a group.
    void BeginGroup(ConstComplexRow firstOfHistory)
    {
        kernels_->products({forwardRe_, forwardIm_}, firstOfHistory, 2, forwardTaps, forward_);
        if (backwardUsed_) {
            kernels_->products({backwardRe_, backwardIm_}, Earlier(0), 1, backwardTaps, backward_);
        }
    }

    /// The forward filter's sums.
    const ComplexGroup& Forward() const { return forward_; }
    /// What the symbols before the group have left behind.
    const ComplexGroup& Backward() const { return backward_; }

    /// Takes away from a symbol of the group what those before it in the group have left behind, as decided.
    void Release(size_t place, const ComplexGroup& decided, ComplexGroup& symbols) const
    {
        const float* const tapsRe = backwardRe_ + backwardTaps - place;
        const float* const tapsIm = backwardIm_ + backwardTaps - place;
        for (size_t i = 0; i < place; ++i) {
            symbols.re[place] -= tapsRe[i] * decided.re[i] - tapsIm[i] * decided.im[i];
            symbols.im[place] -= tapsRe[i] * decided.im[i] + tapsIm[i] * decided.re[i];
        }
    }

    /// Ends the group: its symbols, as decided, are earlier ones from now on.
    void EndGroup(const ComplexGroup& decided)
    {
        symbols_ += ComplexGroup::size;
        std::copy_n(decided.re, ComplexGroup::size, &earlierRe_[symbols_ + backwardTaps - ComplexGroup::size]);
        std::copy_n(decided.im, ComplexGroup::size, &earlierIm_[symbols_ + backwardTaps - ComplexGroup::size]);
    }

    /// Lets the taps follow the error of a symbol of the group that has ended: `forward` and `backward` are the error
    /// times the step, each in the sense of its filter's sum.
    void Adapt(size_t place, ConstComplexRow firstOfHistory, std::complex<float> forward, std::complex<float> backward)
    {
        constexpr float keep = 1 - 1e-7F;  // nothing else holds taps that only see frequencies without signal
        const float forwardFactor[2] = {forward.real(), forward.imag()};
        kernels_->adapt({forwardRe_, forwardIm_}, firstOfHistory.From(2 * place), forwardTaps, keep, forwardFactor);
        if (backwardUsed_) {
            const float backwardFactor[2] = {backward.real(), backward.imag()};
            kernels_->adapt({backwardRe_, backwardIm_}, Earlier(place - ComplexGroup::size), backwardTaps, keep,
                            backwardFactor);
        }
    }

    /// Whether a tap of the backward filter stands out from the others, which noise moves.
    bool HasEchoes() const;
    /// Of the forward filter, at a frequency in turns a symbol.
    double PowerResponse(double frequency) const;
    /// Of a constant, behind a channel that both filters together have made flat for symbols: nobody decides for the
    /// constant, so that its echoes stay.
    double CarrierPowerResponse() const;
    void UseBackward(bool use);
    bool BackwardUsed() const { return backwardUsed_; }

private:
    /// What the backward filter sees of a symbol; 0 is the next one.
    ConstComplexRow Earlier(size_t place) const
    {
        return {&earlierRe_[symbols_ + place], &earlierIm_[symbols_ + place]};
    }

    const Kernels* kernels_;
    float forwardRe_[forwardTaps]{};
    float forwardIm_[forwardTaps]{};
    float backwardRe_[backwardTaps]{};
    float backwardIm_[backwardTaps]{};
    std::vector<float> earlierRe_;
    std::vector<float> earlierIm_;
    size_t symbols_ = 0;  ///< of this block
    ComplexGroup forward_{};
    ComplexGroup backward_{};
    bool backwardUsed_ = true;
};

}  // namespace tvn2x::recordings
