#pragma once

#include <chrono>
#include <cmath>

#include "util/Clock.h"

namespace tvn2x {

/// A clock that stands still until it is told otherwise, or moves on by `step` seconds after each read. Passing
/// midnight begins the next day.
class FakeClock : public Clock
{
public:
    static constexpr double day = 86400;

    explicit FakeClock(double seconds = 36000) : seconds_(seconds) {}

    double SecondsSinceMidnight() override
    {
        const double now = seconds_;
        Read();
        return now;
    }

    DateTime Now() override
    {
        const std::chrono::year_month_day date(date_);
        const int whole = static_cast<int>(seconds_);
        const DateTime now{static_cast<int>(date.year()),
                           static_cast<int>(static_cast<unsigned>(date.month())),
                           static_cast<int>(static_cast<unsigned>(date.day())),
                           whole / 3600,
                           whole / 60 % 60,
                           whole % 60};
        Read();
        return now;
    }

    void Set(double seconds) { seconds_ = seconds; }
    void Advance(double seconds)
    {
        seconds_ += seconds;
        const double days = std::floor(seconds_ / day);
        seconds_ -= days * day;
        date_ += std::chrono::days(static_cast<int>(days));
    }

    double step = 0;  ///< seconds that pass after each read
    int reads = 0;    ///< how often the clock was asked, by either function

private:
    void Read()
    {
        ++reads;
        Advance(step);
    }

    double seconds_;
    std::chrono::sys_days date_ = std::chrono::year(2024) / 3 / 15;
};

}  // namespace tvn2x
