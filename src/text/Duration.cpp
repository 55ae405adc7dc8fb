#include "text/Duration.h"

#include <algorithm>
#include <cmath>

namespace tvn2x {
namespace {

std::wstring TwoDigits(long long value)
{
    return (value < 10 ? L"0" : L"") + std::to_wstring(value);
}

}  // namespace

std::wstring DurationText(double seconds)
{
    const long long whole = std::llround(std::max(0.0, seconds));
    const long long minutes = whole / 60;
    const std::wstring hours = minutes >= 60 ? std::to_wstring(minutes / 60) + L":" : L"";
    return hours + (minutes >= 60 ? TwoDigits(minutes % 60) : std::to_wstring(minutes)) + L":" + TwoDigits(whole % 60);
}

}  // namespace tvn2x
