#include "util/FileText.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "util/Unicode.h"

namespace tvn2x::file_text {
namespace {

constexpr uint32_t byteZero = lastCharacter + 1;  ///< the "character" that stands for the byte 0
constexpr size_t byteLength = 4;                  ///< of such a character
constexpr size_t longestPiece = 4096;             ///< converted in one go

bool IsAscii(char c)
{
    return static_cast<unsigned char>(c) < 0x80;
}

/// From `at` on; the text's size where there is none.
size_t FindNonAscii(std::string_view text, size_t at)
{
    constexpr uint64_t highBits = 0x8080808080808080;
    for (; at + 8 <= text.size(); at += 8) {
        uint64_t eight = 0;
        std::memcpy(&eight, text.data() + at, sizeof eight);
        if ((eight & highBits) != 0) {
            break;
        }
    }
    while (at < text.size() && IsAscii(text[at])) {
        ++at;
    }
    return at;
}

size_t CharacterLength(char first)
{
    const auto lead = static_cast<unsigned char>(first);
    return lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

uint32_t Take(std::string_view& text)
{
    const auto lead = static_cast<unsigned char>(text[0]);
    const size_t length = std::min(CharacterLength(text[0]), text.size());
    uint32_t c = length == 1 ? lead : lead & (0x7FU >> length);
    for (size_t i = 1; i < length; ++i) {
        c = c << 6 | (static_cast<unsigned char>(text[i]) & 0x3FU);
    }
    text.remove_prefix(length);
    return c;
}

bool StandsForByte(std::string_view text)
{
    return text.size() >= byteLength && static_cast<unsigned char>(text[0]) == 0xF4 &&
           static_cast<unsigned char>(text[1]) >= 0x90;
}

/// The bytes that the beginning of a text stands for, taken from it.
std::string TakeBytes(std::string_view& text)
{
    std::string bytes;
    while (StandsForByte(text)) {
        bytes += static_cast<char>(Take(text) - byteZero);
    }
    return bytes;
}

/// The beginning of a text up to what stands for a byte, taken from it.
std::string_view TakeCharacters(std::string_view& text)
{
    size_t end = 0;
    while (end < text.size() && !StandsForByte(text.substr(end))) {
        end = FindNonAscii(text, end + CharacterLength(text[end]));
    }
    const std::string_view characters = text.substr(0, end);
    text.remove_prefix(characters.size());
    return characters;
}

/// Joins the units of UTF-16 that `unit` hands out by their number; half a pair stays what it is.
template <class Unit>
void AppendUnits(std::string& text, size_t count, Unit unit)
{
    for (size_t at = 0; at < count; ++at) {
        uint32_t c = unit(at);
        if (IsHighSurrogate(c) && at + 1 < count && IsLowSurrogate(unit(at + 1))) {
            c = JoinedSurrogates(c, unit(++at));
        }
        AppendUtf8(text, c > lastCharacter ? replacementCharacter : c);
    }
}

/// How many bytes from a character's first one on belong together: a line end or a blank belongs to no other.
size_t LengthAt(std::string_view bytes, const CodePage& page)
{
    const size_t length = std::min(page.Length(bytes[0]), bytes.size());
    const auto stop = std::find_if(bytes.begin() + 1, bytes.begin() + static_cast<ptrdiff_t>(length),
                                   [](char c) { return static_cast<unsigned char>(c) < 0x30; });
    return static_cast<size_t>(stop - bytes.begin());
}

/// Where a piece ends that is worth a conversion: before long it goes on in ASCII, or is long enough.
size_t PieceEnd(std::string_view bytes, size_t at, const CodePage& page)
{
    constexpr size_t longAscii = 64;
    const size_t most = std::min(bytes.size(), at + longestPiece);
    for (size_t ascii = 0; at < most && ascii < longAscii;) {
        ascii = IsAscii(bytes[at]) ? ascii + 1 : 0;
        at += ascii != 0 ? 1 : LengthAt(bytes.substr(at), page);
    }
    return at;
}

/// The text of a piece; empty where it would not come back as the same bytes.
std::string Converted(std::string_view bytes, const CodePage& page)
{
    const std::optional<std::wstring> wide = page.DecodeStrictly(bytes);
    return wide && page.Encode(*wide) == bytes ? FromWide(*wide) : std::string();
}

/// Character by character, what does not come back kept as bytes. Some code pages have two places for one character:
/// of those, one comes back as the other.
std::string ConvertedSingly(std::string_view bytes, const CodePage& page)
{
    std::string text;
    while (!bytes.empty()) {
        if (IsAscii(bytes[0])) {
            text += bytes[0];
            bytes.remove_prefix(1);
            continue;
        }
        size_t length = LengthAt(bytes, page);
        const std::string character = Converted(bytes.substr(0, length), page);
        text += character;
        if (character.empty()) {
            length = page.DecodeStrictly(bytes.substr(0, length)) ? length : 1;
            for (const char byte : bytes.substr(0, length)) {
                AppendUtf8(text, byteZero + static_cast<unsigned char>(byte));
            }
        }
        bytes.remove_prefix(length);
    }
    return text;
}

/// Hands out the file's text piece by piece.
template <class Sink>
void ConvertPieces(std::string_view bytes, const CodePage& page, Sink sink)
{
    for (size_t at = 0; at < bytes.size();) {
        const size_t other = FindNonAscii(bytes, at);
        sink(bytes.substr(at, other - at));
        at = PieceEnd(bytes, other, page);
        const std::string_view piece = bytes.substr(other, at - other);
        const std::string text = Converted(piece, page);
        sink(std::string_view(text.empty() && !piece.empty() ? ConvertedSingly(piece, page) : text));
    }
}

}  // namespace

std::string FromBytes(std::string bytes, const CodePage& page)
{
    if (FindNonAscii(bytes, 0) == bytes.size()) {
        return bytes;
    }
    // Measured first: a large file's text must not be moved as it grows.
    size_t size = 0;
    ConvertPieces(bytes, page, [&](std::string_view piece) { size += piece.size(); });
    std::string text;
    text.reserve(size);
    ConvertPieces(bytes, page, [&](std::string_view piece) { text += piece; });
    return text;
}

std::string ToBytes(std::string text, const CodePage& page)
{
    if (FindNonAscii(text, 0) == text.size()) {
        return text;
    }
    std::string bytes;
    bytes.reserve(text.size());
    for (std::string_view rest = text; !rest.empty();) {
        const size_t other = FindNonAscii(rest, 0);
        bytes += rest.substr(0, other);
        rest.remove_prefix(other);
        std::string_view piece = FirstUnits(rest, longestPiece);
        rest.remove_prefix(piece.size());
        while (!piece.empty()) {
            bytes += TakeBytes(piece);
            bytes += page.Encode(ToWide(TakeCharacters(piece), page));
        }
    }
    return bytes;
}

bool Fits(std::string_view text, const CodePage& page)
{
    if (FindNonAscii(text, 0) == text.size()) {
        return true;
    }
    const std::wstring wide = ToWide(text, page);
    return page.Decode(page.Encode(wide)) == wide;
}

std::optional<std::string> InCharacters(std::string_view text, const CodePage& page)
{
    std::string characters;
    characters.reserve(text.size());
    while (!text.empty()) {
        characters += TakeCharacters(text);
        const std::optional<std::wstring> wide = page.DecodeStrictly(TakeBytes(text));
        if (!wide) {
            return std::nullopt;
        }
        characters += FromWide(*wide);
    }
    return characters;
}

std::string FromUtf16(std::string_view bytes)
{
    const auto unit = [&](size_t at) {
        return static_cast<uint32_t>(static_cast<unsigned char>(bytes[2 * at]) |
                                     static_cast<unsigned char>(bytes[2 * at + 1]) << 8);
    };
    std::string text;
    text.reserve(bytes.size() / 2);
    AppendUnits(text, bytes.size() / 2, unit);
    return text;
}

std::string ToUtf16(std::string_view text, const CodePage& page)
{
    std::u16string units;
    units.reserve(text.size());
    while (!text.empty()) {
        if (!StandsForByte(text)) {
            AppendCharacter(units, Take(text));
            continue;
        }
        for (const wchar_t c : page.Decode(TakeBytes(text))) {
            AppendCharacter(units, static_cast<uint32_t>(c));
        }
    }
    std::string bytes;
    bytes.reserve(units.size() * 2);
    for (const char16_t unit : units) {
        bytes += static_cast<char>(unit & 0xFF);
        bytes += static_cast<char>(unit >> 8);
    }
    return bytes;
}

std::string FromWide(std::wstring_view wide)
{
    std::string text;
    text.reserve(wide.size());
    AppendUnits(text, wide.size(), [&](size_t at) { return static_cast<uint32_t>(wide[at]); });
    return text;
}

std::wstring ToWide(std::string_view text, const CodePage& page)
{
    std::wstring wide;
    wide.reserve(text.size());
    while (!text.empty()) {
        if (StandsForByte(text)) {
            wide += page.Decode(TakeBytes(text));
        } else {
            AppendCharacter(wide, Take(text));
        }
    }
    return wide;
}

std::string_view FirstUnits(std::string_view text, size_t units)
{
    if (text.size() <= units) {
        return text;
    }
    size_t at = 0;
    while (at < text.size()) {
        const size_t length = CharacterLength(text[at]);
        const size_t taken = length == byteLength && !StandsForByte(text.substr(at)) ? 2 : 1;
        if (taken > units) {
            break;
        }
        units -= taken;
        at += length;
    }
    return text.substr(0, at);
}

}  // namespace tvn2x::file_text
