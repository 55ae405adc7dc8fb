#pragma once

#include "receiver_model/SimulatedTime.h"

namespace tvn2x {

/// Time that passes only when it is told to.
class FakeTime : public SimulatedTime
{
public:
    double Seconds() override { return now; }
    void Wait(double seconds) override { now += seconds; }

    double now = 1000;
};

}  // namespace tvn2x
