#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "receivers/recordings/transport/Deinterleaver.h"

namespace tvn2x::recordings {

/// Finds the synchronisation bytes in the stream of bits, at any place of a byte, and cuts it into frames: the 204
/// bytes of a packet as they were sent, still interleaved (synchronisation bytes travel undelayed), the first one being
/// 0x47 or, once in eight, 0xB8 (EN 300 429, clauses 5 and 6).
class FrameSync
{
public:
    static constexpr size_t frameBytes = Deinterleaver::frameBytes;
    static constexpr size_t groupFrames = 8;

    /// A frame, and its place in the group of eight: 0 should have 0xB8.
    using Frame = std::array<uint8_t, frameBytes>;
    struct PlacedFrame
    {
        Frame bytes;
        size_t place;
    };

    /// `bits` is how many of each tuple count, the lowest ones.
    explicit FrameSync(int bits) : bits_(bits) {}

    bool Locked() const { return locked_; }
    /// Adds the frames that are complete now to `frames`.
    void Process(std::span<const uint8_t> tuples, std::vector<PlacedFrame>& frames);
    /// Looks for the synchronisation bytes anew.
    void Restart();

private:
    static constexpr size_t searchFrames = 12;  ///< as many synchronisation bytes are looked at in the search
    static constexpr int searchMisses = 3;      ///< as many of them may be wrong
    static constexpr size_t searchBytes = frameBytes * searchFrames + 1;
    static constexpr int missesToUnlock = 24;

    /// Where the first frame begins.
    struct Start
    {
        size_t byte = 0;
        int shift = 0;  ///< bits into that byte
        size_t place = 0;
        int misses = searchMisses + 1;
    };

    void TakeByte(uint8_t byte, std::vector<PlacedFrame>& frames);
    void Search(std::vector<PlacedFrame>& frames);
    Start FindStart() const;
    void CheckStart(Start& best, size_t byte, int shift) const;
    uint8_t ByteAt(size_t byte, int shift) const;
    void AddFrame(const Frame& frame, std::vector<PlacedFrame>& frames);

    int bits_;
    bool locked_ = false;
    uint64_t waiting_ = 0;  ///< bits that make no whole byte yet, the lowest ones
    int waitingBits_ = 0;
    size_t place_ = 0;
    int misses_ = 0;  ///< a miss counts 3, a match -1
    size_t filled_ = 0;
    Frame frame_{};
    std::vector<uint8_t> searched_;
};

}  // namespace tvn2x::recordings
