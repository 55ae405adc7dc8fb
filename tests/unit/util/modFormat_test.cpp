#include "util/modFormat.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
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
        EXPECT_EQ(Format(value, pattern == "NULL" ? L"" : FromUtf8(Unquote(pattern))), Unquote(line.substr(second + 1)))
            << line;
    }
    EXPECT_EQ(rows, 602);
}

TEST(FormatSignificant, KeepsItsDigitsAtEverySizeWithoutAnExponent)
{
    const std::pair<double, const wchar_t*> cases[] = {
        {0.044668359, L"0.04467"},
        {1, L"1.000"},
        {31.6227766, L"31.62"},
        {-0.25118864, L"-0.2512"},
        {0.99995, L"1.000"},  // rounding carries into another decade
        {0.099994, L"0.09999"},
        {9.9996, L"10.00"},
        {999.95, L"1000"},
        {9999.6, L"10000"},
        {12345, L"12350"},
        {0, L"0.000"},
        {-0.0, L"0.000"},
        {1e15, L"1000000000000000"},
        {1.23456e-12, L"0.000000000001235"},
        {1.23456e-14, L"0.000000000000012"},  // behind the 15th decimal
        {1e-300, L"0.000"},
        {std::nan(""), L"NaN"},
    };
    for (const auto& [value, text] : cases) {
        EXPECT_EQ(FormatSignificant(value, 4, false, FixedLocale()), text) << value;
    }
    EXPECT_EQ(FormatSignificant(0.5, 2, true, CommaLocale()), L"0,50");
    EXPECT_EQ(FormatSignificant(0.5, 2, false, CommaLocale()), L"0.50");
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
    std::wstring text = L"a=";
    AppendNumber(text, -0.5, L"#0.000", false, FixedLocale());
    AppendNumber(text, 1e20, {}, false, FixedLocale());
    EXPECT_EQ(text, L"a=-0.5001E+20") << "what stands before it stays";
}

}  // namespace
}  // namespace tvn2x
