#include <windows.h>

#include <atomic>
#include <cstdint>

#include "util/Clock.h"

namespace tvn2x {
namespace {

constexpr int64_t ticksPerSecond = 10'000'000;
constexpr int64_t ticksPerDay = 86400 * ticksPerSecond;

int64_t Ticks(const FILETIME& time)
{
    return static_cast<int64_t>(static_cast<uint64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime);
}

FILETIME FileTime(int64_t ticks)
{
    return {static_cast<DWORD>(ticks & 0xFFFFFFFF), static_cast<DWORD>(ticks >> 32)};
}

/// Windows 7 has only the clock that moves with the scheduler (15 ms).
using TimeReader = void(WINAPI*)(FILETIME*);
TimeReader FindTimeReader()
{
    const auto precise = GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "GetSystemTimePreciseAsFileTime");
    return precise != nullptr ? reinterpret_cast<TimeReader>(reinterpret_cast<void*>(precise))
                              : &GetSystemTimeAsFileTime;
}

class MachineClock : public Clock
{
public:
    double SecondsSinceMidnight() override
    {
        return static_cast<double>(LocalTicks() % ticksPerDay) / static_cast<double>(ticksPerSecond);
    }

    DateTime Now() override
    {
        const FILETIME time = FileTime(LocalTicks());
        SYSTEMTIME parts{};
        FileTimeToSystemTime(&time, &parts);
        return {parts.wYear, parts.wMonth, parts.wDay, parts.wHour, parts.wMinute, parts.wSecond};
    }

private:
    /// Local time in ticks since 1601. A scan polls the clock often and the zone is slow to ask for, so its offset is
    /// kept for the second it was asked in; threads that race here store offsets of the same second or its neighbour.
    int64_t LocalTicks()
    {
        FILETIME time{};
        read_(&time);
        const int64_t utc = Ticks(time);
        const int64_t second = utc / ticksPerSecond;
        if (offsetSecond_.load(std::memory_order_acquire) != second) {
            offset_.store(Offset(second * ticksPerSecond), std::memory_order_relaxed);
            offsetSecond_.store(second, std::memory_order_release);
        }
        return utc + offset_.load(std::memory_order_relaxed);
    }

    static int64_t Offset(int64_t utc)
    {
        const FILETIME time = FileTime(utc);
        SYSTEMTIME universal{};
        SYSTEMTIME local{};
        FILETIME localTime{};
        if (!FileTimeToSystemTime(&time, &universal) || !SystemTimeToTzSpecificLocalTime(nullptr, &universal, &local) ||
            !SystemTimeToFileTime(&local, &localTime))
            return 0;
        return Ticks(localTime) - utc;
    }

    const TimeReader read_ = FindTimeReader();
    std::atomic<int64_t> offset_{0};
    std::atomic<int64_t> offsetSecond_{-1};
};

}  // namespace

Clock& SystemClock()
{
    static MachineClock clock;
    return clock;
}

}  // namespace tvn2x
