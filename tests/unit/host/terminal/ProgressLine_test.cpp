#include "host/terminal/ProgressLine.h"

#include <gtest/gtest.h>

#include "host/terminal/Words.h"
#include "text/Duration.h"

namespace tvn2x {
namespace {

TEST(ProgressLine, ShowsBarCountChannelAndStatus)
{
    ScanProgress progress{.channels = 4, .channel = L"K36", .status = L"Measuring at 594 MHz"};
    EXPECT_EQ(ProgressLine(progress, 80), L"░░░░░░░░░░░░░░░░░░░░  1/4  K36  Measuring at 594 MHz");
    progress.done = 1;
    progress.step = 0.5;
    EXPECT_TRUE(ProgressLine(progress, 80).starts_with(L"███████░░░░░░░░░░░░░  2/4  K36"));
    EXPECT_EQ(StepLine(3, 12, L"Configuring KTR", 80), L"█████░░░░░░░░░░░░░░░  3/12  Configuring KTR");
    EXPECT_EQ(DisplayWidth(StepLine(12, 12, L"Configuring KTR", 20)), 20);
}

TEST(ProgressLine, ReckonsTheTimeLeftFromTheChannelsDoneAndKeepsItWithinTheTerminal)
{
    // The last one hangs: the other two channels still need their time.
    for (const auto& [elapsed, left] :
         {std::pair{10.0, L"  0:15 left"}, {13.0, L"  0:12 left"}, {60.0, L"  0:10 left"}}) {
        const ScanProgress progress{5, 2, 0, elapsed, 10, L"", L""};
        EXPECT_TRUE(ProgressLine(progress, 80).ends_with(left)) << elapsed;
    }
    const ScanProgress progress{40, 20, 0.1, 7300, 7200, L"K36 with a very long label", L"Synchronising at 594 MHz"};
    for (int32_t width = 1; width < 120; ++width) {
        EXPECT_LE(DisplayWidth(ProgressLine(progress, width)), width);
    }
    EXPECT_TRUE(ProgressLine(progress, 40).ends_with(L"1:58:20 left"));
}

TEST(ProgressLine, DurationsAreMinutesAndSeconds)
{
    const std::pair<double, const wchar_t*> cases[] = {{0, L"0:00"},     {59.4, L"0:59"},    {59.5, L"1:00"},
                                                       {3599, L"59:59"}, {3661, L"1:01:01"}, {-5, L"0:00"}};
    for (const auto& [seconds, text] : cases) {
        EXPECT_EQ(DurationText(seconds), text);
    }
}

}  // namespace
}  // namespace tvn2x
