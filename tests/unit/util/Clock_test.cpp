#include "util/Clock.h"

#include <gtest/gtest.h>

#include <cmath>

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

}  // namespace
}  // namespace tvn2x
