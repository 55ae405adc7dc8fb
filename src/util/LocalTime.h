#pragma once

#include <cstdint>

#include "util/Clock.h"

namespace tvn2x {

/// What the clock on the wall shows at a moment.
struct LocalTime
{
    DateTime time;
    int32_t minutesAhead = 0;  ///< of UTC, by the time zone's rules for that date
};

/// The local time of a moment, by the machine's time zone. UTC where the system cannot tell.
LocalTime LocalTimeOf(int64_t secondsSince1970);

}  // namespace tvn2x
