#pragma once

#include <array>
#include <vector>

#include "simulator/model/Reception.h"
#include "simulator/model/SeededNoise.h"

namespace tvn2x {

/// Which locks the receiver has how long after tuning. Elapsed times are seconds since tuning.
///
/// Every answer is a function of the elapsed time alone: after tuning the steps follow one another; an outage takes its
/// step and all later ones away, and they follow one another again when it ends.
class Acquisition
{
public:
    Acquisition() = default;
    Acquisition(const Reception& reception, const SeededNoise& noise);

    bool Locked(Stage stage, double elapsed) const;
    /// Seconds without that lock between two moments.
    double UnlockedTime(Stage stage, double from, double to) const;
    bool ReferenceLost(double elapsed) const;
    /// Seconds from tuning to the last lock that this signal lets the receiver have, outages apart.
    double Duration() const;

private:
    /// Seconds after tuning, from `from` up to `to`.
    struct Interval
    {
        double from;
        double to;
    };

    double TimeOf(Stage first, Stage last) const;

    std::array<double, stageCount> durations_{};
    /// For each stage, the times without lock: ordered, apart from one another.
    std::array<std::vector<Interval>, stageCount> unlocked_;
    std::vector<Interval> referenceLost_;
    int stagesReached_ = 0;
};

}  // namespace tvn2x
