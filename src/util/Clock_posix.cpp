#include <time.h>

#include <algorithm>

#include "util/Clock.h"

namespace tvn2x {
namespace {

/// The clocks of the machine.
class MachineClock : public Clock
{
public:
    double SteadySeconds() override { return midnightToStart_ + (SinceBoot() - start_); }

    DateTime Now() override
    {
        const tm parts = Local(WallTime());
        return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min, Second(parts)};
    }

private:
    static double SinceBoot()
    {
        timespec time{};
        clock_gettime(CLOCK_BOOTTIME, &time);
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
    }

    static timespec WallTime()
    {
        timespec time{};
        clock_gettime(CLOCK_REALTIME, &time);
        return time;
    }

    static tm Local(const timespec& time)
    {
        tm parts{};
        localtime_r(&time.tv_sec, &parts);
        return parts;
    }

    static double SinceMidnight(const timespec& time)
    {
        const tm parts = Local(time);
        return parts.tm_hour * 3600 + parts.tm_min * 60 + Second(parts) + static_cast<double>(time.tv_nsec) * 1e-9;
    }

    /// A leap second repeats the one before it: a day has 86400 of them.
    static int Second(const tm& parts) { return std::min(parts.tm_sec, 59); }

    const double start_ = SinceBoot();
    const double midnightToStart_ = SinceMidnight(WallTime());
};

}  // namespace

Clock& SystemClock()
{
    static MachineClock clock;
    return clock;
}

}  // namespace tvn2x
