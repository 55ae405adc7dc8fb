#include "util/LocalTime.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <time.h>

namespace tvn2x {
namespace {

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
