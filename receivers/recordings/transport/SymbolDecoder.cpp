#include "receivers/recordings/transport/SymbolDecoder.h"

namespace tvn2x::recordings {

SymbolDecoder::SymbolDecoder(const Constellation& constellation, bool inverted) : lowerBits_(constellation.Bits() - 2)
{
    for (size_t cell = 0; cell < labels_.size(); ++cell) {
        const auto point = static_cast<Constellation::Cell>(cell);
        labels_[cell] = constellation.Label(inverted ? Constellation::Mirrored(point) : point);
    }
}

void SymbolDecoder::Decode(std::span<const Constellation::Cell> points, std::vector<uint8_t>& tuples)
{
    // What the bits A and B say by turns of 0, 90, 180 and 270 degrees.
    static constexpr std::array<uint8_t, 4> turns{0b00, 0b10, 0b11, 0b01};
    const size_t before = tuples.size();
    tuples.resize(before + points.size());
    uint8_t* out = tuples.data() + before;
    for (const Constellation::Cell point : points) {
        const unsigned label = labels_[point];
        const unsigned quadrant = label >> 6;
        *out++ = static_cast<uint8_t>(turns[(quadrant - quadrant_) & 3] << lowerBits_ | (label & 0x3F));
        quadrant_ = quadrant;
    }
}

}  // namespace tvn2x::recordings
