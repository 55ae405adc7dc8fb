#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace tvn2x::recordings {

/// Takes the energy dispersal off packets (EN 300 429, clause 6.1): the sequence of 1 + x^14 + x^15, loaded with
/// 100101010000000 behind each inverted synchronisation byte, that is every eight packets; it runs on through the
/// synchronisation bytes, which it leaves alone.
class EnergyDispersal
{
public:
    static constexpr size_t packetBytes = 188;
    static constexpr size_t groupPackets = 8;

    EnergyDispersal();

    /// The packet that is number `place` of its group of eight (0 has the inverted synchronisation byte), in place; its
    /// synchronisation byte is 0x47 then.
    void Remove(std::span<uint8_t, packetBytes> packet, size_t place) const;

private:
    std::array<uint8_t, packetBytes * groupPackets> sequence_{};
};

}  // namespace tvn2x::recordings
