#include "util/Clock.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <time.h>

#include <cmath>
#include <limits>

#include "support/FakeClock.h"
#include "support/RaisedBy.h"
#include "support/TestTable.h"
#include "support/TimeZone.h"
#include "util/LocalTime.h"
#include "util/clsTimeout.h"

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
    EXPECT_GT(wall.year, 2000);

    const double sinceMidnight = wall.hour * 3600 + wall.minute * 60 + wall.second;
    EXPECT_LE(std::fabs(std::remainder(sinceMidnight - before, day)), after - before + 1);

    while (clock.SteadySeconds() == after) {
    }
    EXPECT_LT(clock.SteadySeconds() - after, 60);
}

TEST(LocalTimeOf, FollowsTheRulesOfTheDate)
{
    const auto in = [](const char* zone, int64_t seconds) {
        const TimeZone rules(zone);
        return LocalTimeOf(seconds);
    };
    const char* const vienna = "CET-1CEST,M3.5.0,M10.5.0/3";
    EXPECT_EQ(in(vienna, 1795265945).time, (DateTime{2026, 11, 21, 13, 59, 5}));  // 12:59:05 UTC
    EXPECT_EQ(in(vienna, 1795265945).minutesAhead, 60);
    EXPECT_EQ(in(vienna, 1782345600).minutesAhead, 120);  // 2026-06-25
    EXPECT_EQ(in("NST3:30", 1795265945).minutesAhead, -210);
}

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr double day = FakeClock::day;

class Timeout : public testing::Test
{
protected:
    tmoStates StateAt(double seconds)
    {
        clock.Set(seconds);
        return timeout.State();
    }

    FakeClock clock{1000};
    clsTimeout timeout{clock};
};

TEST_F(Timeout, ExpiresOnlyBeyondItsEndOnWhicheverDay)
{
    for (const std::vector<std::string>& row : TestTable("timeouts.tsv", 5)) {
        const double start = std::stod(row[0]), then = std::stod(row[2]);
        const float seconds = std::stof(row[1]);
        for (const double daysBefore : {0, 30}) {
            clock.Set(daysBefore * day + start);
            timeout.Interval(0);
            timeout.Start(seconds);
            EXPECT_EQ(timeout.Interval(), seconds);
            clock.SetWallBy(day / 3);  // somebody keeps setting the clock on the wall
            EXPECT_EQ(StateAt(daysBefore * day + then), row[3] == "running" ? tmoRunning : tmoExpired)
                << testing::PrintToString(row);
        }
    }
}

TEST_F(Timeout, StaysExpiredUntilStartOrClearAndANewIntervalDoesNotMoveARunningEnd)
{
    EXPECT_EQ(timeout.State(), tmoReady);
    timeout.Start(1);
    EXPECT_EQ(StateAt(1002), tmoExpired);
    EXPECT_EQ(StateAt(500), tmoExpired);
    timeout.Start(0);
    EXPECT_EQ(timeout.State(), tmoRunning);
    timeout.Clear();
    EXPECT_EQ(StateAt(5000), tmoReady);

    clock.Set(1000);
    timeout.Start(3);
    timeout.Start(0);
    EXPECT_EQ(timeout.Interval(), 3) << "zero keeps it";
    timeout.Interval(100);
    EXPECT_EQ(timeout.Interval(), 100);
    EXPECT_EQ(StateAt(1003), tmoRunning);
    EXPECT_EQ(StateAt(1003.01), tmoExpired);
}

TEST_F(Timeout, IntervalWithoutAnEndIsRefusedAndChangesNothing)
{
    for (const float endless : {infinity, std::nanf(""), -std::nanf("")}) {
        clock.Set(1000);
        timeout.Start(3);
        EXPECT_EQ(RaisedBy([&] { timeout.Start(endless); }), L"380 clsTimeout.Start: Invalid property value");
        EXPECT_EQ(RaisedBy([&] { timeout.Interval(endless); }), L"380 clsTimeout.Interval: Invalid property value");
        EXPECT_EQ(timeout.Interval(), 3);
        EXPECT_EQ(StateAt(1003), tmoRunning);
        EXPECT_EQ(StateAt(1003.01), tmoExpired);
    }
}

}  // namespace
}  // namespace tvn2x
