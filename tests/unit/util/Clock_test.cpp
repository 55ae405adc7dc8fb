#include "util/Clock.h"

#include <gtest/gtest.h>

namespace tvn2x {
namespace {

TEST(SecondsBetween, CountsAcrossDaysMonthsAndLeapYears)
{
    EXPECT_EQ(SecondsBetween({2024, 3, 15, 10, 0, 0}, {2024, 3, 15, 10, 0, 1}), 1);
    EXPECT_EQ(SecondsBetween({2024, 2, 28, 23, 59, 59}, {2024, 3, 1, 0, 0, 0}), 86401);
    EXPECT_EQ(SecondsBetween({2023, 12, 31, 23, 59, 59}, {2024, 1, 1, 0, 0, 1}), 2);
    EXPECT_EQ(SecondsBetween({2024, 3, 15, 10, 0, 1}, {2024, 3, 15, 10, 0, 0}), -1);
    EXPECT_EQ(SecondsBetween({1900, 1, 1, 0, 0, 0}, {2100, 1, 1, 0, 0, 0}), 73049LL * 86400);
}

TEST(SystemClock, TellsOneTimeByBothFunctions)
{
    Clock& clock = SystemClock();
    const DateTime before = clock.Now();
    const double seconds = clock.SecondsSinceMidnight();
    const DateTime after = clock.Now();
    const long long elapsed = SecondsBetween(before, after);
    EXPECT_GE(elapsed, 0);

    DateTime midnight = seconds < 3600 ? after : before;
    midnight.hour = midnight.minute = midnight.second = 0;
    EXPECT_GE(static_cast<long long>(seconds), SecondsBetween(midnight, before));
    EXPECT_LE(static_cast<long long>(seconds), SecondsBetween(midnight, after));
}

}  // namespace
}  // namespace tvn2x
