#pragma once

#include <optional>

#include "dvbc/ErroredTime.h"
#include "receivers/recordings/demodulator/DemodulatorState.h"

namespace tvn2x::recordings {

/// Errored time of a played channel, by its client's clock. Time without a stream is errored. With one, a second in
/// which a packet failed, or its synchronisation was lost for a moment, is errored from its beginning to its end. All
/// three grow with every moment, however little, because a client takes counters that stand still for those of no
/// stream.
class ErroredSeconds
{
public:
    /// Takes in what has become of the channel up to a moment, in seconds. The first moment counts nothing.
    void Add(double now, const DemodulatorState& state);
    /// Counts from 0 on.
    void Reset();
    const dvbc::ErroredTime& Time() const { return time_; }

private:
    /// One of the counters, and the present second.
    struct Kind
    {
        double dvbc::ErroredTime::*counter;
        bool isErrored = false;
        double passed = 0;  ///< of the present second since a reset, while it is not errored
    };
    void Count(Kind& kind, bool isLost, bool isHit, double from, double to);

    dvbc::ErroredTime time_;
    Kind sync_{&dvbc::ErroredTime::syncErrors};
    Kind data_{&dvbc::ErroredTime::dataErrors};
    std::optional<double> last_;  ///< the moment before
    bool wasLost_ = true;
    PacketCounters counted_;
};

}  // namespace tvn2x::recordings
