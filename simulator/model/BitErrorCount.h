#pragma once

#include <cstdint>
#include <optional>

#include "receivers/model/BitErrorProgress.h"
#include "simulator/model/SeededNoise.h"

namespace tvn2x {

/// A count of bit errors before Reed-Solomon, over blocks of 10^7 bits at the rate at which they arrive.
///
/// The errors of a block are drawn from its address, so what is shown does not depend on how often it is asked for.
class BitErrorCount
{
public:
    static constexpr double blockBits = BitErrorProgress::blockBits;
    /// Seconds of the stream that the receiver has in hand when a count begins: so the count is done when a client that
    /// waits for its bits to arrive asks for the last time, and does not hang on the moment of that.
    static constexpr double buffered = 0.1;

    using Progress = BitErrorProgress;

    BitErrorCount(double startedAt, double bitRate, double ber, int32_t blocks, const SeededNoise& noise)
        : startedAt_(startedAt), bitRate_(bitRate), ber_(ber), wanted_(blocks), noise_(noise)
    {
    }

    double StartedAt() const { return startedAt_; }
    Progress At(double seconds);

private:
    uint64_t ErrorsOf(int32_t block) const;

    double startedAt_;
    double bitRate_;
    double ber_;
    int32_t wanted_;
    SeededNoise noise_;
    int32_t summedBlocks_ = 0;
    uint64_t summedErrors_ = 0;
};

}  // namespace tvn2x
