#include "util/Encoding.h"

#include "util/CodePage.h"
#include "util/Unicode.h"

namespace tvn2x {
namespace {

/// Takes one character from the front; half a surrogate pair is none.
uint32_t TakeWide(std::wstring_view& text)
{
    const auto first = static_cast<char32_t>(text[0]);
    text.remove_prefix(1);
    if (sizeof(wchar_t) == 2 && IsHighSurrogate(first) && !text.empty()) {
        if (const auto second = static_cast<char32_t>(text[0]); IsLowSurrogate(second)) {
            text.remove_prefix(1);
            return JoinedSurrogates(first, second);
        }
    }
    return IsHighSurrogate(first) || IsLowSurrogate(first) || first > lastCharacter ? replacementCharacter : first;
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
uint32_t TakeUtf8(std::string_view& bytes)
{
    const auto first = static_cast<unsigned char>(bytes[0]);
    bytes.remove_prefix(1);
    const Lead lead = LeadOf(first);
    if (lead.tails < 0) {
        return replacementCharacter;
    }
    if (lead.tails == 0) {
        return first;
    }
    uint32_t c = first & (0x3FU >> lead.tails);
    for (int i = 0; i < lead.tails; ++i) {
        const unsigned char low = i == 0 ? lead.secondFrom : 0x80;
        const unsigned char high = i == 0 ? lead.secondTo : 0xBF;
        const auto byte = bytes.empty() ? 0 : static_cast<unsigned char>(bytes[0]);
        if (byte < low || byte > high) {
            return replacementCharacter;
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
        AppendCharacter(text, TakeUtf8(bytes));
    }
    return text;
}

}  // namespace tvn2x
