#include "host/run/ScanSummary.h"

#include <gtest/gtest.h>

namespace tvn2x {
namespace {

TEST(ScanSummary, TellsOutcomesApartInOneLine)
{
    ScanSummary summary{.channels = 3, .synchronised = 2, .seconds = 62};
    summary.Count(ChannelOutcome::synchronised);
    EXPECT_EQ(summary.Text(), L"3 channels, 3 synchronised, 0 not synchronised, 0 errors, 1:02 min");

    ScanSummary stopped{.channels = 5, .stopped = true, .seconds = 3};
    stopped.Count(ChannelOutcome::error);
    stopped.Count(ChannelOutcome::notSynchronised);
    EXPECT_EQ(stopped.Text(),
              L"Stopped: 5 channels, 0 synchronised, 1 not synchronised, 1 error, 3 not measured, 0:03 min");
}

}  // namespace
}  // namespace tvn2x
