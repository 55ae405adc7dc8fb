#include "host/terminal/TextGrid.h"

#include <gtest/gtest.h>

namespace tvn2x {
namespace {

TEST(TextGrid, AlignsDecimalPointsExponentsAndLimitsAndWrapsCaptions)
{
    TextGrid grid({L"No.", L"User Field", L"MER (dB RMS)", L"Symbol Rate/Carrier Sync", L"I/Q Phase (°)",
                   L"BER before RS", L"Label"});
    grid.AddRow({L"1", L"S21", L"38.2", L"OK", L"-0.15", L"1.5E-06", L"12"});
    grid.AddRow({L"12", L"114 MHz", L"9.15", L"UNSYNC", L"1", L"<12E-12", L"12:30:00"});
    grid.AddRow({L"13", L"", L"---", L"OK", L"---", L"OVER", L""});
    EXPECT_EQ(grid.Render(),
              L"━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━\n"
              L"                     Symbol\n"
              L"                MER  Rate/      I/Q\n"
              L"     User       (dB  Carrier  Phase        BER\n"
              L"No.  Field     RMS)  Sync       (°)  before RS  Label\n"
              L"───  ───────  ─────  ───────  ─────  ─────────  ────────\n"
              L"  1  S21      38.2   OK       -0.15    1.5E-06  12\n"
              L" 12  114 MHz   9.15  UNSYNC    1     <12E-12    12:30:00\n"
              L" 13             ---  OK         ---       OVER\n"
              L"━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━\n");
}

TEST(TextGrid, FoldsIntoPanelsThatRepeatTheKeyColumns)
{
    TextGrid grid({L"No.", L"First", L"Second", L"Third"}, 1);
    grid.AddRow({L"1", L"a", L"b", L"c"});
    EXPECT_EQ(grid.Render(20),
              L"━━━━━━━━━━━━━━━━━━\n"
              L"No.  First  Second\n"
              L"───  ─────  ──────\n"
              L"  1  a      b\n"
              L"━━━━━━━━━━━━━━━━━━\n"
              L"\n"
              L"━━━━━━━━━━\n"
              L"No.  Third\n"
              L"───  ─────\n"
              L"  1  c\n"
              L"━━━━━━━━━━\n");
    // A terminal narrower than a column gets one column a panel, and never a control character.
    grid.AddRow({L"2", L"a\x1B[2J\r\n\x9Bz", L"b", L""});
    const std::wstring text = grid.Render(4);
    EXPECT_NE(text.find(L"No.  First\n"), std::wstring::npos);
    EXPECT_NE(text.find(L"No.  Second\n"), std::wstring::npos);
    EXPECT_EQ(text.find_first_of(L"\x1B\r\x9B"), std::wstring::npos);
}

TEST(TextGrid, WidthsAreThoseOfATerminal)
{
    EXPECT_EQ(DisplayWidth(L"dBµV"), 4);
    EXPECT_EQ(DisplayWidth(L"e\u0301"), 1);
    EXPECT_EQ(DisplayWidth(L"電視"), 4);
    EXPECT_EQ(DisplayWidth(L"😀"), 2);
}

}  // namespace
}  // namespace tvn2x
