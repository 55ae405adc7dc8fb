#include "util/clsTimeout.h"

#include <gtest/gtest.h>

#include <limits>

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

TEST_F(Timeout, IsReadyUntilStarted)
{
    EXPECT_EQ(timeout.State(), tmoReady);
    EXPECT_EQ(timeout.Interval(), 0);
    EXPECT_EQ(clock.reads, 0);
}

TEST_F(Timeout, ExpiresOnlyBeyondItsEnd)
{
    timeout.Start(5);
    EXPECT_EQ(StateAt(1005), tmoRunning);
    EXPECT_EQ(StateAt(1005.001), tmoExpired);
}

TEST_F(Timeout, CrossesMidnight)
{
    clock.Set(86399);
    timeout.Start(5);
    EXPECT_EQ(StateAt(86399.9), tmoRunning);
    EXPECT_EQ(StateAt(4), tmoRunning);
    EXPECT_EQ(StateAt(4.01), tmoExpired);
}

TEST_F(Timeout, EndingAtMidnightSharpBelongsToTheNextDay)
{
    clock.Set(86395);
    timeout.Start(5);
    EXPECT_EQ(StateAt(86399.99), tmoRunning);
    EXPECT_EQ(StateAt(0), tmoRunning);
    EXPECT_EQ(StateAt(0.01), tmoExpired);
}

TEST_F(Timeout, StaysExpiredUntilStartOrClear)
{
    timeout.Start(1);
    EXPECT_EQ(StateAt(1002), tmoExpired);
    EXPECT_EQ(StateAt(500), tmoExpired);
    timeout.Start(0);
    EXPECT_EQ(timeout.State(), tmoRunning);
    timeout.Clear();
    EXPECT_EQ(StateAt(5000), tmoReady);
}

TEST_F(Timeout, ZeroKeepsTheInterval)
{
    timeout.Start(3);
    timeout.Start(0);
    EXPECT_EQ(timeout.Interval(), 3);
    EXPECT_EQ(StateAt(1003), tmoRunning);
    EXPECT_EQ(StateAt(1003.01), tmoExpired);
}

TEST_F(Timeout, NewIntervalDoesNotMoveARunningEnd)
{
    timeout.Start(3);
    timeout.Interval(100);
    EXPECT_EQ(timeout.Interval(), 100);
    EXPECT_EQ(StateAt(1003.01), tmoExpired);
}

TEST_F(Timeout, WithoutIntervalRunsForOneTick)
{
    timeout.Start(0);
    EXPECT_EQ(timeout.State(), tmoRunning);
    EXPECT_EQ(StateAt(1000.001), tmoExpired);
}

TEST_F(Timeout, NegativeIntervalExpiresAtOnce)
{
    timeout.Start(-1);
    EXPECT_EQ(timeout.Interval(), -1);
    EXPECT_EQ(timeout.State(), tmoExpired);
}

TEST_F(Timeout, MarksHaveSinglePrecision)
{
    clock.Set(86000);
    timeout.Start(1);
    EXPECT_EQ(StateAt(86001.003), tmoRunning);  // nearer to 86001 than to the next single
    EXPECT_EQ(StateAt(86001.005), tmoExpired);
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
