#include "util/modFormat.h"

#include <gtest/gtest.h>

#include <charconv>
#include <fstream>

#include "support/FixedLocale.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

std::string Format(double value, std::wstring_view pattern = {})
{
    return ToUtf8(FormatNumber(value, pattern, false, FixedLocale()));
}

std::string Unquote(const std::string& text)
{
    return text.substr(1, text.size() - 2);
}

/// By pattern, or by the number of significant digits.
TEST(FormatNumber, GivesEveryRecordedText)
{
    std::ifstream file(TVN_TEST_DATA "/number-format.tsv");
    std::string line;
    std::getline(file, line);
    int rows = 0;
    for (; std::getline(file, line); ++rows) {
        const size_t first = line.find('\t');
        const size_t second = line.find('\t', first + 1);
        const std::string pattern = line.substr(first + 1, second - first - 1);
        double value = 0;
        std::from_chars(line.data(), line.data() + first, value);
        const std::string text = pattern == "4 digits" ? ToUtf8(FormatSignificant(value, 4, false, FixedLocale()))
                                 : pattern == "NULL"   ? Format(value)
                                                       : Format(value, FromUtf8(Unquote(pattern)));
        EXPECT_EQ(text, Unquote(line.substr(second + 1))) << line;
    }
    EXPECT_EQ(rows, 619);
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

}  // namespace
}  // namespace tvn2x
