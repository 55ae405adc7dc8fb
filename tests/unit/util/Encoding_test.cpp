#include "util/Encoding.h"

#include <gtest/gtest.h>

namespace tvn2x {
namespace {

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

}  // namespace
}  // namespace tvn2x
