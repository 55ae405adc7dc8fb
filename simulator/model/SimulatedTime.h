#pragma once

namespace tvn2x {

/// Where the simulated receiver's time comes from, and how an operation spends some of it. Simulated seconds.
class SimulatedTime
{
public:
    virtual ~SimulatedTime() = default;

    /// Seconds since any fixed moment; never runs backwards.
    virtual double Seconds() = 0;
    /// Returns when that much simulated time has passed.
    virtual void Wait(double seconds) = 0;
};

}  // namespace tvn2x
