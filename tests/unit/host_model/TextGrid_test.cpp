#include "host_model/TextGrid.h"

#include <gtest/gtest.h>

namespace tvn2x {
namespace {

TEST(TextGrid, AlignsDecimalPointsAndWrapsCaptions)
{
    TextGrid grid({L"No.", L"User Field", L"MER (dB RMS)", L"Symbol Rate/Carrier Sync", L"I/Q Phase (°)"});
    grid.AddRow({L"1", L"S21", L"38.2", L"OK", L"-0.15"});
    grid.AddRow({L"12", L"114 MHz", L"9.15", L"UNSYNC", L"1"});
    grid.AddRow({L"13", L"", L"---", L"OK", L"---"});
    EXPECT_EQ(grid.Render(),
              L"━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━\n"
              L"                     Symbol\n"
              L"                MER  Rate/      I/Q\n"
              L"     User       (dB  Carrier  Phase\n"
              L"No.  Field     RMS)  Sync       (°)\n"
              L"───  ───────  ─────  ───────  ─────\n"
              L"  1  S21      38.2   OK       -0.15\n"
              L" 12  114 MHz   9.15  UNSYNC    1\n"
              L" 13             ---  OK         ---\n"
              L"━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━━\n");
}

TEST(TextGrid, ExponentsAndLimitsAreNumbers)
{
    TextGrid grid({L"BER before RS"});
    grid.AddRow({L"1.5E-06"});
    grid.AddRow({L"<12E-12"});
    grid.AddRow({L"OVER"});
    EXPECT_EQ(grid.Render(),
              L"━━━━━━━━━\n"
              L"      BER\n"
              L"before RS\n"
              L"─────────\n"
              L"  1.5E-06\n"
              L"<12E-12\n"
              L"     OVER\n"
              L"━━━━━━━━━\n");
}

TEST(TextGrid, OneWordMakesAColumnLeftAligned)
{
    TextGrid grid({L"Label"});
    grid.AddRow({L"12"});
    grid.AddRow({L"12:30:00"});
    EXPECT_EQ(grid.Render(), L"━━━━━━━━\nLabel\n────────\n12\n12:30:00\n━━━━━━━━\n");
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
}

TEST(TextGrid, ATerminalNarrowerThanAColumnGetsOneColumnAPanel)
{
    TextGrid grid({L"No.", L"First", L"Second"}, 1);
    grid.AddRow({L"1", L"a", L"b"});
    const std::wstring text = grid.Render(4);
    EXPECT_NE(text.find(L"No.  First\n"), std::wstring::npos);
    EXPECT_NE(text.find(L"No.  Second\n"), std::wstring::npos);
}

TEST(TextGrid, ControlCharactersOfALabelDoNotReachTheTerminal)
{
    TextGrid grid({L"Label"});
    grid.AddRow({L"a\x1B[2J\r\n\x9Bz"});
    EXPECT_EQ(grid.Render().find_first_of(L"\x1B\r\x9B"), std::wstring::npos);
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
