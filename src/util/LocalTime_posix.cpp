#include <time.h>

#include <algorithm>

#include "util/LocalTime.h"

namespace tvn2x {

LocalTime LocalTimeOf(int64_t secondsSince1970)
{
    const time_t moment = secondsSince1970;
    tm parts{};
    localtime_r(&moment, &parts);
    // A leap second repeats the one before it.
    const int second = std::min(parts.tm_sec, 59);
    return {.time = {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min, second},
            .minutesAhead = static_cast<int32_t>(parts.tm_gmtoff / 60)};
}

}  // namespace tvn2x
