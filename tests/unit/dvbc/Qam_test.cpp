#include "dvbc/Qam.h"

#include <gtest/gtest.h>

#include <array>
#include <cfenv>
#include <cmath>
#include <limits>

#include "dvbc/Decibels.h"
#include "dvbc/Impairments.h"
#include "dvbc/LevelUnit.h"
#include "dvbc/Tilt.h"

namespace tvn2x::dvbc {
namespace {

TEST(Qam, NeedsTheKnownEsN0ForABitErrorRatio)
{
    const std::tuple<int32_t, double, double, double> rows[] = {{4, 10.98, 11.41, 13.54},   {16, 17.78, 18.23, 20.42},
                                                                {32, 20.69, 21.15, 23.38},  {64, 23.84, 24.30, 26.56},
                                                                {128, 26.66, 27.13, 29.42}, {256, 29.76, 30.23, 32.55}};
    for (const auto& [order, at2e4, at1e4, at1e6] : rows) {
        EXPECT_NEAR(RequiredEsN0(order, failureBer), at2e4, 0.006) << order;
        EXPECT_NEAR(RequiredEsN0(order, 1e-4), at1e4, 0.006) << order;
        EXPECT_NEAR(RequiredEsN0(order, 1e-6), at1e6, 0.006) << order;
        EXPECT_TRUE(IsOrderOfQam(order));
    }
    EXPECT_FALSE(IsOrderOfQam(0));
}

TEST(Impairments, LeaveTheKnownMerEach)
{
    EXPECT_NEAR(RatioOfErrorPower(JitterPower(0.5)), 41.184, 0.005);
    EXPECT_NEAR(RatioOfErrorPower(ImbalancePower(2)), 40.0, 0.05);
    EXPECT_NEAR(RatioOfErrorPower(QuadraturePower(1)), 41.2, 0.05);
    EXPECT_NEAR(RatioOfErrorPower(QuadraturePower(-1)), 41.2, 0.05);
    EXPECT_NEAR(CombineRatios(std::array{35.0, RatioOfErrorPower(JitterPower(0))}), 35.0, 1e-9);
    EXPECT_NEAR(CombineRatios(std::array{40.0, 40.0}), 36.99, 0.005);
    EXPECT_NEAR(JitterPower(JitterOfRatio(30)), 1e-3, 1e-9);
    EXPECT_NEAR(ImbalancePower(ImbalanceOfRatio(30)), 1e-3, 1e-9);
    EXPECT_NEAR(MerPercent(40), 1.0, 1e-9);
    EXPECT_NEAR(NoiseFloor(6.9e6, 8), 11.2, 0.05) << "by the noise figure";
}

TEST(Qam, FailsOnePacketAnHourAtAnErrorRatioOf35e5)
{
    const double packetsAnHour = 6.9e6 * 6 / (8 * packetBytes) * 3600;
    EXPECT_NEAR(PacketErrorRatios(3.5e-4).failed * packetsAnHour, 1, 0.5);
    EXPECT_LT(PacketErrorRatios(1e-4).failed * packetsAnHour, 1e-3);
    EXPECT_EQ(PacketErrorRatios(0).failed, 0);
    const PacketErrors lost = PacketErrorRatios(0.5);
    EXPECT_NEAR(lost.failed, 1, 1e-9);
    EXPECT_NEAR(lost.syncWrong, 255.0 / 256, 1e-9);
}

TEST(LevelUnit, ConvertsAtSeventyFiveOhm)
{
    // By the units' codes, which stand in files: dBmV, dBpW, dBµW, dBm, dBµV, mV.
    const double levels[] = {1, 42.25, -17.75, -47.75, 61, std::pow(10, 1.0 / 20)};
    for (int32_t code = 0; code <= 5; ++code) {
        const auto unit = static_cast<LevelUnit>(code);
        EXPECT_NEAR(LevelIn(unit, 61), levels[code], 1e-9) << code;
        EXPECT_NEAR(*DecibelMicrovolts(unit, levels[code]), 61, 1e-9) << code;
    }
    EXPECT_FALSE(DecibelMicrovolts(LevelUnit::mV, 0));
    std::feclearexcept(FE_ALL_EXCEPT);
    EXPECT_EQ(DecibelsOfPower(0), -std::numeric_limits<double>::infinity());
    EXPECT_FALSE(std::fetestexcept(FE_DIVBYZERO)) << "a host may have unmasked it";
}

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
