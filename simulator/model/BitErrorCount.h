#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "simulator/model/SeededNoise.h"

namespace tvn2x {

/// A count of bit errors before Reed-Solomon, over blocks of 10^7 bits at the rate at which they arrive.
///
/// The errors of a block are drawn from its address, so what is shown does not depend on how often it is asked for.
class BitErrorCount
{
public:
    static constexpr double blockBits = 1e7;
    /// Seconds of the stream that the receiver has in hand when a count begins: so the count is done when a client that
    /// waits for its bits to arrive asks for the last time, and does not hang on the moment of that.
    static constexpr double buffered = 0.1;

    /// What has been counted at one moment.
    struct Progress
    {
        double bits = 0;
        double errors = 0;
        int32_t blocks = 0;  ///< complete ones
        int32_t wanted = 0;

        bool Done() const { return blocks >= wanted; }
        /// Errors against bits; 0 before the first error.
        double Ratio() const { return bits > 0 ? errors / bits : 0; }
        std::wstring State() const;   ///< "3 of 10", at the end "Done"
        std::wstring Result() const;  ///< "2.3E-5"; "<1.0E-8" while there is no error among 10^8 bits
    };

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
