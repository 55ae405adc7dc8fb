#include <gtest/gtest.h>

#include <cmath>
#include <limits>

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
    EXPECT_EQ("ee-ee", kinds({{1, 1}, {1, 1}, {5, 1}, {9, 1}, {9, 1}}, 0.15));
    EXPECT_EQ("ooo", kinds({{100, 1}, {110, 1}, {111, 7}}, 2.5)) << "one reaches over its neighbour";
    EXPECT_EQ("oooo", kinds({{100, 1}, {110, 20}, {112, 1}, {120, 1}}, 0.15));
    const std::vector<ChannelMark> marks = MarkChannels({{482, 7}, {474, 7}}, 0.15);
    EXPECT_EQ(1, marks[0].other);
    EXPECT_NEAR(0.05, marks[1].common, 1e-9);
    EXPECT_TRUE(MarkChannels({}, 0.15).empty());
}

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

class ValidateChannelTest : public testing::Test
{
protected:
    int16_t Validate(double frequency, double symbolRate)
    {
        messages.messages.clear();
        frequency_ = frequency;
        symbolRate_ = symbolRate;
        return ValidateChannel(&frequency_, &symbolRate_, messages, locale);
    }
    std::wstring Message() const { return messages.messages.size() == 1 ? messages.messages[0].text : L"not one"; }

    RecordingMessageBoxes messages;
    FixedLocale locale;
    double frequency_ = 0;
    double symbolRate_ = 0;
};

TEST_F(ValidateChannelTest, AcceptsTheLimitsAndNothingBeyond)
{
    EXPECT_EQ(1, Validate(3, 0.1));
    EXPECT_EQ(1, Validate(1000, 7));
    EXPECT_TRUE(messages.messages.empty());
    for (const double frequency : {2.9999999, 1000.000001, nan, -std::numeric_limits<double>::infinity()}) {
        EXPECT_EQ(2, Validate(frequency, 6.9)) << frequency;
    }
    for (const double symbolRate : {0.0999, 7.001, nan, std::numeric_limits<double>::infinity()}) {
        EXPECT_EQ(3, Validate(500, symbolRate)) << symbolRate;
    }
    EXPECT_EQ(2, Validate(nan, nan));

    double value = 1;  // what is not given is left out
    EXPECT_EQ(1, ValidateChannel(nullptr, &value, messages, locale));
    EXPECT_EQ(2, ValidateChannel(&value, nullptr, messages, locale));
}

TEST_F(ValidateChannelTest, TellsBothFaultsInOneBoxWithTheUsersSeparatorAndChangesNothing)
{
    locale = CommaLocale();
    EXPECT_EQ(2, Validate(2.5, 7.0004));
    EXPECT_EQ(
        L"Frequency too low.\n\nPlease enter a value expressed in MHz between 3 and 1000,0000009, to a resolution of "
        L"0,1 Hz.\n\nSymbol Rate too high.\n\nPlease enter a value expressed in MSymb/s, between 0,1 and 7, to a "
        L"resolution of 1000 SPS.",
        Message());
    EXPECT_EQ(L"Setup", messages.messages[0].title);
    EXPECT_EQ(MessageIcon::warning, messages.messages[0].icon);
    EXPECT_EQ(2.5, frequency_);
    EXPECT_EQ(7.0004, symbolRate_);
    EXPECT_EQ(3, Validate(100, 0));
    EXPECT_EQ(0u, Message().find(L"Symbol Rate too low."));
    Validate(3.3, 6.9);
    EXPECT_EQ(L"Frequency rounded to 3,2999999 MHz.", Message());
}

TEST_F(ValidateChannelTest, CutsFrequenciesDownToTheirRaster)
{
    for (const double onRaster : {213.0, 474.25, 858.0, 3.1, 999.9999999}) {
        EXPECT_EQ(1, Validate(onRaster, 6.9)) << onRaster;
    }
    const std::pair<double, double> steps[] = {{3.3, 3.2999999}, {3.4, 3.3999999}, {3.8, 3.7999999},
                                               {4.1, 4.0999999}, {4.3, 4.2999999}, {500.00000019, 500.0000001},
                                               {3.00000009, 3.0}};
    for (const auto& [typed, kept] : steps) {
        EXPECT_EQ(1, Validate(typed, 6.9));
        EXPECT_NEAR(kept, frequency_, 1e-12) << typed;
        EXPECT_EQ(MessageIcon::information, messages.messages.at(0).icon);
    }
}

TEST_F(ValidateChannelTest, RoundsSymbolRatesToTheNearestStepHalvesToEven)
{
    const std::pair<double, double> steps[] = {{6.9005, 6.9}, {6.9015, 6.902}, {6.9501, 6.95}, {0.1004, 0.1}};
    for (const auto& [typed, kept] : steps) {
        EXPECT_EQ(1, Validate(500, typed));
        EXPECT_NEAR(kept, symbolRate_, 1e-12) << typed;
        EXPECT_EQ(0u, Message().find(L"Symbol Rate rounded to ")) << typed;
    }
    Validate(500, 6.9005);
    EXPECT_EQ(L"Symbol Rate rounded to 6.900 MSymb/s.", Message());
}

}  // namespace
}  // namespace tvn2x
