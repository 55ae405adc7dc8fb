#pragma once

#include "simulator/model/Acquisition.h"
#include "simulator/model/Reception.h"

namespace tvn2x {

/// Errored time of the transport stream in seconds.
struct ErroredTime
{
    double syncErrors = 0;   ///< with packet synchronisation errors
    double dataErrors = 0;   ///< with uncorrectable packets
    double unavailable = 0;  ///< without any transport stream
};

/// Integrates the errored time that a reception leads to. No second of a real network is safe, so all three counters
/// grow with every moment, however little.
class ErrorCounter
{
public:
    /// Adds the time between two moments after tuning, in seconds.
    void Add(const Reception& reception, const Acquisition& acquisition, double from, double to);
    void Reset() { time_ = {}; }
    const ErroredTime& Time() const { return time_; }

private:
    ErroredTime time_;
};

}  // namespace tvn2x
