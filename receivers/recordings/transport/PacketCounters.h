#pragma once

#include <cstdint>

namespace tvn2x::recordings {

/// What has gone through the outer decoder since the demodulator was started. Counts only grow.
struct PacketCounters
{
    uint64_t packets = 0;        ///< that were decoded, right or not
    uint64_t failedPackets = 0;  ///< that had more wrong bytes than the code corrects
    uint64_t checkedBits = 0;    ///< before Reed-Solomon, of the packets that came out right
    uint64_t correctedBits = 0;  ///< of them, what the code put right: correctedBits / checkedBits is the BER
    uint64_t lostSymbols = 0;    ///< received without a frame lock, since the first one: without any transport stream
};

}  // namespace tvn2x::recordings
