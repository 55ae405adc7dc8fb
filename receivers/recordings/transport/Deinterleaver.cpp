#include "receivers/recordings/transport/Deinterleaver.h"

#include <algorithm>

namespace tvn2x::recordings {

void Deinterleaver::Process(std::span<uint8_t, frameBytes> frame)
{
    std::copy(frame.begin(), frame.end(), kept_[next_].begin());
    for (size_t branch = 0; branch < branches; ++branch) {
        const size_t delay = branches - 1 - branch;
        const auto& source = kept_[(next_ + branches - delay) % branches];
        for (size_t i = branch; i < frameBytes; i += branches) {
            frame[i] = source[i];
        }
    }
    next_ = (next_ + 1) % branches;
}

}  // namespace tvn2x::recordings
