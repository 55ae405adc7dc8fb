#include "simulator/server/PerformanceTime.h"

#include <windows.h>

namespace tvn2x {

PerformanceTime::PerformanceTime()
{
    LARGE_INTEGER frequency;
    QueryPerformanceFrequency(&frequency);
    frequency_ = static_cast<double>(frequency.QuadPart);
    realMark_ = RealSeconds();
}

double PerformanceTime::RealSeconds() const
{
    LARGE_INTEGER counter;
    QueryPerformanceCounter(&counter);
    return static_cast<double>(counter.QuadPart) / frequency_;
}

double PerformanceTime::Seconds()
{
    return simulatedMark_ + (RealSeconds() - realMark_) / scale_;
}

void PerformanceTime::Wait(double seconds)
{
    constexpr double sleepable = 0.003;  // seconds; below it the system sleeps far too long
    const double end = RealSeconds() + seconds * scale_;
    for (double left = end - RealSeconds(); left > 0; left = end - RealSeconds()) {
        if (left > sleepable) {
            Sleep(static_cast<DWORD>((left - sleepable / 2) * 1000));
        } else {
            YieldProcessor();
        }
    }
}

void PerformanceTime::Scale(double scale)
{
    simulatedMark_ = Seconds();
    realMark_ = RealSeconds();
    scale_ = scale;
}

}  // namespace tvn2x
