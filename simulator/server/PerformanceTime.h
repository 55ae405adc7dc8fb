#pragma once

#include "simulator/model/SimulatedTime.h"

namespace tvn2x {

/// Simulated time by the machine's performance counter.
class PerformanceTime final : public SimulatedTime
{
public:
    PerformanceTime();

    double Seconds() override;
    void Wait(double seconds) override;

    /// Real seconds per simulated second. A change lets the simulated time go on from where it is.
    double Scale() const { return scale_; }
    void Scale(double scale);

private:
    double RealSeconds() const;

    double frequency_;
    double scale_ = 1;
    double realMark_ = 0;
    double simulatedMark_ = 0;
};

}  // namespace tvn2x
