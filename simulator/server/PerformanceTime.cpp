#include "simulator/server/PerformanceTime.h"

#include <chrono>
#include <cmath>

namespace tvn2x {
namespace {

constexpr DWORD highResolution = 0x00000002;  // the timer is not held to the system's tick; since Windows 10

HANDLE CreateTimer()
{
    const HANDLE timer = CreateWaitableTimerExW(nullptr, nullptr, highResolution, TIMER_ALL_ACCESS);
    return timer ? timer : CreateWaitableTimerExW(nullptr, nullptr, 0, TIMER_ALL_ACCESS);
}

}  // namespace

PerformanceTime::PerformanceTime() : timer_(CreateTimer())
{
    LARGE_INTEGER frequency;
    QueryPerformanceFrequency(&frequency);
    frequency_ = static_cast<double>(frequency.QuadPart);
}

PerformanceTime::~PerformanceTime()
{
    if (timer_) {
        CloseHandle(timer_);
    }
}

double PerformanceTime::Seconds()
{
    LARGE_INTEGER counter;
    QueryPerformanceCounter(&counter);
    return static_cast<double>(counter.QuadPart) / frequency_;
}

void PerformanceTime::Wait(double seconds)
{
    constexpr double sleepable = 0.0005;  // seconds; below it no system wakes a thread in time
    constexpr double ticks = 1e7;         // a second, of a waitable timer
    const double end = Seconds() + seconds;
    if (timer_ && seconds >= sleepable) {
        LARGE_INTEGER due;
        due.QuadPart = -std::llround(seconds * ticks);
        if (SetWaitableTimer(timer_, &due, 0, nullptr, nullptr, FALSE)) {
            WaitForSingleObject(timer_, INFINITE);
        }
    }
    while (Seconds() < end) {
        YieldProcessor();
    }
}

double PerformanceTime::SecondsOfCalendar()
{
    return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

}  // namespace tvn2x
