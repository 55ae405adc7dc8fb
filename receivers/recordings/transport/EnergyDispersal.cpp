#include "receivers/recordings/transport/EnergyDispersal.h"

namespace tvn2x::recordings {

EnergyDispersal::EnergyDispersal()
{
    unsigned shift = 0b000000010101001;  // the first bit of 100101010000000 is the lowest here
    for (size_t i = 1; i < sequence_.size(); ++i) {
        unsigned byte = 0;
        for (int bit = 0; bit < 8; ++bit) {
            const unsigned next = (shift >> 13 ^ shift >> 14) & 1;
            shift = (shift << 1 | next) & 0x7FFF;
            byte = byte << 1 | next;
        }
        sequence_[i] = static_cast<uint8_t>(byte);
    }
}

void EnergyDispersal::Remove(std::span<uint8_t, packetBytes> packet, size_t place) const
{
    packet[0] = 0x47;
    const uint8_t* const sequence = &sequence_[place * packetBytes];
    for (size_t i = 1; i < packetBytes; ++i) {
        packet[i] = static_cast<uint8_t>(packet[i] ^ sequence[i]);
    }
}

}  // namespace tvn2x::recordings
