#include "util/clsTimeout.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <limits>
#include <random>

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
        {80000, -1e-6F, 80000, tmoExpired},  // less than a step of the mark
        {86399.999, -1e-6F, 86399.999, tmoExpired},
        {0, -infinity, 0, tmoExpired},
        {86399, 5, 86399.9, tmoRunning},  // across midnight
        {86399, 5, day + 4, tmoRunning},
        {86399, 5, day + 4.01, tmoExpired},
        {86395, 5, 86399.99, tmoRunning},  // midnight sharp belongs to the next day
        {86395, 5, day, tmoRunning},
        {86395, 5, day + 0.01, tmoExpired},
        {86000, 1, 86001.003, tmoRunning},  // in single precision nearer to 86001 than to the next mark
        {86000, 1, 86001.005, tmoExpired},
        {86398, 1.5F, day + 0.05, tmoExpired},  // nobody asked between the end and midnight
        {1000, 5, day + 1002, tmoExpired},      // nor for a whole day
        {86399, 5, 2 * day + 1, tmoExpired},
        {1000, 90000, 90999, tmoRunning},  // more than a day, as long as the end wraps once only
        {1000, 90000, 91001, tmoExpired},
        {1000, 3 * 86400.0F, 2 * day - 1, tmoRunning},
        {1000, FLT_MAX, 2 * day - 1, tmoRunning},
        {1000, FLT_MAX, 2 * day, tmoExpired},
    };
    for (const auto& [start, seconds, then, state] : cases) {
        for (const double daysBefore : {0, 30}) {
            clock.Set(daysBefore * day + start);
            timeout.Interval(0);
            timeout.Start(seconds);
            EXPECT_EQ(timeout.Interval(), seconds);
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

/// Waits of every kind, the same ones in each run.
class RandomWaits
{
public:
    double Between(double low, double high) { return std::uniform_real_distribution<double>(low, high)(random_); }
    bool OneIn(int n) { return std::uniform_int_distribution(1, n)(random_) == 1; }

    /// 0 to 23 h, half of them at most 10 s.
    float Interval() { return static_cast<float>(OnAMark(Between(0, OneIn(2) ? 10 : 23 * 3600))); }

    /// Any time of the day, or one that puts the start or the end near midnight.
    double Start(float interval)
    {
        const double nearMidnight = day - Between(-0.1, 0.1) - (OneIn(2) ? interval : 0);
        const double start = OnAMark(OneIn(2) ? nearMidnight : Between(0, day));
        return start < 0 ? start + day : start < day ? start : start - day;
    }

    /// The seconds between two polls: from a hundredth of the wait to many times it, its very end, or a day.
    double Rhythm(float interval)
    {
        if (OneIn(10)) {
            return day;
        }
        return OneIn(4) ? std::max(interval / 4.0, 1e-3) : (interval + 1e-3) * std::pow(10, Between(-2, 3));
    }

private:
    /// Half of all times as single precision tells them at every hour of the day.
    double OnAMark(double seconds) { return OneIn(2) ? std::floor(seconds * 64) / 64 : seconds; }

    std::mt19937 random_{20240315};
};

/// The time at which a wait is found to be over, while somebody keeps setting the clock on the wall.
double EndOfWait(FakeClock& clock, float interval, double rhythm, RandomWaits& random)
{
    clsTimeout timeout(clock);
    timeout.Start(interval);
    const double last = clock.SteadySeconds() + interval + 2 * rhythm + 1;
    while (timeout.State() == tmoRunning && clock.SteadySeconds() < last) {
        clock.Advance(rhythm);
        clock.SetWallBy(random.Between(-2 * day, 2 * day));
    }
    return clock.SteadySeconds();
}

/// From any start the wait lasts its interval, to a step of single precision, and at most one poll more.
TEST(TimeoutProperty, EveryWaitEndsAfterItsIntervalAndAtMostOnePollLater)
{
    RandomWaits random;
    for (int turn = 0; turn < 20000; ++turn) {
        const float interval = random.Interval();
        const double start = random.Start(interval);
        const double rhythm = random.Rhythm(interval);
        const float startMark = static_cast<float>(start);  // as the timer reads it
        const float endMark = startMark + interval;
        const double step = std::nextafter(endMark, infinity) - endMark;
        FakeClock clock(start + day * (random.OneIn(2) ? 0 : std::floor(random.Between(0, 1000))));
        const double begin = clock.SteadySeconds() - start + startMark;
        const double lasted = EndOfWait(clock, interval, rhythm, random) - begin;
        ASSERT_GE(lasted, interval - step) << start << " + " << interval << " every " << rhythm;
        ASSERT_LE(lasted, interval + step + rhythm) << start << " + " << interval << " every " << rhythm;
    }
}

}  // namespace
}  // namespace tvn2x
