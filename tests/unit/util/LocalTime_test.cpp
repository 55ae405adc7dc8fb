#include "util/LocalTime.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <time.h>

namespace tvn2x {
namespace {

/// The process's time zone until this goes.
class TimeZone
{
public:
    explicit TimeZone(const char* name) { Set(name); }
    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;
    ~TimeZone() { Set("UTC0"); }

private:
    static void Set(const char* name)
    {
        setenv("TZ", name, 1);
        tzset();
    }
};

TEST(LocalTimeOf, FollowsTheRulesOfTheDate)
{
    {
        const TimeZone vienna("CET-1CEST,M3.5.0,M10.5.0/3");
        const LocalTime winter = LocalTimeOf(1795265945);  // 2026-11-21 12:59:05 UTC
        EXPECT_EQ(winter.time, (DateTime{2026, 11, 21, 13, 59, 5}));
        EXPECT_EQ(winter.minutesAhead, 60);
        EXPECT_EQ(LocalTimeOf(1782345600).minutesAhead, 120);  // 2026-06-25
    }
    const TimeZone newfoundland("NST3:30");
    EXPECT_EQ(LocalTimeOf(1795265945).minutesAhead, -210);
}

}  // namespace
}  // namespace tvn2x
