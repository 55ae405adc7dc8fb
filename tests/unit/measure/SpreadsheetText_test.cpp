#include "measure/SpreadsheetText.h"

#include <gtest/gtest.h>

#include <initializer_list>

#include "support/FixedLocale.h"

namespace tvn2x {
namespace {

/// The cells as one row, without the byte order mark and the line end.
std::string Row(std::initializer_list<std::wstring_view> cells, const FixedLocale& locale = CommaLocale())
{
    SpreadsheetText text(locale);
    for (const std::wstring_view cell : cells) {
        text.Cell(cell);
    }
    text.EndRow();
    const std::string bytes = text.Take();
    EXPECT_TRUE(bytes.starts_with("\xEF\xBB\xBF") && bytes.ends_with("\r\n"));
    return bytes.substr(3, bytes.size() - 5);
}

TEST(SpreadsheetText, CellsAreQuotedWhereTheyWouldBeMisread)
{
    EXPECT_EQ(Row({L"a", L"", L"b;c", L"say \"x\"", L"two\r\nlines", L" blank ", L"d,e", L"\u00C5rhus \u4E2D"}),
              "a;;\"b;c\";\"say \"\"x\"\"\";\"two\r\nlines\";\" blank \";d,e;\xC3\x85rhus \xE4\xB8\xAD");
    EXPECT_EQ(Row({std::wstring_view(L"a\0b\x1B\x07", 5), L"a\tb"}), "\"a b  \";a\tb") << "control characters";
    EXPECT_EQ(Row({}), "");
    EXPECT_EQ(Row({L"", L""}), ";");
}

TEST(SpreadsheetText, SeparatorIsTheOneThatTheSpreadsheetSplitsAt)
{
    const std::tuple<const wchar_t*, const wchar_t*, const char*> locales[] = {
        {L".", L",", "a,b"},  {L",", L";", "a;b"}, {L".", L";", "a;b"}, {L".", L"\t", "a\tb"},
        {L",", L"; ", "a;b"}, {L",", L",", "a;b"}, {L".", L"", "a,b"},  {L",", L"", "a;b"},
        {L".", L"\"", "a;b"}, {L".", L"x", "a;b"}, {L"", L",", "a,b"}};
    for (const auto& [decimal, list, row] : locales) {
        EXPECT_EQ(Row({L"a", L"b"}, FixedLocale(decimal, list)), row);
    }
}

TEST(SpreadsheetText, TextThatBeginsLikeAFormulaIsMadeHarmless)
{
    EXPECT_EQ(Row({L"=1+1", L"+A1", L"-A1", L"@SUM(A1)", L"-1+2", L"\uFF1D1"}),
              "'=1+1;'+A1;'-A1;'@SUM(A1);'-1+2;'\xEF\xBC\x9D"
              "1");
    EXPECT_EQ(Row({L"\t=1", L"\r=1", L"  =1", L"\u00A0=1"}), "\"'\t=1\";\"'\r=1\";\"'  =1\";\"'\xC2\xA0=1\"");
    EXPECT_EQ(Row({L"=\"a\";\"b\""}), "\"'=\"\"a\"\";\"\"b\"\"\"") << "both rules at once";
}

TEST(SpreadsheetText, NumbersAndMarkersStayAsTheyAre)
{
    EXPECT_EQ(Row({L"-6,9", L"+3", L"-1,5E-8", L"---", L"-", L"<1,7E-8", L"a=b", L"1-2"}),
              "-6,9;+3;-1,5E-8;---;-;<1,7E-8;a=b;1-2");
    const FixedLocale point(L".", L",");
    EXPECT_EQ(Row({L"-6.9", L"-6,9"}, point), "-6.9,\"'-6,9\"") << "no number in this locale";
}

}  // namespace
}  // namespace tvn2x
