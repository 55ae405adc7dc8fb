#include "util/Clock.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <time.h>

#include <cmath>

#include "util/LocalTime.h"

namespace tvn2x {
namespace {

TEST(SystemClock, RunsOnFromTheTimeOfDayOnTheWall)
{
    constexpr double day = 86400;
    Clock& clock = SystemClock();
    const double before = clock.SteadySeconds();
    const DateTime wall = clock.Now();
    const double after = clock.SteadySeconds();
    EXPECT_LE(before, after);

    const double sinceMidnight = wall.hour * 3600 + wall.minute * 60 + wall.second;
    EXPECT_LE(std::fabs(std::remainder(sinceMidnight - before, day)), after - before + 1);

    while (clock.SteadySeconds() == after) {
    }
    EXPECT_LT(clock.SteadySeconds() - after, 60);
}

TEST(LocalTimeOf, FollowsTheRulesOfTheDate)
{
    const auto in = [](const char* zone, int64_t seconds) {
        setenv("TZ", zone, 1);
        tzset();
        return LocalTimeOf(seconds);
    };
    const char* const vienna = "CET-1CEST,M3.5.0,M10.5.0/3";
    EXPECT_EQ(in(vienna, 1795265945).time, (DateTime{2026, 11, 21, 13, 59, 5}));  // 12:59:05 UTC
    EXPECT_EQ(in(vienna, 1795265945).minutesAhead, 60);
    EXPECT_EQ(in(vienna, 1782345600).minutesAhead, 120);  // 2026-06-25
    EXPECT_EQ(in("NST3:30", 1795265945).minutesAhead, -210);
    in("UTC0", 0);
}

}  // namespace
}  // namespace tvn2x
