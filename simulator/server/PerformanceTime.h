#pragma once

#include <windows.h>

#include "simulator/model/SimulatedTime.h"

namespace tvn2x {

/// Time by the machine's performance counter.
class PerformanceTime final : public SimulatedTime
{
public:
    PerformanceTime();
    PerformanceTime(const PerformanceTime&) = delete;
    PerformanceTime& operator=(const PerformanceTime&) = delete;
    ~PerformanceTime() override;

    double Seconds() override;
    void Wait(double seconds) override;
    double Scale() const override { return scale_; }
    double SecondsOfCalendar() override;

    void Scale(double scale) { scale_ = scale; }

private:
    HANDLE timer_;  ///< null where the system has none
    double frequency_;
    double scale_ = 1;
};

}  // namespace tvn2x
