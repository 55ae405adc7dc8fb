#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <vector>

namespace tvn2x::sender {

using Packet = std::array<uint8_t, 188>;

/// Packets that tell their number, so that whoever gets them back knows which and whether it is whole.
Packet NumberedPacket(uint32_t number);

/// Energy dispersal, Reed-Solomon and interleaver of a DVB-C sender, bit by bit as the standard draws them.
class OuterEncoder
{
public:
    OuterEncoder();
    /// The 204 bytes that leave the interleaver while a packet goes in.
    std::vector<uint8_t> Encode(Packet packet);

private:
    void Disperse(Packet& packet);

    int packet_ = 0;
    std::array<int, 15> register_{};
    std::array<std::deque<uint8_t>, 12> branches_;
};

}  // namespace tvn2x::sender
