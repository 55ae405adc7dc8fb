#include "text/RichText.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <utility>

namespace tvn2x {
namespace {

using Cases = std::initializer_list<std::pair<std::wstring, std::wstring>>;

/// Each body of a rich text says what stands beside it.
void ExpectBodies(Cases cases)
{
    for (const auto& [body, plain] : cases) {
        EXPECT_EQ(PlainText(L"{\\rtf1\\ansi " + body + L"}"), plain) << body.substr(0, 100);
    }
}

TEST(RichText, PlainNotesStayAsTheyAreButForTheirLineEnds)
{
    for (const auto& [notes, plain] : Cases{{L"", L""},
                                            {L"a {b} \\par c\r\n\r\n", L"a {b} \\par c"},
                                            {L"a\r\nb\rc\nd ", L"a\nb\nc\nd "},
                                            {L"{\\rt", L"{\\rt"},
                                            {L" {\\rtf1 x}", L" {\\rtf1 x}"}}) {
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

TEST(RichText, CharactersInEveryNotation)
{
    ExpectBodies({
        {L"\\'b0\\'B5", L"\u00B0\u00B5"},
        {L"\\u8364?x", L"\u20ACx"},                            // with its stand-in
        {L"\\uc0\\u-4064 x", L"\uF020x"},                      // without one, and as a signed number
        {L"{\\uc2\\u8364\\'80e}\\u8364??", L"\u20AC\u20AC?"},  // the group's own count of stand-ins
        {L"\\u-10179?\\u-8704?\\u128512?", L"\U0001F600\U0001F600"},
        {L"\\{\\\\\\}\\~\\_\\-\\ldblquote a\\rdblquote\\emdash", L"{\\}\u00A0\u2011\u201Ca\u201D\u2014"},
        {L"a\\enspace b\\emspace c\\qmspace d\\bullet\\lquote\\rquote\\endash",
         L"a\u2002b\u2003c\u2005d\u2022\u2018\u2019\u2013"},
        {L"a\\line b\\\r\nc\\\td\\cell e\\row f", L"a\nb\nc\td\te\nf"},
        {L"\\parb x\\par1 y", L"x\ny"},  // a longer word is another one
        {L"kept as it stands: µ", L"kept as it stands: µ"},
    });
}

TEST(RichText, BytesAreReadInTheCodePageOfTheirFontOrOfTheText)
{
    const std::wstring fonts =
        L"{\\fonttbl{\\f0\\fnil Arial;}{\\f1\\fnil\\fcharset204 Arial CYR;}{\\f2\\fcharset128 Gothic;}"
        L"{\\f3\\fcharset2 Symbol;}{\\f4\\cpg1253 Greek;}{\\f5\\fcharset0 Latin;}}";
    ExpectBodies({
        {L"\\ansicpg1251\\'cf\\'eb\\'e0\\'ed", L"План"},
        {L"\\ansicpg1250\\deff1" + fonts + L"\\'cf{\\f0\\'e8\\plain\\'e8}\\f5\\'e8", L"Пčиè"},
        {fonts + L"\\f2\\'83v\\'83\\'8d ABC\\f4\\'d9", L"プロ ABCΩ"},
        {fonts + L"{\\pntext\\f3\\'b7\\tab}one", L"•\tone"},
        {L"\\mac\\'8a", L"ä"},
        {fonts + L"\\f1\\'cf\\f\\'cf", L"ПÏ"},  // without a number, the first
        {L"\\ansicpg99999\\'b5", L"µ"},
    });
}

TEST(RichText, WhatIsNoTextOrIsNotShownStaysOut)
{
    ExpectBodies({
        {L"a{\\pict\\wmetafile8 0102{\\x y}}b{\\info{\\title t}}{\\header h}", L"ab"},
        {L"a{\\*\\unknown b\\u8364?\\par}c", L"ac"},
        {L"a\\bin3 }{\\b", L"ab"},
        {L"a{\\v hidden {\\b too}}b\\v not\\u8364?\\v0 c\\v d\\plain e", L"abce"},
        {L"a{\\deleted gone\\'b5}b\\deleted c\\deleted0 d", L"abd"},
        {L"{\\field{\\*\\fldinst HYPERLINK \"x\"}{\\fldrslt link}}", L"link"},
        {L"a}b", L"a"},
    });
}

TEST(RichText, DamagedNotesGiveWhatCanBeRead)
{
    ExpectBodies({
        {L"open {group", L"open group"},
        {L"a\\'", L"a"},
        {L"a\\'4gb", L"a4gb"},
        {L"a\\u", L"a"},
        {L"a\\u-10179?b\\u-8704?\\u2000000?", L"a\uFFFDb\uFFFD\uFFFD"},
        {L"a\\bin99999999999999 b", L"a"},
        {std::wstring(L"a\0b", 3), L"ab"},
        {std::wstring(100000, L'{') + L"deep", L"deep"},
    });
    EXPECT_EQ(PlainText(L"{\\rtf1 a\\"), L"a");
    EXPECT_EQ(PlainText(L"{\\rtf1}}}} left over"), L"");
}

}  // namespace
}  // namespace tvn2x
