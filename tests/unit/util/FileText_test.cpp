#include "util/FileText.h"

#include <gtest/gtest.h>

#include "support/ShiftedCodePage.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

using namespace file_text;

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
                EXPECT_EQ(page->DecodeStrictly(bytes).has_value(), IsKnown(text, *page));
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
