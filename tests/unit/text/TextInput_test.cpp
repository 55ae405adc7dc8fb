#include "text/TextInput.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "text/Blanks.h"
#include "text/Folding.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

TEST(TextInput, LinesEndWithLfOrCrLfAndLoseTheirBlanks)
{
    LineReader reader("\xEF\xBB\xBF one \r\n\t\r\ntwo\f\n\nlast");
    std::vector<std::string> lines;
    for (std::string_view line; reader.Next(line);) {
        lines.emplace_back(line);
    }
    EXPECT_EQ(lines, (std::vector<std::string>{"one", "", "two", "", "last"}));
    EXPECT_EQ(reader.Number(), 5);
    EXPECT_EQ(TrimBlanks(L" \tµ "), L"µ");
}

TEST(TextInput, AnExcerptIsShortAndShowsThatItIs)
{
    const std::string wide = ToUtf8(L"\U0001F4E1");
    std::string many;
    for (int i = 0; i < 41; ++i) {
        many += wide;
    }
    EXPECT_EQ(Excerpt(std::string(40, 'a')), L"\"" + std::wstring(40, L'a') + L"\"");
    EXPECT_EQ(Excerpt(std::string(41, 'a')), L"\"" + std::wstring(40, L'a') + L"…\"");
    EXPECT_TRUE(Excerpt(many).ends_with(L"\U0001F4E1…\""));
    EXPECT_EQ(Excerpt("a\tb\x7F"), L"\"a?b?\"");
}

TEST(Folding, AloneTheCaseOfAToZIsNoDifference)
{
    for (const auto& [left, right, isEqual] : {std::tuple("", "", true),
                                               {"Parameters To Save", "parameters to save", true},
                                               {"[", "{", false},
                                               {"@`", "`@", false},
                                               {"Frequency   01", "FREQUENCY   02", false},
                                               {"\xC3\x84", "\xC3\xA4", false}}) {
        EXPECT_EQ(EqualIgnoringCase(left, right), isEqual) << left;
        EXPECT_EQ(!IgnoreCase()(left, right) && !IgnoreCase()(right, left), isEqual) << left;
        EXPECT_EQ(HashIgnoringCase(left) == HashIgnoringCase(right), isEqual) << left;
        EXPECT_EQ(EqualIgnoringCase(FromUtf8(left), FromUtf8(right)), isEqual) << left;
    }
    EXPECT_TRUE(EqualIgnoringCase(L"MER", "mer"));
    EXPECT_FALSE(EqualIgnoringCase(L"\u016D\u0165\u0172", "mer"));
}

}  // namespace
}  // namespace tvn2x
