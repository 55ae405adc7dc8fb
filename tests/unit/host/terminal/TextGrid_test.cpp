#include "host/terminal/TextGrid.h"

#include "host/terminal/ProgressLine.h"
#include "host/terminal/Words.h"
#include "support/TestFiles.h"
#include "text/Duration.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

/// Decimal points, exponents and limits are aligned, captions and long texts wrapped, and a grid that is too wide
/// folded into panels that repeat the key columns.
TEST(TextGrid, GridsLookAsTheirFileShowsThem)
{
    TextGrid aligned({L"No.", L"User Field", L"MER (dB RMS)", L"Symbol Rate/Carrier Sync", L"I/Q Phase (°)",
                      L"BER before RS", L"Label"});
    aligned.AddRow({L"1", L"S21", L"38.2", L"OK", L"-0.15", L"1.5E-06", L"12"});
    aligned.AddRow({L"12", L"114 MHz", L"9.15", L"UNSYNC", L"1", L"<12E-12", L"12:30:00"});
    aligned.AddRow({L"13", L"", L"---", L"OK", L"---", L"OVER", L""});
    TextGrid folded({L"No.", L"First", L"Second", L"Third"}, 1);
    folded.AddRow({L"1", L"a", L"b", L"c"});
    TextGrid wrapped({L"No.", L"Label", L"MER"}, 2);
    wrapped.AddRow({L"1", L"a label of forty characters, no fewer ab", L"31.25"});
    wrapped.AddRow({L"2", L"AnUnbrokenOneOfTwentySix..", L"1E"});
    TextGrid reasons({L"Channel", L"MER", L"Verdict and/or Explanation"}, 1);
    reasons.AddRow({L"K36 594 MHz", L"-12.5", L"MER 28.5 dB is 2.5 dB below the limit of 31 dB"});
    reasons.AddRow({L"K37 電視電視電視 602 MHz", L"UNDER", L"not synchronised"});
    std::wstring grids = aligned.Render() + folded.Render(20) + wrapped.Render(50);
    for (const int32_t width : {64, 57, 56, 12}) {
        grids += reasons.Render(width);
    }
    ExpectTold("text-grids.txt", ToUtf8(grids));

    // A terminal narrower than a column gets one column a panel, and never a control character.
    folded.AddRow({L"2", L"a\x1B[2J\r\n\x9Bz", L"b", L""});
    const std::wstring text = folded.Render(4);
    EXPECT_NE(text.find(L"No.  First\n"), std::wstring::npos);
    EXPECT_NE(text.find(L"No.  Second\n"), std::wstring::npos);
    EXPECT_EQ(text.find_first_of(L"\x1B\r\x9B"), std::wstring::npos);
}

TEST(Words, WidthsAreThoseOfATerminal)
{
    EXPECT_EQ(DisplayWidth(L"dBµV"), 4);
    EXPECT_EQ(DisplayWidth(L"e\u0301"), 1);
    EXPECT_EQ(DisplayWidth(L"電視"), 4);
    EXPECT_EQ(DisplayWidth(L"😀"), 2);
}

TEST(Words, LinesAreCutAtWordsAndNothingThatMovesATerminalIsLeft)
{
    EXPECT_EQ(WrapWords(L"one two three\n  a b\n\nfourteen fif\n", 8), L"one two\nthree\n  a b\n\nfourteen\nfif\n");
    EXPECT_EQ(WrapWords(L"C:\\a\\long\\path is long", 8), L"C:\\a\\long\\path\nis long");
    EXPECT_EQ(WrapWords(L"one two", 0), L"one two");
    EXPECT_EQ(WrappedLines(L"電視電視 a", 3, true), (std::vector<std::wstring>{L"電", L"視", L"電", L"視", L"a"}));
    EXPECT_EQ(Printable(L"a\x1B[2J\r\nb\rc\td\x9B\x7F\u202Ee\u2028f"), L"a [2J\nb c d   e f");
}

TEST(Words, TheNearestWordIsFoundWhereOneIsNear)
{
    const std::vector<std::string> known{"scan", "show", "--channels", "--parameters"};
    EXPECT_EQ(NearestWord("scna", known), "scan");
    EXPECT_EQ(NearestWord("quit", known), "");
    EXPECT_EQ(NearestWord("--chanels", known), "--channels");
    EXPECT_EQ(NearestWord("--journal", known), "");
}

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
                                                       {3599, L"59:59"}, {3661, L"1:01:01"}, {36610, L"10:10:10"},
                                                       {-5, L"0:00"}};
    for (const auto& [seconds, text] : cases) {
        EXPECT_EQ(DurationText(seconds), text);
    }
}

}  // namespace
}  // namespace tvn2x
