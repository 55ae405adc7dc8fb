#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "receivers/recordings/transport/Deinterleaver.h"
#include "receivers/recordings/transport/EnergyDispersal.h"
#include "receivers/recordings/transport/FrameSync.h"
#include "receivers/recordings/transport/PacketCounters.h"
#include "receivers/recordings/transport/ReedSolomon.h"
#include "receivers/recordings/transport/SymbolDecoder.h"

namespace tvn2x::recordings {

/// Takes transport packets: 188 bytes each, in order. `failed` ones are as received, with the error indicator set.
class PacketSink
{
public:
    virtual ~PacketSink() = default;
    virtual void Take(std::span<const uint8_t> packet, bool failed) = 0;
};

/// From decided points to transport packets: both senses of the spectrum are tried until one of them shows the
/// synchronisation bytes; then deinterleaver, Reed-Solomon and energy dispersal (EN 300 429, clauses 5 to 7).
class TransportDecoder
{
public:
    /// `sink` may be null.
    TransportDecoder(const Constellation& constellation, PacketSink* sink);

    /// The next points. `certain` is whether the carrier is locked: what is decided without it goes nowhere.
    void Process(std::span<const Constellation::Cell> points, bool certain);

    bool FrameLocked() const { return locked_ >= 0; }
    bool PacketsLocked() const { return packetsLocked_; }
    bool Inverted() const { return locked_ == 1; }
    const PacketCounters& Counters() const { return counters_; }

private:
    /// One sense of the spectrum.
    struct Sense
    {
        SymbolDecoder symbols;
        FrameSync sync;
    };

    void ProcessSense(size_t sense, std::span<const Constellation::Cell> points);
    void Lock(size_t sense);
    void Unlock();
    void TakeFrame(FrameSync::PlacedFrame& frame);
    void CountPacket(bool right);

    static constexpr int goodToLock = 4;     ///< packets that come out right in a row
    static constexpr int badToUnlock = 24;   ///< more failed packets than right ones
    static constexpr int badToRestart = 96;  ///< then the frames are cut at a wrong place

    std::array<Sense, 2> senses_;  ///< the second one is the inverted
    int locked_ = -1;              ///< which of them
    PacketSink* sink_;
    Deinterleaver deinterleaver_;
    ReedSolomon reedSolomon_;
    EnergyDispersal dispersal_;
    PacketCounters counters_;
    size_t framesToSkip_ = 0;
    bool packetsLocked_ = false;
    int good_ = 0;
    int bad_ = 0;
    std::vector<uint8_t> tuples_;
    std::vector<FrameSync::PlacedFrame> frames_;
};

}  // namespace tvn2x::recordings
