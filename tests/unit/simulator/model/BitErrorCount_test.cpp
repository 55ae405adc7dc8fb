#include "simulator/model/BitErrorCount.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tvn2x {
namespace {

constexpr double bitRate = 4e7;
constexpr double blockSeconds = BitErrorCount::blockBits / bitRate;

TEST(BitErrorCount, ShowsTheSameHoweverOftenItIsAsked)
{
    const SeededNoise noise(3, 474000000);
    BitErrorCount polled(0, bitRate, 2e-6, 10, noise);
    double errors = 0;
    for (double now = 0; now < 10 * blockSeconds; now += 1e-3) {
        const double counted = polled.At(now).errors;
        EXPECT_GE(counted, errors);
        errors = counted;
    }
    BitErrorCount asked(0, bitRate, 2e-6, 10, noise);
    EXPECT_EQ(asked.At(100).errors, polled.At(100).errors);
    EXPECT_EQ(asked.At(5.5 * blockSeconds).errors, polled.At(5.5 * blockSeconds).errors);
}

TEST(BitErrorCount, WritesRatiosWithTwoDigitsAndAPoint)
{
    const auto text = [](double bits, double errors) { return BitErrorCount::Progress{bits, errors, 1}.Result(); };
    EXPECT_EQ(text(1e7, 230), L"2.3E-5");
    EXPECT_EQ(text(1e7, 1), L"1.0E-7");
    EXPECT_EQ(text(1e12, 1), L"1.0E-12");
    EXPECT_EQ(text(3e7, 0), L"<3.3E-8");
    EXPECT_EQ(text(0, 0), L"<1.0E0");
    EXPECT_EQ((BitErrorCount::Progress{2.9e7, 0, 3}.State()), L"2 of 3");
    EXPECT_EQ((BitErrorCount::Progress{9e7, 0, 3}.State()), L"Done");
}

TEST(SeededNoise, DrawsWhatItsDistributionsPromise)
{
    constexpr int draws = 20000;
    const SeededNoise noise(42, 1);
    for (const double mean : {0.3, 7.0, 99.0, 5000.0}) {
        double sum = 0, squares = 0;
        for (int i = 0; i < draws; ++i) {
            const double count = static_cast<double>(noise.Poisson(mean, 5, static_cast<uint64_t>(i)));
            sum += count;
            squares += (count - mean) * (count - mean);
        }
        EXPECT_NEAR(sum / draws, mean, 5 * std::sqrt(mean / draws)) << mean;
        EXPECT_NEAR(squares / draws / mean, 1, 0.1) << mean;
    }
    EXPECT_NE(noise.Uniform(1, 0), noise.Uniform(2, 0));
    EXPECT_NE(noise.Uniform(1, 0), SeededNoise(42, 2).Uniform(1, 0));
    EXPECT_EQ(noise.Gaussian(1, 7), SeededNoise(42, 1).Gaussian(1, 7));
}

}  // namespace
}  // namespace tvn2x
