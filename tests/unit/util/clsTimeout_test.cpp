#include "util/clsTimeout.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "support/FakeClock.h"
#include "support/RaisedBy.h"
#include "support/TestTable.h"

namespace tvn2x {
namespace {

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
