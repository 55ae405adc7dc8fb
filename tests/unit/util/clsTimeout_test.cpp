#include "util/clsTimeout.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>

#include "support/FakeClock.h"
#include "support/RaisedBy.h"

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
    struct
    {
        double start;
        float seconds;
        double then;
        tmoStates state;
    } const cases[] = {
        {1000, 5, 1005, tmoRunning},
        {1000, 5, 1005.001, tmoExpired},
        {1000, 0, 1000, tmoRunning},  // without an interval it runs for one tick
        {1000, 0, 1000.001, tmoExpired},
        {1000, -1, 1000, tmoExpired},
        {86399.999, -1e-6F, 86399.999, tmoExpired},  // less than a step of the mark
        {0, -infinity, 0, tmoExpired},
        {86399, 5, day + 4, tmoRunning},  // across midnight
        {86399, 5, day + 4.01, tmoExpired},
        {86395, 5, day, tmoRunning},  // midnight sharp belongs to the next day
        {86395, 5, day + 0.01, tmoExpired},
        {86000, 1, 86001.003, tmoRunning},  // in single precision nearer to 86001 than to the next mark
        {86000, 1, 86001.005, tmoExpired},
        {86398, 1.5F, day + 0.05, tmoExpired},  // nobody asked between the end and midnight
        {1000, 5, day + 1002, tmoExpired},      // nor for a whole day
        {86399, 5, 2 * day + 1, tmoExpired},
        {1000, 90000, 90999, tmoRunning},  // more than a day, as long as the end wraps once only
        {1000, 90000, 91001, tmoExpired},
        {1000, 3 * 86400.0F, 2 * day - 1, tmoRunning},
        {1000, FLT_MAX, 2 * day, tmoExpired},
    };
    for (const auto& [start, seconds, then, state] : cases) {
        for (const double daysBefore : {0, 30}) {
            clock.Set(daysBefore * day + start);
            timeout.Interval(0);
            timeout.Start(seconds);
            EXPECT_EQ(timeout.Interval(), seconds);
            clock.SetWallBy(day / 3);  // somebody keeps setting the clock on the wall
            EXPECT_EQ(StateAt(daysBefore * day + then), state) << start << " + " << seconds << " at " << then;
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
