#pragma once

namespace tvn2x {

/// Local date and time of day, to the second.
struct DateTime
{
    int year = 0;
    int month = 0;  ///< 1..12
    int day = 0;    ///< 1..31
    int hour = 0;   ///< 0..23
    int minute = 0;
    int second = 0;

    bool operator==(const DateTime&) const = default;
};

/// Where the time comes from. SystemClock is the machine's; tests bring their own.
class Clock
{
public:
    virtual ~Clock() = default;

    /// For telling how much time has passed: seconds since the local midnight before the process first asked, beyond
    /// 86400 on later days. Runs on evenly, while the machine sleeps too, and never back, whoever sets the clock on the
    /// wall meanwhile.
    virtual double SteadySeconds() = 0;

    /// For time stamps: what the clock on the wall shows, which may be set at any moment.
    virtual DateTime Now() = 0;
};

/// The machine's clock. One object for the process, for every thread.
Clock& SystemClock();

}  // namespace tvn2x
