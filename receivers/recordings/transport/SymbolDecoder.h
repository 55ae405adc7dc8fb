#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "receivers/recordings/transport/Constellation.h"

namespace tvn2x::recordings {

/// From decided points to the bits that they carry (EN 300 429, clauses 7 and 8): the two highest of each symbol are in
/// how far the quadrant has turned since the symbol before, so that it does not matter which of four phases the carrier
/// recovery has come to rest at. An inverted spectrum is not among these: it needs a decoder of its own.
class SymbolDecoder
{
public:
    SymbolDecoder(const Constellation& constellation, bool inverted);

    /// Adds a tuple of bits for each point to `tuples`; the first bit is the highest.
    void Decode(std::span<const Constellation::Cell> points, std::vector<uint8_t>& tuples);

private:
    std::array<uint8_t, 256> labels_{};
    int lowerBits_;
    unsigned quadrant_ = 0;
};

}  // namespace tvn2x::recordings
