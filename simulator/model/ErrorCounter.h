#pragma once

#include "dvbc/ErroredTime.h"
#include "simulator/model/Acquisition.h"
#include "simulator/model/Reception.h"

namespace tvn2x {

/// Adds up the errored time that a reception leads to. A second is errored or it is not, as chance has it: seconds
/// count from tuning on, and each draws its own. No second of a real network is safe, so all three counters grow with
/// every moment, however little.
class ErrorCounter
{
public:
    /// Adds the time between two moments after tuning, in seconds.
    void Add(const Reception& reception, const Acquisition& acquisition, const SeededNoise& noise, double from,
             double to);
    void Reset() { time_ = {}; }
    const dvbc::ErroredTime& Time() const { return time_; }

private:
    dvbc::ErroredTime time_;
};

}  // namespace tvn2x
