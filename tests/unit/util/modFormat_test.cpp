#include "util/modFormat.h"

#include <gtest/gtest.h>

#include <charconv>

#include "support/FixedLocale.h"
#include "support/RaisedBy.h"
#include "support/TestTable.h"
#include "util/Encoding.h"
#include "util/RaisedError.h"
#include "util/modLocaleInfo.h"

namespace tvn2x {
namespace {

std::string Format(double value, std::wstring_view pattern = {})
{
    return ToUtf8(FormatNumber(value, pattern, false, FixedLocale()));
}

/// By pattern, or by the number of significant digits.
TEST(FormatNumber, GivesEveryRecordedText)
{
    const std::vector<std::vector<std::string>> rows = TestTable("number-format.tsv", 3);
    EXPECT_EQ(rows.size(), 619u);
    for (const std::vector<std::string>& row : rows) {
        double value = 0;
        std::from_chars(row[0].data(), row[0].data() + row[0].size(), value);
        const std::string text = row[1] == "4 digits" ? ToUtf8(FormatSignificant(value, 4, false, FixedLocale()))
                                 : row[1] == "NULL"   ? Format(value)
                                                      : Format(value, FromUtf8(CellText(row[1])));
        EXPECT_EQ(text, CellText(row[2])) << row[0] << " " << row[1];
    }
}

TEST(FormatNumber, TakesTheLocalesSeparatorOnlyWhenAsked)
{
    for (const wchar_t* separator : {L".", L",", L"\u066B", L"'"}) {
        const FixedLocale locale(separator);
        EXPECT_EQ(FormatNumber(6.9, L"#0.000", false, locale), L"6.900");
        EXPECT_EQ(FormatNumber(-1.5e-7, false, locale), L"-1.5E-07");
        EXPECT_EQ(locale.queries, 0);
        EXPECT_EQ(FormatNumber(6.9, L"#0.000", true, locale), L"6" + std::wstring(separator) + L"900");
        EXPECT_EQ(FormatNumber(-1.5e-7, true, locale), L"-1" + std::wstring(separator) + L"5E-07");
    }
    EXPECT_EQ(FormatNumber(6.9, true, FixedLocale(L"")), L"6.9");
    EXPECT_EQ(FormatSignificant(0.5, 2, true, CommaLocale()), L"0,50");
    EXPECT_EQ(FormatSignificant(0.5, 2, false, CommaLocale()), L"0.50");
    std::wstring text = L"a=";
    AppendNumber(text, -0.5, L"#0.000", false, FixedLocale());
    AppendNumber(text, 1e20, {}, false, FixedLocale());
    EXPECT_EQ(text, L"a=-0.5001E+20") << "what stands before it stays";
}

TEST(ParseNumber, ReadsNumbersAndRaisesTypeMismatchForEverythingElse)
{
    for (const std::vector<std::string>& row : TestTable("numbers.tsv", 2)) {
        double value = 0;
        const std::wstring error = RaisedBy([&] { value = ParseNumber(FromUtf8(CellText(row[0])), FixedLocale()); });
        EXPECT_EQ(error, row[1] == "refused" ? L"13 modLocaleInfo.ParseNumber: Type mismatch" : L"") << row[0];
        EXPECT_EQ(value, row[1] == "refused" ? 0 : std::strtod(row[1].c_str(), nullptr)) << row[0];
    }
    EXPECT_EQ(ParseNumber(L"6.900", CommaLocale()), 6.9);
    EXPECT_EQ(ParseNumber(L"6\u066B9", L'\u066B'), 6.9);
    EXPECT_EQ(ParseNumber(L"0." + std::wstring(400, L'0') + L"1", L'.'), 0);
    EXPECT_EQ(ParseNumber(L"0." + std::wstring(400, L'0') + L"1e401", L'.'), 1);
    EXPECT_THROW(ParseNumber(L"1.234,5", CommaLocale()), RaisedError);
    EXPECT_THROW(ParseNumber(std::wstring_view(L"1\0", 2), L'.'), RaisedError);
}

TEST(LeadingNumber, StopsWhereTheNumberDoes)
{
    const std::pair<const wchar_t*, double> cases[] = {
        {L"2.0.1", 2.0}, {L"  1.4 beta", 1.4}, {L"-3,7", -3}, {L"1.5e", 1.5}, {L"abc", 0}, {L"infinity", 0}, {L"", 0}};
    for (const auto& [text, value] : cases) {
        EXPECT_EQ(LeadingNumber(text), value) << ToUtf8(text);
    }
}

TEST(SystemLocale, HasSeparatorsThatDifferAndLeavesTheTimeOutAtMidnight)
{
    const Locale& locale = SystemLocale();
    EXPECT_EQ(locale.GetLocaleString(locale_constant::listSeparator).size(), 1U);
    EXPECT_NE(locale.GetLocaleString(locale_constant::listSeparator), DecimalSeparator(locale));
    const std::wstring date = locale.FormatGeneralDate({2024, 3, 15, 0, 0, 0});
    const std::wstring both = locale.FormatGeneralDate({2024, 3, 15, 14, 5, 9});
    EXPECT_NE(date.find(L"15"), std::wstring::npos);
    EXPECT_EQ(both.substr(0, date.size() + 1), date + L" ");
    EXPECT_NE(both.find(L"05"), std::wstring::npos);
}

}  // namespace
}  // namespace tvn2x
