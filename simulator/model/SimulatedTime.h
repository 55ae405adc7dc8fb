#pragma once

namespace tvn2x {

/// Where the simulated receiver's time comes from, and how an operation spends some of it. Real seconds: what the
/// receiver counts, and its client with it, knows no scale. Waiting alone does.
class SimulatedTime
{
public:
    virtual ~SimulatedTime() = default;

    /// Seconds since any fixed moment; never runs backwards.
    virtual double Seconds() = 0;
    /// Returns when that much time has passed.
    virtual void Wait(double seconds) = 0;
    /// Seconds that a second of waiting takes, 1 at most.
    virtual double Scale() const = 0;
    /// Seconds since the beginning of 1970, UTC: for what changes with the hour. May be set.
    virtual double SecondsOfCalendar() = 0;
};

}  // namespace tvn2x
