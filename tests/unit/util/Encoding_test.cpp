#include "util/Encoding.h"

#include <gtest/gtest.h>

#include "support/ShiftedCodePage.h"
#include "util/FileText.h"
#include "util/Unicode.h"

namespace tvn2x {
namespace {

using namespace file_text;

TEST(CodePage, KeepsEveryByteAndHasAQuestionMarkForWhatIsNotOfWesternEurope)
{
    for (int byte = 0; byte < 256; ++byte) {
        EXPECT_EQ(ToCodePage(FromCodePage(std::string(1, static_cast<char>(byte)))),
                  std::string(1, static_cast<char>(byte)));
    }
    EXPECT_EQ(ToCodePage(L"dB\u00B5V \u20AC \u2013 \u0178"), "dB\xB5V \x80 \x96 \x9F");
    EXPECT_EQ(FromCodePage("\x80\x81\x8D\x8E\x9F\xA0\xFF"), L"\u20AC\u0081\u008D\u017D\u0178\u00A0\u00FF");
    EXPECT_EQ(ToCodePage(L"\u03A9 \uFF3B\uFF1D \u0080 \uFFFD"), "? ?? ? ?");
}

TEST(CodePage, OfANumberIsReadAsFarAsItGoes)
{
    EXPECT_EQ(DecodeNumbered(10000, "\x80"), L"\u00C4");
    EXPECT_EQ(DecodeNumbered(932, "[\x83\x5D\x83"), L"[\u30BE\uFFFD");
    EXPECT_EQ(DecodeNumbered(1258, "a\xD2"), L"\u1EA3") << "a letter with its accent behind it";
    EXPECT_EQ(DecodeNumbered(1258, "a"), L"a");
    EXPECT_EQ(DecodeNumbered(65001, "\xC3\x84"), L"\u00C4");
    EXPECT_EQ(DecodeNumbered(54321, "a"), std::nullopt);
}

TEST(Utf8, RoundTripsEveryLength)
{
    const std::wstring text = L"A\u007F\u0080\u07FF\u0800\uD7FF\uE000\uFFFF\U00010000\U0010FFFF";
    const std::string bytes =
        "A\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF\xF0\x90\x80\x80"
        "\xF4\x8F\xBF\xBF";
    EXPECT_EQ(ToUtf8(text), bytes);
    EXPECT_EQ(FromUtf8(bytes), text);
}

TEST(Utf8, ReplacesWhatIsNone)
{
    EXPECT_EQ(FromUtf8("a\x80z"), L"a\uFFFDz");                            // a tail without a lead
    EXPECT_EQ(FromUtf8("\xE2\x82z"), L"\uFFFDz");                          // cut short
    EXPECT_EQ(FromUtf8("\xF0\x9F\x98"), L"\uFFFD");                        // cut short by the end
    EXPECT_EQ(FromUtf8("\xC0\xAF"), L"\uFFFD\uFFFD");                      // "/" in two bytes
    EXPECT_EQ(FromUtf8("\xED\xA0\x80"), L"\uFFFD\uFFFD\uFFFD");            // half a surrogate pair
    EXPECT_EQ(FromUtf8("\xF4\x90\x80\x80"), L"\uFFFD\uFFFD\uFFFD\uFFFD");  // above U+10FFFF
    EXPECT_EQ(ToUtf8(std::wstring(1, static_cast<wchar_t>(0xD800)) + L"x"), "\xEF\xBF\xBDx");
}

/// Windows has units of 16 bits, whatever the machine has that runs this.
TEST(Unicode, IsAPairWhereOneUnitDoesNotDo)
{
    std::u16string pairs;
    std::u32string characters;
    for (const uint32_t c : {0xFFFFU, 0x10000U, 0x1F4FAU, 0x10FFFFU}) {
        AppendCharacter(pairs, c);
        AppendCharacter(characters, c);
    }
    EXPECT_TRUE(pairs == u"\uFFFF\U00010000\U0001F4FA\U0010FFFF");
    EXPECT_TRUE(characters == U"\uFFFF\U00010000\U0001F4FA\U0010FFFF");
    EXPECT_EQ(0x1F4FAU, JoinedSurrogates(0xD83D, 0xDCFA));
}

const ShiftedCodePage shifted;

/// A text is converted in pieces of 4096 bytes; what stands at their edges comes back as what stands elsewhere.
TEST(FileText, BytesComeBackWhereverTheyStandInEveryCodePage)
{
    for (const CodePage* const page : {&SystemCodePage(), &Utf8CodePage(), static_cast<const CodePage*>(&shifted)}) {
        for (const std::string_view piece :
             {"\x83\x5D", "\xED\x40", "\x83", "\xC2\xB5", "\xE2\x82", "\xF0\x9F\x98\x80"}) {
            for (const size_t before : {0, 1, 4093, 4094, 4095, 4096}) {
                const std::string bytes = std::string(before, '\x83').append(piece).append("\r\n=");
                const std::string text = FromBytes(bytes, *page);
                EXPECT_EQ(bytes, ToBytes(text, *page));
                const bool known = page->DecodeStrictly(bytes).has_value();
                EXPECT_EQ(known ? std::optional(FromUtf16(ToUtf16(text, *page))) : std::nullopt,
                          InCharacters(text, *page));
                EXPECT_EQ(ToWide(text, *page), ToWide(FromUtf16(ToUtf16(text, *page)), *page));
            }
        }
    }
}

TEST(FileText, AByteInsideACharacterIsNotTheCharacterThatItWouldBeAlone)
{
    const std::string text = FromBytes("[\x83\x5D\x81\x5B]\x83\x5C", shifted);
    EXPECT_EQ(1u, text.find_first_not_of("["));
    EXPECT_EQ(text.find(']'), text.rfind(']'));
    EXPECT_EQ(std::string::npos, text.find('\\'));
    EXPECT_EQ("\x83", ToBytes(FromBytes("\x83\r\n", shifted).substr(0, 4), shifted)) << "a line end stays one";
    EXPECT_EQ(L"\u30FB=", ToWide(FromBytes("\x83=", shifted), shifted));
    EXPECT_EQ(L"\u7E8A", ToWide(FromBytes("\xED\x40", shifted), shifted));
}

TEST(FileText, TellsWhatACodePageCanHold)
{
    const std::wstring half(1, static_cast<wchar_t>(0xD83D));
    const std::tuple<std::wstring, bool, bool, bool> cases[] = {
        {L"", true, true, true},           {L"A1?", true, true, true},           {L"dB\u00B5V", true, true, false},
        {L"\u010CT1", false, true, false}, {L"\u30BE\u30FC", false, true, true}, {L"\U0010FFFF", false, true, false},
        {half, false, false, false},       {L"\u0081", true, true, false},
    };
    for (const auto& [wide, in1252, inUtf8, inShifted] : cases) {
        const std::string text = FromWide(wide);
        EXPECT_EQ(in1252, Fits(text, SystemCodePage())) << ToUtf8(wide);
        EXPECT_EQ(inUtf8, Fits(text, Utf8CodePage())) << ToUtf8(wide);
        EXPECT_EQ(inShifted, Fits(text, shifted)) << ToUtf8(wide);
        EXPECT_EQ(wide, ToWide(FromUtf16(ToUtf16(text, shifted)), shifted)) << "UTF-16 holds everything";
    }
    EXPECT_EQ("\u00E9\U0001F600", FirstUnits("\u00E9\U0001F600x", 3));
    EXPECT_EQ("\u00E9", FirstUnits("\u00E9\U0001F600x", 2)) << "no half of a pair";
}

}  // namespace
}  // namespace tvn2x
