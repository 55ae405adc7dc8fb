#include "util/Clock.h"

#include <chrono>

namespace tvn2x {
namespace {

std::chrono::sys_seconds Seconds(const DateTime& time)
{
    using namespace std::chrono;
    const sys_days date =
        year(time.year) / month(static_cast<unsigned>(time.month)) / day(static_cast<unsigned>(time.day));
    return date + hours(time.hour) + minutes(time.minute) + seconds(time.second);
}

}  // namespace

long long SecondsBetween(const DateTime& from, const DateTime& to)
{
    return (Seconds(to) - Seconds(from)).count();
}

}  // namespace tvn2x
