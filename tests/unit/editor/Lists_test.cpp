#include <gtest/gtest.h>

#include <cmath>

#include "editor/ChannelMarks.h"
#include "editor/ClipboardTable.h"
#include "editor/NaturalOrder.h"
#include "editor/PastedCells.h"
#include "editor/Series.h"
#include "editor/ValidateChannel.h"
#include "support/FixedLocale.h"
#include "support/RecordingMessageBoxes.h"
#include "support/TestTable.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

TEST(NaturalOrder, ComparesNumbersByValueAndLettersInEitherCase)
{
    for (const std::vector<std::string>& row : TestTable("natural-order.tsv", 2)) {
        EXPECT_EQ((std::vector<int32_t>{1, 0}), NaturalRanks({FromUtf8(row[1]), FromUtf8(CellText(row[0]))})) << row[0];
    }
    EXPECT_EQ((std::vector<int32_t>{2, 0, 1, 0}), NaturalRanks({L"K10", L"K1", L"K2", L"K1"}));
}

TEST(ClipboardTable, ReadsWhatSpreadsheetsWriteAndWritesWhatTheyRead)
{
    EXPECT_EQ((Table{{L"S1", L"474"}, {L"", L""}, {L"S2"}}), ReadTable(std::wstring_view(L"S1\t474\r\n\t\nS2\0x", 14)));
    EXPECT_EQ((Table{{L"a\tb", L"say \"x\"", L"5\" wide", L"\"open"}}),
              ReadTable(L"\"a\tb\"\t\"say \"\"x\"\"\"\t5\" wide\t\"open"));
    EXPECT_EQ(Table{}, ReadTable(L""));
    const Table table{{L"plain", L"a\tb", L""}, {L"\"", L"two\r\nlines", L"5\" wide"}};
    EXPECT_EQ(table, ReadTable(WriteTable(table)));
    EXPECT_TRUE(IsRange(L"a\tb") && IsRange(L"a\r\nb") && IsRange(L"a\r\n\r\n"));
    EXPECT_FALSE(IsRange(L"a") || IsRange(L"a\r\n") || IsRange(L""));
}

TEST(PastedCells, FindTheirColumnsByHeadingOrByPlace)
{
    const auto columns = [](Table table, Column first) {
        const PastedCells pasted = ArrangeCells(std::move(table), GridOf(first), first);
        std::string found = std::to_string(pasted.heading) + ":";
        for (const Column column : pasted.columns) {
            found += " " + std::to_string(column);
        }
        return pasted.fault.empty() ? found : "fault";
    };
    EXPECT_EQ("0: 11 12", columns({{L"474", L"6.9"}}, MP_FREQUENCY));
    EXPECT_EQ("0: 10 11 12", columns({{L"S1", L"474", L"6.9"}, {L"", L" ", L""}}, MP_SYMBOLRATE));
    EXPECT_EQ("0: 11 12", columns({{L"474", L"6.9", L""}, {L"", L" ", L""}}, MP_FREQUENCY));
    EXPECT_EQ("fault", columns({{L"", L" "}}, MP_USERFIELD));
    EXPECT_EQ("1: 11 10", columns({{L"Frequency (MHz)", L"Label"}, {L"474", L"S1"}}, MP_SYMBOLRATE));
    EXPECT_EQ("1: 10 11", columns({{L"Kanal", L"Frequenz"}, {L"S1", L"474"}}, MP_USERFIELD));
    EXPECT_EQ("1: 0 2", columns({{L"CAPTION", L"Save"}, {L"x", L"1"}}, captionColumn));
    EXPECT_EQ("0: 10", columns({{L"Kanal"}, {L"S1"}}, MP_USERFIELD)) << "labels need not be numbers";
    EXPECT_EQ("fault", columns({{L"474", L"6.9"}}, MP_SYMBOLRATE));
    EXPECT_EQ("fault", columns({{L"1", L"2", L"3", L"4"}}, MP_USERFIELD));
    EXPECT_EQ("fault", columns({{L"Label", L"Label"}, {L"a", L"b"}}, MP_USERFIELD));
    EXPECT_EQ("fault", columns({{L"Label"}}, MP_USERFIELD));
}

TEST(Series, CountsOnInTheLastNumberOfALabel)
{
    EXPECT_EQ(L"S23", CountOn(L"S21", 2));
    EXPECT_EQ(L"K010 HD", CountOn(L"K009 HD", 1));
    EXPECT_EQ(L"2x100", CountOn(L"2x99", 1));
    EXPECT_EQ(L"K0", CountOn(L"K3", -5));
    EXPECT_EQ(L"none", CountOn(L"none", 3));
    EXPECT_EQ(L"9999999999999999", CountOn(L"9999999999999999", 1));
}

TEST(ChannelMarks, TellEqualFromOverlappingFromTouchingChannels)
{
    const double none = std::nan("");
    const auto kinds = [](const std::vector<ChannelPlace>& channels, double rollOff) {
        std::string letters;
        for (const ChannelMark& mark : MarkChannels(channels, rollOff)) {
            letters += "-eo"[static_cast<size_t>(mark.kind)];
        }
        return letters;
    };
    EXPECT_EQ("---", kinds({{482, 6.9}, {474, 6.9}, {none, 6.9}}, 0.15));
    EXPECT_EQ("oo", kinds({{482, 7}, {474, 7}}, 0.15));
    EXPECT_EQ("--", kinds({{482, 8}, {474, 8}}, 0)) << "they touch";
    EXPECT_EQ("e-e", kinds({{482, 6.9}, {500, 6.9}, {482, none}}, 0.15));
    EXPECT_EQ("ee", kinds({{482, 6.9}, {482 + 4e-8, 6.9}}, 0.15)) << "one when they are put onto the raster";
    EXPECT_EQ("ee-ee", kinds({{1, 1}, {1, 1}, {5, 1}, {9, 1}, {9, 1}}, 0.15));
    EXPECT_EQ("ooo", kinds({{100, 1}, {110, 1}, {111, 7}}, 2.5)) << "one reaches over its neighbour";
    EXPECT_EQ("oooo", kinds({{100, 1}, {110, 20}, {112, 1}, {120, 1}}, 0.15));
    const std::vector<ChannelMark> marks = MarkChannels({{482, 7}, {474, 7}}, 0.15);
    EXPECT_EQ(1, marks[0].other);
    EXPECT_NEAR(0.05, marks[1].common, 1e-9);
    EXPECT_TRUE(MarkChannels({}, 0.15).empty());
}

/// A channel as it was typed, the answer, what is kept of it, and the message where there is one.
TEST(ValidateChannel, AnswersAsTheTableSays)
{
    for (const std::vector<std::string>& row : TestTable("channel-limits.tsv", 6)) {
        RecordingMessageBoxes messages;
        double frequency = std::stod(row[0]), symbolRate = std::stod(row[1]);
        EXPECT_EQ(std::stoi(row[2]), ValidateChannel(&frequency, &symbolRate, messages, CommaLocale())) << row[0];
        const auto kept = [](double value, const std::string& text) {
            const double expected = std::stod(text);
            return value == expected || (std::isnan(value) && text == "nan") || std::abs(value - expected) < 1e-12;
        };
        EXPECT_TRUE(kept(frequency, row[3]) && kept(symbolRate, row[4])) << frequency << " " << symbolRate;
        ASSERT_EQ(row[5].empty() ? 0u : 1u, messages.messages.size()) << row[0] << " " << row[1];
        if (!row[5].empty()) {
            EXPECT_EQ(0u, messages.messages[0].text.find(FromUtf8(CellText(row[5])))) << row[0] << " " << row[1];
            EXPECT_EQ(row[2] == "1" ? MessageIcon::information : MessageIcon::warning, messages.messages[0].icon);
            EXPECT_EQ(L"Setup", messages.messages[0].title);
        }
    }
    RecordingMessageBoxes messages;
    double value = 1;  // what is not given is left out
    EXPECT_EQ(1, ValidateChannel(nullptr, &value, messages, FixedLocale()));
    EXPECT_EQ(2, ValidateChannel(&value, nullptr, messages, FixedLocale()));
    EXPECT_EQ(1, ValidateChannel(nullptr, &(value = 6.9005), messages, FixedLocale()));
    EXPECT_EQ(L"Symbol Rate rounded to 6.900 MSymb/s.", messages.messages.back().text);
}

}  // namespace
}  // namespace tvn2x
