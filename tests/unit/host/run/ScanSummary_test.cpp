#include "host/run/ScanSummary.h"

#include <gtest/gtest.h>

namespace tvn2x {
namespace {

TEST(ScanSummary, TellsOutcomesApartInOneLineAndAnExitCode)
{
    using enum ChannelOutcome;
    EXPECT_EQ(OutcomeOf({L"Done", L"OK", L"OK", L"OK"}, true), synchronised);
    EXPECT_EQ(OutcomeOf({L"Done", L"", L"", L""}, true), synchronised);  // the setup measures no indicator
    EXPECT_EQ(OutcomeOf({L"Done", L"UNSYNC", L"OK", L"OK"}, true), notSynchronised);
    EXPECT_EQ(OutcomeOf({L"Done", L"OK", L"UNSYNC", L"UNSYNC"}, true), notSynchronised);
    EXPECT_EQ(OutcomeOf({L"Done", L"OK", L"OK", L"INTERMITTENT"}, true), notSynchronised);
    EXPECT_EQ(OutcomeOf({L"Control Error", L"UNSYNC", L"UNSYNC", L"UNSYNC"}, true), error);
    EXPECT_EQ(OutcomeOf({L"Measuring", L"OK", L"OK", L"OK"}, false), unmeasured);

    ScanSummary summary{.channels = 3, .synchronised = 2, .seconds = 62};
    EXPECT_EQ(summary.ExitCode(), 1);  // a channel that was not measured is not synchronised
    summary.Count(ChannelOutcome::synchronised);
    EXPECT_EQ(summary.ExitCode(), 0);
    EXPECT_EQ(summary.Text(), L"3 channels, 3 synchronised, 0 not synchronised, 0 errors, 1:02 min");

    ScanSummary stopped{.channels = 5, .stopped = true, .seconds = 3};
    stopped.Count(ChannelOutcome::error);
    stopped.Count(ChannelOutcome::notSynchronised);
    EXPECT_EQ(stopped.ExitCode(), 3);
    EXPECT_EQ(stopped.Text(),
              L"Stopped: 5 channels, 0 synchronised, 1 not synchronised, 1 error, 3 not measured, 0:03 min");
}

}  // namespace
}  // namespace tvn2x
