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

/// Seconds between two local times, as a difference of calendar seconds (a fraction that has begun counts).
long long SecondsBetween(const DateTime& from, const DateTime& to);

/// Where the time comes from. SystemClock is the machine's; tests bring their own.
class Clock
{
public:
    virtual ~Clock() = default;

    /// Seconds since local midnight with their fraction, 0 <= value < 86400.
    virtual double SecondsSinceMidnight() = 0;
    virtual DateTime Now() = 0;
};

/// The machine's clock. One object for the process.
Clock& SystemClock();

}  // namespace tvn2x
