#pragma once

#include <cstdint>

#include "receivers/recordings/transport/PacketCounters.h"

namespace tvn2x::recordings {

/// What the demodulator has locked to by now, in the order in which it comes about. A lock needs the ones before it.
struct Locks
{
    bool level = false;        ///< there is a signal to control the level of
    bool timing = false;       ///< the symbol rate was found, and is followed
    bool equaliser = false;    ///< echoes are taken out as far as they can be
    bool carrier = false;      ///< the constellation stands still and is of the order that was set
    bool frameSync = false;    ///< the synchronisation bytes were found
    bool reedSolomon = false;  ///< packets come out right
};

/// How the reception stands after the samples that were given so far.
struct DemodulatorState
{
    Locks locks;
    PacketCounters counters;
    uint64_t samples = 0;         ///< taken in since the start
    double frequencyOffset = 0;   ///< Hz, of the carrier from the centre; 0 without timing lock
    double symbolRateOffset = 0;  ///< ppm, of the symbol clock from the rate that was set; 0 without timing lock
    bool inverted = false;        ///< the spectrum is; known with the frame lock
    double channelPower = 0;      ///< of what lies in the channel, in the symbol rate's bandwidth; full scale is 1
    int acquisitions = 0;         ///< how often the search for the signal has begun
};

}  // namespace tvn2x::recordings
