#include <windows.h>

#include <cstdint>

#include "util/Clock.h"

namespace tvn2x {
namespace {

SYSTEMTIME WallTime()
{
    SYSTEMTIME time{};
    GetLocalTime(&time);
    return time;
}

/// The performance counter neither fails nor stops for sleep on any system that we run on, and moves in fractions of a
/// microsecond, where the tick count moves with the scheduler (15 ms).
int64_t Ticks()
{
    LARGE_INTEGER ticks{};
    QueryPerformanceCounter(&ticks);
    return ticks.QuadPart;
}

double SecondsPerTick()
{
    LARGE_INTEGER ticksPerSecond{};
    QueryPerformanceFrequency(&ticksPerSecond);
    return 1.0 / static_cast<double>(ticksPerSecond.QuadPart);
}

double SinceMidnight(const SYSTEMTIME& time)
{
    return time.wHour * 3600 + time.wMinute * 60 + time.wSecond + time.wMilliseconds * 1e-3;
}

/// The clocks of the machine.
class MachineClock : public Clock
{
public:
    double SteadySeconds() override
    {
        return midnightToStart_ + static_cast<double>(Ticks() - start_) * secondsPerTick_;
    }

    DateTime Now() override
    {
        const SYSTEMTIME time = WallTime();
        return {time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond};
    }

private:
    const int64_t start_ = Ticks();
    const double secondsPerTick_ = SecondsPerTick();
    const double midnightToStart_ = SinceMidnight(WallTime());
};

}  // namespace

Clock& SystemClock()
{
    static MachineClock clock;
    return clock;
}

}  // namespace tvn2x
