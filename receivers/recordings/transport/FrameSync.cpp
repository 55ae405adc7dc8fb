#include "receivers/recordings/transport/FrameSync.h"

#include <algorithm>

namespace tvn2x::recordings {
namespace {

constexpr uint8_t syncByte = 0x47;
constexpr uint8_t invertedSyncByte = 0xB8;

}  // namespace

void FrameSync::Restart()
{
    locked_ = false;
    filled_ = 0;
    searched_.clear();
}

void FrameSync::Process(std::span<const uint8_t> tuples, std::vector<PlacedFrame>& frames)
{
    for (const uint8_t tuple : tuples) {
        waiting_ = waiting_ << bits_ | tuple;
        waitingBits_ += bits_;
        if (waitingBits_ >= 8) {
            waitingBits_ -= 8;
            TakeByte(static_cast<uint8_t>(waiting_ >> waitingBits_), frames);
        }
    }
}

void FrameSync::TakeByte(uint8_t byte, std::vector<PlacedFrame>& frames)
{
    if (!locked_) {
        searched_.push_back(byte);
        if (searched_.size() == searchBytes) {
            Search(frames);
        }
        return;
    }
    frame_[filled_++] = byte;
    if (filled_ == frameBytes) {
        filled_ = 0;
        AddFrame(frame_, frames);
    }
}

uint8_t FrameSync::ByteAt(size_t byte, int shift) const
{
    return static_cast<uint8_t>((searched_[byte] << 8 | searched_[byte + 1]) >> (8 - shift));
}

/// Takes the place as the best start if fewer bytes are wrong there. One inverted byte says where the group begins;
/// those that come eight frames apart have to agree with it.
void FrameSync::CheckStart(Start& best, size_t byte, int shift) const
{
    std::array<int, groupFrames> inverted{};
    std::array<int, groupFrames> upright{};
    for (size_t frame = 0; frame < searchFrames; ++frame) {
        const uint8_t value = ByteAt(byte + frame * frameBytes, shift);
        upright[frame % groupFrames] += value == syncByte;
        inverted[frame % groupFrames] += value == invertedSyncByte;
    }
    int allUpright = 0;
    for (const int count : upright) {
        allUpright += count;
    }
    for (size_t first = 0; first < groupFrames; ++first) {
        const int right = allUpright - upright[first] + inverted[first];
        const int misses = static_cast<int>(searchFrames) - right;
        if (inverted[first] > 0 && misses < best.misses) {
            best = {byte, shift, (groupFrames - first) % groupFrames, misses};
        }
    }
}

FrameSync::Start FrameSync::FindStart() const
{
    Start best;
    for (size_t byte = 0; byte < frameBytes; ++byte) {
        for (int shift = 0; shift < 8; ++shift) {
            CheckStart(best, byte, shift);
        }
    }
    return best;
}

void FrameSync::Search(std::vector<PlacedFrame>& frames)
{
    const Start start = FindStart();
    if (start.misses > searchMisses) {
        searched_.erase(searched_.begin(), searched_.end() - static_cast<ptrdiff_t>(searchBytes / 2));
        return;
    }
    const std::vector<uint8_t> held = std::move(searched_);
    searched_.clear();
    locked_ = true;
    place_ = start.place;
    misses_ = 0;
    filled_ = 0;
    // From here on a byte begins `shift` bits later than before: what is held is cut anew, and so is what waits.
    for (size_t i = start.byte; i + 1 < held.size(); ++i) {
        TakeByte(static_cast<uint8_t>((held[i] << 8 | held[i + 1]) >> (8 - start.shift)), frames);
    }
    waitingBits_ += 8 - start.shift;
    if (waitingBits_ >= 8) {
        waitingBits_ -= 8;
        TakeByte(static_cast<uint8_t>(waiting_ >> waitingBits_), frames);
    }
}

void FrameSync::AddFrame(const Frame& frame, std::vector<PlacedFrame>& frames)
{
    frames.push_back({frame, place_});
    misses_ = frame[0] == (place_ == 0 ? invertedSyncByte : syncByte) ? std::max(misses_ - 1, 0) : misses_ + 3;
    place_ = (place_ + 1) % groupFrames;
    if (misses_ >= missesToUnlock) {
        Restart();
    }
}

}  // namespace tvn2x::recordings
