#include "simulator/model/Acquisition.h"

#include <gtest/gtest.h>

namespace tvn2x {
namespace {

/// Seconds without the transport stream, sampled millisecond by millisecond.
double SampledUnlockedTime(const Acquisition& acquisition, double from, double to)
{
    int samples = 0;
    const int count = static_cast<int>((to - from) * 1000);
    for (int i = 0; i < count; ++i) {
        samples += acquisition.Locked(Stage::reedSolomon, from + (i + 0.5) / 1000) ? 0 : 1;
    }
    return samples / 1000.0;
}

TEST(Acquisition, AddsUpExactlyTheTimeThatItShowsAsUnlocked)
{
    Reception reception;
    reception.bitsPerSymbol = 6;
    reception.margin = 15;
    reception.stagesReached = stageCount;
    // The outages overlap one another, and the last one the acquisition itself.
    reception.channel.outages = {
        {LockKind::carrier, 3, 2}, {LockKind::ts, 4, 0.1}, {LockKind::rf, 4.9, 1}, {LockKind::ts, 0.1, 0.4}};
    const Acquisition acquisition(reception, SeededNoise(1, 1));
    for (const double from : {0.0, 0.3, 3.5, 5.95, 8.0}) {
        EXPECT_NEAR(acquisition.UnlockedTime(Stage::reedSolomon, from, 10), SampledUnlockedTime(acquisition, from, 10),
                    0.004)
            << from;
    }
    EXPECT_EQ(acquisition.UnlockedTime(Stage::reedSolomon, 8, 10), 0);
}

TEST(Acquisition, SearchesAWeakDenseSignalForTwoSecondsAtMost)
{
    Reception reception;
    reception.bitsPerSymbol = 8;
    reception.margin = -3;
    reception.frequencyOffset = 170e3;
    reception.stagesReached = stageCount;
    for (uint64_t place = 0; place < 50; ++place) {
        const Acquisition acquisition(reception, SeededNoise(1, place));
        EXPECT_FALSE(acquisition.Locked(Stage::reedSolomon, 1));
        EXPECT_TRUE(acquisition.Locked(Stage::reedSolomon, 2.0001));
    }
}

}  // namespace
}  // namespace tvn2x
