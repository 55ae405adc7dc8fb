#include "text/RichText.h"

#include <gtest/gtest.h>

#include "support/TestTable.h"
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
    EXPECT_EQ(PlainText(L"{\\rtf1}}}} left over"), L"");
}

}  // namespace
}  // namespace tvn2x
