#pragma once

#include <cstdint>

namespace tvn2x::recordings {

/// What a receiver is set to: the modulation that a channel is expected to have (EN 300 429, clauses 7 and 8).
struct SignalParameters
{
    int32_t order;      ///< of QAM: 16, 32, 64, 128 or 256
    double symbolRate;  ///< symbols per second, 0.87e6 to 7e6
    double rollOff;     ///< of the root-raised-cosine filter, 0.1 to 0.25
};

}  // namespace tvn2x::recordings
