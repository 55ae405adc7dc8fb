#include "util/clsTimeout.h"

#include <gtest/gtest.h>

#include "support/FakeClock.h"

namespace tvn2x {
namespace {

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
        {1000, 5, 1005, tmoRunning},       {1000, 5, 1005.001, tmoExpired},
        {1000, 0, 1000, tmoRunning},  // without an interval it runs for one tick
        {1000, 0, 1000.001, tmoExpired},   {1000, -1, 1000, tmoExpired},
        {86399, 5, 86399.9, tmoRunning},  // across midnight
        {86399, 5, 4, tmoRunning},         {86399, 5, 4.01, tmoExpired},
        {86395, 5, 86399.99, tmoRunning},  // midnight sharp belongs to the next day
        {86395, 5, 0, tmoRunning},         {86395, 5, 0.01, tmoExpired},
        {86000, 1, 86001.003, tmoRunning},  // in single precision nearer to 86001 than to the next mark
        {86000, 1, 86001.005, tmoExpired},
    };
    for (const auto& [start, seconds, then, state] : cases) {
        clock.Set(start);
        timeout.Interval(0);
        timeout.Start(seconds);
        EXPECT_EQ(timeout.Interval(), seconds);
        EXPECT_EQ(StateAt(then), state) << start << " + " << seconds << " at " << then;
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

TEST_F(Timeout, ReadsTheClockOncePerComparison)
{
    timeout.Start(1);
    clock.reads = 0;
    timeout.State();
    EXPECT_EQ(clock.reads, 2);
    // The second reading is past the end, the first is not yet.
    clock.Set(1000.9);
    clock.step = 0.2;
    EXPECT_EQ(timeout.State(), tmoRunning);
    EXPECT_EQ(timeout.State(), tmoExpired);
}

}  // namespace
}  // namespace tvn2x
