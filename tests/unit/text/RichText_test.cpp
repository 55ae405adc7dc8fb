#include "text/RichText.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "support/TestTable.h"
#include "text/Blanks.h"
#include "text/Folding.h"
#include "text/TextInput.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

TEST(RichText, PlainNotesStayAsTheyAreButForTheirLineEnds)
{
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {{L"", L""},
                                                               {L"a {b} \\par c\r\n\r\n", L"a {b} \\par c"},
                                                               {L"a\r\nb\rc\nd ", L"a\nb\nc\nd "},
                                                               {L"{\\rt", L"{\\rt"},
                                                               {L" {\\rtf1 x}", L" {\\rtf1 x}"}};
    for (const auto& [notes, plain] : cases) {
        EXPECT_EQ(PlainText(notes), plain);
    }
}

TEST(RichText, OnlyTheWordsOfAnEditorsNotesAreLeft)
{
    EXPECT_EQ(PlainText(L"{\\rtf1\\ansi\\ansicpg1252\\deff0\\nouicompat{\\fonttbl{\\f0\\fmodern\\fcharset0 Lucida "
                        L"Console;}}\r\n{\\colortbl ;\\red0\\green0\\blue128;}\r\n{\\*\\generator Rich;}\\viewkind4"
                        L"\\uc1 \r\n\\pard\\cf1\\protect\\f0\\fs20\\lang1033 Site:\\cf0\\protect0  north\\par\r\n"
                        L"\\par\r\nAmplifier {\\b bold} 3\\tab ok\\par\r\n}\r\n\0"),
              L"Site: north\n\nAmplifier bold 3\tok");
}

/// Characters in every notation, bytes in the code page of their font or of the text, what is no text or is not shown,
/// and damage.
TEST(RichText, EveryBodyReadsAsTheTableSays)
{
    for (const std::vector<std::string>& row : TestTable("rich-text.tsv", 2)) {
        EXPECT_EQ(PlainText(FromUtf8("{\\rtf1\\ansi " + CellText(row[0]) + "}")), FromUtf8(CellText(row[1]))) << row[0];
    }
    EXPECT_EQ(PlainText(L"{\\rtf1\\ansi " + std::wstring(100000, L'{') + L"deep}"), L"deep");
    EXPECT_EQ(PlainText(L"{\\rtf1 a\\"), L"a");
    EXPECT_EQ(PlainText(L"{\\rtf1 \\'e4"), L"\u00E4") << "a byte waits for the next one of its character";
    EXPECT_EQ(PlainText(L"{\\rtf1}}}} left over"), L"");
}

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
    const std::wstring pair{static_cast<wchar_t>(0xD83D), static_cast<wchar_t>(0xDCE1)};
    EXPECT_EQ(Excerpt(std::wstring(39, L'a') + pair), L"\"" + std::wstring(39, L'a') + L"…\"") << "no half of a pair";
}

TEST(Folding, AloneTheCaseOfAToZIsNoDifference)
{
    for (const auto& [left, right, isEqual] : {std::tuple("", "", true),
                                               {"Parameters To Save", "parameters to save", true},
                                               {"[", "{", false},
                                               {"AZ", "az", true},
                                               {"@`", "`@", false},
                                               {"Frequency   01", "FREQUENCY   02", false},
                                               {"Position 01", "Polition 01", false},
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
