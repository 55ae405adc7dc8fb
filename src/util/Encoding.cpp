#include "util/Encoding.h"

#include "util/CodePage.h"

namespace tvn2x {
namespace {

constexpr char32_t replacement = 0xFFFD;
constexpr bool surrogatePairs = sizeof(wchar_t) == 2;

bool IsHighSurrogate(char32_t c)
{
    return c >= 0xD800 && c < 0xDC00;
}

bool IsLowSurrogate(char32_t c)
{
    return c >= 0xDC00 && c < 0xE000;
}

/// Takes one character from the front; half a surrogate pair is none.
char32_t TakeWide(std::wstring_view& text)
{
    const auto first = static_cast<char32_t>(text[0]);
    text.remove_prefix(1);
    if (surrogatePairs && IsHighSurrogate(first) && !text.empty() && IsLowSurrogate(text[0])) {
        const auto second = static_cast<char32_t>(text[0]);
        text.remove_prefix(1);
        return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
    }
    return IsHighSurrogate(first) || IsLowSurrogate(first) || first > 0x10FFFF ? replacement : first;
}

void AppendWide(std::wstring& text, char32_t c)
{
    if (surrogatePairs && c > 0xFFFF) {
        text += static_cast<wchar_t>(0xD800 + ((c - 0x10000) >> 10));
        text += static_cast<wchar_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
    } else {
        text += static_cast<wchar_t>(c);
    }
}

void AppendUtf8(std::string& bytes, char32_t c)
{
    const auto tail = [&](int shift) { bytes += static_cast<char>(0x80 | ((c >> shift) & 0x3F)); };
    if (c < 0x80) {
        bytes += static_cast<char>(c);
    } else if (c < 0x800) {
        bytes += static_cast<char>(0xC0 | (c >> 6));
        tail(0);
    } else if (c < 0x10000) {
        bytes += static_cast<char>(0xE0 | (c >> 12));
        tail(6);
        tail(0);
    } else {
        bytes += static_cast<char>(0xF0 | (c >> 18));
        tail(12);
        tail(6);
        tail(0);
    }
}

/// How a sequence goes on after its first byte, and which second bytes are left to it: the others would spell a
/// character in more bytes than it needs, half a surrogate pair, or one above U+10FFFF.
struct Lead
{
    int tails;
    unsigned char secondFrom;
    unsigned char secondTo;
};

Lead LeadOf(unsigned char byte)
{
    if (byte < 0x80) {
        return {0, 0, 0};
    }
    if (byte >= 0xC2 && byte < 0xE0) {
        return {1, 0x80, 0xBF};
    }
    if (byte >= 0xE0 && byte < 0xF0) {
        return {2, static_cast<unsigned char>(byte == 0xE0 ? 0xA0 : 0x80),
                static_cast<unsigned char>(byte == 0xED ? 0x9F : 0xBF)};
    }
    if (byte >= 0xF0 && byte < 0xF5) {
        return {3, static_cast<unsigned char>(byte == 0xF0 ? 0x90 : 0x80),
                static_cast<unsigned char>(byte == 0xF4 ? 0x8F : 0xBF)};
    }
    return {-1, 0, 0};
}

/// Takes one character from the front, or the longest piece that began like one.
char32_t TakeUtf8(std::string_view& bytes)
{
    const auto first = static_cast<unsigned char>(bytes[0]);
    bytes.remove_prefix(1);
    const Lead lead = LeadOf(first);
    if (lead.tails < 0) {
        return replacement;
    }
    if (lead.tails == 0) {
        return first;
    }
    char32_t c = first & (0x3FU >> lead.tails);
    for (int i = 0; i < lead.tails; ++i) {
        const unsigned char low = i == 0 ? lead.secondFrom : 0x80;
        const unsigned char high = i == 0 ? lead.secondTo : 0xBF;
        const auto byte = bytes.empty() ? 0 : static_cast<unsigned char>(bytes[0]);
        if (byte < low || byte > high) {
            return replacement;
        }
        bytes.remove_prefix(1);
        c = c << 6 | (byte & 0x3FU);
    }
    return c;
}

}  // namespace

std::string ToCodePage(std::wstring_view text)
{
    return SystemCodePage().Encode(text);
}

std::wstring FromCodePage(std::string_view bytes)
{
    return SystemCodePage().Decode(bytes);
}

std::string ToUtf8(std::wstring_view text)
{
    std::string bytes;
    bytes.reserve(text.size());
    while (!text.empty()) {
        AppendUtf8(bytes, TakeWide(text));
    }
    return bytes;
}

std::wstring FromUtf8(std::string_view bytes)
{
    std::wstring text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        AppendWide(text, TakeUtf8(bytes));
    }
    return text;
}

}  // namespace tvn2x
