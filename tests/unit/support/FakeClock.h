#pragma once

#include <chrono>
#include <cmath>

#include "util/Clock.h"

namespace tvn2x {

/// A clock that stands still until it is told otherwise, or moves on by `step` seconds after each read. The clock on
/// the wall goes with it, from its midnight on 15 March 2024, until somebody sets it.
class FakeClock : public Clock
{
public:
    static constexpr double day = 86400;

    explicit FakeClock(double seconds = 36000) : seconds_(seconds) {}

    double SteadySeconds() override
    {
        const double now = seconds_;
        seconds_ += step;
        return now;
    }

    DateTime Now() override
    {
        using namespace std::chrono;
        const seconds wall(static_cast<long long>(std::floor(seconds_ + wallAhead_)));
        const sys_days midnight = floor<days>(sys_days(2024y / 3 / 15) + wall);
        const year_month_day date(midnight);
        const hh_mm_ss time(sys_days(2024y / 3 / 15) + wall - midnight);
        seconds_ += step;
        return {static_cast<int>(date.year()),
                static_cast<int>(static_cast<unsigned>(date.month())),
                static_cast<int>(static_cast<unsigned>(date.day())),
                static_cast<int>(time.hours().count()),
                static_cast<int>(time.minutes().count()),
                static_cast<int>(time.seconds().count())};
    }

    void Set(double seconds) { seconds_ = seconds; }
    void Advance(double seconds) { seconds_ += seconds; }
    /// Somebody sets the clock on the wall, by so many seconds.
    void SetWallBy(double seconds) { wallAhead_ += seconds; }

    double step = 0;  ///< seconds that pass after each read

private:
    double seconds_;
    double wallAhead_ = 0;
};

}  // namespace tvn2x
