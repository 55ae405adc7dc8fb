#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace tvn2x::recordings {

/// Undoes the convolutional interleaver of EN 300 429, clause 6.3: 12 branches that take the bytes in turn; what branch
/// j was delayed by there, 17 * j of its own bytes, the others are delayed by here.
class Deinterleaver
{
public:
    static constexpr size_t branches = 12;
    static constexpr size_t depth = 17;
    static constexpr size_t frameBytes = branches * depth;
    /// Frames that come out before the first one that went in whole.
    static constexpr size_t delayFrames = branches - 1;

    /// The next frame, which begins with its synchronisation byte, in place.
    void Process(std::span<uint8_t, frameBytes> frame);

private:
    /// A byte of branch j that went in waits for branches - 1 - j more frames: each frame holds 17 bytes of each
    /// branch.
    std::array<std::array<uint8_t, frameBytes>, branches> kept_{};
    size_t next_ = 0;
};

}  // namespace tvn2x::recordings
