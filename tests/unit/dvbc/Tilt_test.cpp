#include "dvbc/Tilt.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tvn2x::dvbc {
namespace {

TEST(LevelTilt, FollowsTheSquareRootOfTheFrequency)
{
    std::vector<LevelPoint> points;
    for (const double frequency : {625.0, 100.0, 400.0, 0.0, 225.0}) {
        points.push_back({frequency, 70 - 0.5 * std::sqrt(frequency)});
    }
    const auto tilt = FitTilt(points);
    EXPECT_NEAR(tilt->Tilt(), -7.5, 1e-9);
    EXPECT_NEAR(tilt->At(225), 62.5, 1e-9);
    EXPECT_NEAR(tilt->spread, 0, 1e-9);
    EXPECT_EQ(tilt->lowestFrequency, 100);
    EXPECT_EQ(tilt->highestFrequency, 625);
    EXPECT_FALSE(FitTilt({{100, 60}, {100, 61}, {100, 62}}));
    EXPECT_FALSE(FitTilt({{100, 60}, {200, 61}}));
    EXPECT_TRUE(FitTilt({{100, 60}, {200, 61}, {400, 62}}));
}

TEST(LevelTilt, TellsHowFarLevelsLieFromTheLine)
{
    EXPECT_NEAR(FitTilt({{100, 60}, {100, 62}, {400, 60}, {400, 62}})->spread, 1, 1e-9);
}

}  // namespace
}  // namespace tvn2x::dvbc
