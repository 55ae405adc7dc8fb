#include "receivers/recordings/transport/TransportDecoder.h"

#include <algorithm>
#include <optional>

namespace tvn2x::recordings {

TransportDecoder::TransportDecoder(const Constellation& constellation, PacketSink* sink)
    : senses_{Sense{SymbolDecoder(constellation, false), FrameSync(constellation.Bits())},
              Sense{SymbolDecoder(constellation, true), FrameSync(constellation.Bits())}},
      sink_(sink)
{
}

void TransportDecoder::Process(std::span<const Constellation::Cell> points, bool certain)
{
    if (!certain) {
        if (FrameLocked()) {
            Unlock();
        }
        for (Sense& sense : senses_) {
            sense.sync.Restart();
        }
    }
    if ((!certain || !FrameLocked()) && counters_.packets > 0) {
        counters_.lostSymbols += points.size();
    }
    if (!certain) {
        return;
    }
    for (size_t sense = 0; sense < senses_.size(); ++sense) {
        if (locked_ < 0 || static_cast<size_t>(locked_) == sense) {
            ProcessSense(sense, points);
        }
    }
}

void TransportDecoder::ProcessSense(size_t sense, std::span<const Constellation::Cell> points)
{
    tuples_.clear();
    frames_.clear();
    senses_[sense].symbols.Decode(points, tuples_);
    senses_[sense].sync.Process(tuples_, frames_);
    if (!frames_.empty() && !FrameLocked()) {
        Lock(sense);
    }
    for (FrameSync::PlacedFrame& frame : frames_) {
        TakeFrame(frame);
    }
    const bool cutWrongly = bad_ >= badToRestart;
    if (FrameLocked() && (cutWrongly || !senses_[sense].sync.Locked())) {
        Unlock();
    }
}

void TransportDecoder::Lock(size_t sense)
{
    locked_ = static_cast<int>(sense);
    framesToSkip_ = Deinterleaver::delayFrames;
    good_ = 0;
    bad_ = 0;
}

void TransportDecoder::Unlock()
{
    locked_ = -1;
    packetsLocked_ = false;
    for (Sense& sense : senses_) {
        sense.sync.Restart();
    }
}

void TransportDecoder::TakeFrame(FrameSync::PlacedFrame& frame)
{
    deinterleaver_.Process(frame.bytes);
    if (framesToSkip_ > 0) {
        --framesToSkip_;
        return;
    }
    const std::optional<int> corrected = reedSolomon_.Correct(frame.bytes);
    CountPacket(corrected.has_value());
    if (corrected) {
        counters_.checkedBits += FrameSync::frameBytes * 8;
        counters_.correctedBits += static_cast<uint64_t>(*corrected);
    }
    if (sink_ == nullptr) {
        return;
    }
    const std::span<uint8_t, EnergyDispersal::packetBytes> packet(frame.bytes.data(), EnergyDispersal::packetBytes);
    const size_t place = (frame.place + FrameSync::groupFrames - Deinterleaver::delayFrames % FrameSync::groupFrames) %
                         FrameSync::groupFrames;
    dispersal_.Remove(packet, place);
    if (!corrected) {
        packet[1] |= 0x80;
    }
    sink_->Take(packet, !corrected);
}

void TransportDecoder::CountPacket(bool right)
{
    ++counters_.packets;
    counters_.failedPackets += right ? 0 : 1;
    good_ = right ? good_ + 1 : 0;
    bad_ = right ? std::max(bad_ - 1, 0) : bad_ + 1;
    if (packetsLocked_) {
        packetsLocked_ = bad_ < badToUnlock;
    } else if (good_ >= goodToLock) {
        packetsLocked_ = true;
        bad_ = 0;
    }
}

}  // namespace tvn2x::recordings
