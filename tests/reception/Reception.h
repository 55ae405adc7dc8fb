#pragma once

#include <optional>

#include "receivers/recordings/demodulator/Demodulator.h"
#include "support/sender/Transmitter.h"

namespace tvn2x::reception {

/// What to receive, and how.
struct Trial
{
    sender::Signal signal;
    double seconds = 0.06;
    double outage = 0;  ///< seconds without signal, in the middle
};

/// What came of it. Times are seconds of signal.
struct Reception
{
    recordings::DemodulatorState state;
    recordings::SignalReadings readings;
    std::optional<double> locked;    ///< until packets came out right
    std::optional<double> relocked;  ///< the same, from the outage's end
    uint64_t lost = 0;               ///< packets that failed or are missing between others
    double ber = 0;
};

Reception Receive(const Trial& trial);

/// Bit error ratio before Reed-Solomon of an ideal receiver: nearest neighbours, with the errors that each costs the
/// bits of its own symbol and, by the differential coding, of the next.
double ExactBer(int order, double noise);
/// The C/N that it has that ratio at.
double ExactNoise(int order, double ber);

}  // namespace tvn2x::reception
