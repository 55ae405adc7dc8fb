#include <windows.h>

#include "util/LocalTime.h"

namespace tvn2x {
namespace {

constexpr int64_t ticksPerSecond = 10'000'000;
constexpr int64_t secondsFrom1601To1970 = 11'644'473'600;

int64_t SecondsOf(const SYSTEMTIME& time)
{
    FILETIME file{};
    SystemTimeToFileTime(&time, &file);
    const auto ticks = static_cast<int64_t>(file.dwHighDateTime) << 32 | file.dwLowDateTime;
    return ticks / ticksPerSecond - secondsFrom1601To1970;
}

}  // namespace

LocalTime LocalTimeOf(int64_t secondsSince1970)
{
    const int64_t ticks = (secondsSince1970 + secondsFrom1601To1970) * ticksPerSecond;
    const FILETIME file{static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
    SYSTEMTIME utc{};
    SYSTEMTIME local{};
    FileTimeToSystemTime(&file, &utc);
    if (!SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local)) {
        local = utc;
    }
    return {.time = {local.wYear, local.wMonth, local.wDay, local.wHour, local.wMinute, local.wSecond},
            .minutesAhead = static_cast<int32_t>((SecondsOf(local) - secondsSince1970) / 60)};
}

}  // namespace tvn2x
