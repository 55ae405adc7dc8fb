#include "host_model/ProgressLine.h"

#include <gtest/gtest.h>

#include "host_model/ScanSummary.h"
#include "host_model/TextGrid.h"

namespace tvn2x {
namespace {

TEST(ProgressLine, ShowsBarCountChannelAndStatus)
{
    const ScanProgress progress{
        .channels = 4, .done = 1, .step = 0.5, .channel = L"K36", .status = L"Measuring at 594 MHz"};
    EXPECT_EQ(ProgressLine({.channels = 4, .channel = L"K36", .status = L"Measuring at 594 MHz"}, 80),
              L"░░░░░░░░░░░░░░░░░░░░  1/4  K36  Measuring at 594 MHz");
    EXPECT_TRUE(ProgressLine(progress, 80).starts_with(L"███████░░░░░░░░░░░░░  2/4  K36"));
}

TEST(ProgressLine, ReckonsTheTimeLeftFromTheChannelsDone)
{
    ScanProgress progress{
        .channels = 5, .done = 2, .step = 0, .elapsed = 10, .elapsedAtDone = 10, .channel{}, .status{}};
    EXPECT_TRUE(ProgressLine(progress, 80).ends_with(L"  0:15 left"));
    progress.elapsed = 13;
    EXPECT_TRUE(ProgressLine(progress, 80).ends_with(L"  0:12 left"));
    progress.elapsed = 60;  // a channel that hangs: the other two still need their time
    EXPECT_TRUE(ProgressLine(progress, 80).ends_with(L"  0:10 left"));
}

TEST(ProgressLine, StepsOfAShortOperation)
{
    EXPECT_EQ(StepLine(3, 12, L"Configuring KTR", 80), L"█████░░░░░░░░░░░░░░░  3/12  Configuring KTR");
    EXPECT_EQ(DisplayWidth(StepLine(12, 12, L"Configuring KTR", 20)), 20);
}

TEST(ProgressLine, NeverExceedsTheTerminalAndKeepsTheTimeLeft)
{
    const ScanProgress progress{.channels = 40,
                                .done = 20,
                                .step = 0.1,
                                .elapsed = 7300,
                                .elapsedAtDone = 7200,
                                .channel = L"K36 with a very long label",
                                .status = L"Synchronising at 594 MHz"};
    for (int32_t width = 1; width < 120; ++width) {
        EXPECT_LE(DisplayWidth(ProgressLine(progress, width)), width);
    }
    EXPECT_TRUE(ProgressLine(progress, 40).ends_with(L"1:58:20 left"));
}

TEST(ProgressLine, DurationsAreMinutesAndSeconds)
{
    EXPECT_EQ(DurationText(0), L"0:00");
    EXPECT_EQ(DurationText(59.4), L"0:59");
    EXPECT_EQ(DurationText(59.5), L"1:00");
    EXPECT_EQ(DurationText(3599), L"59:59");
    EXPECT_EQ(DurationText(3661), L"1:01:01");
    EXPECT_EQ(DurationText(-5), L"0:00");
}

TEST(ScanSummary, TellsOutcomesApart)
{
    using enum ChannelOutcome;
    EXPECT_EQ(OutcomeOf({L"Done", L"OK", L"OK", L"OK"}, true), synchronised);
    EXPECT_EQ(OutcomeOf({L"Done", L"", L"", L""}, true), synchronised);  // the setup measures no indicator
    EXPECT_EQ(OutcomeOf({L"Done", L"UNSYNC", L"OK", L"OK"}, true), notSynchronised);
    EXPECT_EQ(OutcomeOf({L"Done", L"OK", L"UNSYNC", L"UNSYNC"}, true), notSynchronised);
    EXPECT_EQ(OutcomeOf({L"Done", L"OK", L"OK", L"INTERMITTENT"}, true), notSynchronised);
    EXPECT_EQ(OutcomeOf({L"Control Error", L"UNSYNC", L"UNSYNC", L"UNSYNC"}, true), error);
    EXPECT_EQ(OutcomeOf({L"Measuring", L"OK", L"OK", L"OK"}, false), unmeasured);
}

TEST(ScanSummary, OneLineAndAnExitCode)
{
    ScanSummary summary{.channels = 3, .seconds = 62};
    summary.Count(ChannelOutcome::synchronised);
    summary.Count(ChannelOutcome::synchronised);
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
