#include "measure/RichText.h"

#include <gtest/gtest.h>

namespace tvn2x {
namespace {

std::wstring Body(const std::wstring& body)
{
    return PlainText(L"{\\rtf1\\ansi " + body + L"}");
}

TEST(RichText, PlainNotesStayAsTheyAre)
{
    for (const wchar_t* notes : {L"", L"a {b} \\par c\r\n", L"{\\rt", L" {\\rtf1 x}"})
        EXPECT_EQ(PlainText(notes), notes);
}

TEST(RichText, OnlyTheWordsOfAnEditorsNotesAreLeft)
{
    EXPECT_EQ(PlainText(L"{\\rtf1\\ansi\\ansicpg1252\\deff0\\nouicompat{\\fonttbl{\\f0\\fmodern\\fcharset0 Lucida "
                        L"Console;}}\r\n{\\colortbl ;\\red0\\green0\\blue128;}\r\n{\\*\\generator Rich;}\\viewkind4"
                        L"\\uc1 \r\n\\pard\\cf1\\protect\\f0\\fs20\\lang1033 Site:\\cf0\\protect0  north\\par\r\n"
                        L"\\par\r\nAmplifier {\\b bold} 3\\tab ok\\par\r\n}\r\n\0"),
              L"Site: north\n\nAmplifier bold 3\tok\n");
}

TEST(RichText, CharactersInEveryNotation)
{
    EXPECT_EQ(Body(L"\\'b0\\'B5"), L"\u00B0\u00B5");
    EXPECT_EQ(Body(L"\\u8364?x"), L"\u20ACx") << "with its stand-in";
    EXPECT_EQ(Body(L"\\uc0\\u-4064 x"), L"\uF020x") << "without one, and as a signed number";
    EXPECT_EQ(Body(L"{\\uc2\\u8364\\'80e}\\u8364??"), L"\u20AC\u20AC?") << "the group's own count of stand-ins";
    EXPECT_EQ(Body(L"\\u-10179?\\u-8704?"), L"\U0001F600");
    EXPECT_EQ(Body(L"\\{\\\\\\}\\~\\_\\-\\ldblquote a\\rdblquote\\emdash"), L"{\\}\u00A0\u2011\u201Ca\u201D\u2014");
    EXPECT_EQ(Body(L"a\\line b\\\r\nc"), L"a\nb\nc");
    EXPECT_EQ(Body(L"\\parb\\par1"), L"\n") << "a longer word is another one";
}

TEST(RichText, WhatIsNoTextStaysOut)
{
    EXPECT_EQ(Body(L"a{\\pict\\wmetafile8 0102{\\x y}}b"), L"ab");
    EXPECT_EQ(Body(L"a{\\*\\unknown b\\u8364?\\par}c"), L"ac");
    EXPECT_EQ(Body(L"a\\bin3 }{\\b"), L"ab");
    EXPECT_EQ(PlainText(L"{\\rtf1 a}b"), L"a");
}

TEST(RichText, DamagedNotesGiveWhatCanBeRead)
{
    EXPECT_EQ(PlainText(L"{\\rtf1 open {group"), L"open group");
    EXPECT_EQ(Body(L"a\\'"), L"a");
    EXPECT_EQ(Body(L"a\\'4gb"), L"a4gb");
    EXPECT_EQ(PlainText(L"{\\rtf1 a\\"), L"a");
    EXPECT_EQ(PlainText(L"{\\rtf1 a\\u"), std::wstring(L"a\0", 2));
    EXPECT_EQ(Body(L"a\\bin99999999999999 b"), L"a");
    EXPECT_EQ(PlainText(L"{\\rtf1 " + std::wstring(100000, L'{') + L"deep"), L"deep");
}

}  // namespace
}  // namespace tvn2x
