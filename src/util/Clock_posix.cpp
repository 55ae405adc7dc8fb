#include <time.h>

#include <algorithm>

#include "util/Clock.h"

namespace tvn2x {
namespace {

class MachineClock : public Clock
{
public:
    double SecondsSinceMidnight() override
    {
        timespec now{};
        const tm parts = Local(now);
        return Whole(parts) + static_cast<double>(now.tv_nsec) * 1e-9;
    }

    DateTime Now() override
    {
        timespec now{};
        const tm parts = Local(now);
        return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min, Second(parts)};
    }

private:
    static tm Local(timespec& now)
    {
        clock_gettime(CLOCK_REALTIME, &now);
        tm parts{};
        localtime_r(&now.tv_sec, &parts);
        return parts;
    }

    /// A leap second repeats the one before it: a day has 86400 of them.
    static int Second(const tm& parts) { return std::min(parts.tm_sec, 59); }
    static int Whole(const tm& parts) { return parts.tm_hour * 3600 + parts.tm_min * 60 + Second(parts); }
};

}  // namespace

Clock& SystemClock()
{
    static MachineClock clock;
    return clock;
}

}  // namespace tvn2x
