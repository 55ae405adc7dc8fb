#pragma once

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "util/CodePage.h"

namespace tvn2x {

/// A code page of the kind that Japan has: ASCII, katakana of one byte, and characters of two bytes whose second may be
/// a letter or a bracket. It lacks the micro sign, and has two places for one character.
class ShiftedCodePage : public CodePage
{
public:
    std::string Encode(std::wstring_view text) const override
    {
        std::string bytes;
        for (const wchar_t c : text) {
            if (c < 0x80) {
                bytes += static_cast<char>(c);
            } else if (c >= 0xFF61 && c <= 0xFF9F) {
                bytes += static_cast<char>(c - 0xFF61 + 0xA1);
            } else {
                bytes += PairOf(c);
            }
        }
        return bytes;
    }
    std::wstring Decode(std::string_view bytes) const override { return *Decoded(bytes, false); }
    std::optional<std::wstring> DecodeStrictly(std::string_view bytes) const override { return Decoded(bytes, true); }
    size_t Length(char first) const override
    {
        const auto byte = static_cast<unsigned char>(first);
        return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC) ? 2 : 1;
    }

private:
    /// The place that a character goes back to comes first.
    static constexpr std::array<std::pair<std::string_view, wchar_t>, 10> pairs{{
        {"\x81\x5B", L'\u30FC'},  // second byte "["
        {"\x83\x5D", L'\u30BE'},  // "]"
        {"\x83\x5C", L'\u30BD'},  // a backslash
        {"\x83\x41", L'\u30A2'},  // "A"
        {"\x83\x61", L'\u30C2'},  // "a"
        {"\x83\x93", L'\u30F3'},
        {"\x81\x8B", L'\u00B0'},
        {"\x81\x45", L'\u30FB'},  // what bytes that are none are taken for
        {"\xFA\x5C", L'\u7E8A'},
        {"\xED\x40", L'\u7E8A'},
    }};

    static std::string PairOf(wchar_t c)
    {
        for (const auto& [bytes, character] : pairs) {
            if (character == c) {
                return std::string(bytes);
            }
        }
        return "?";
    }
    std::optional<std::wstring> Decoded(std::string_view bytes, bool strictly) const
    {
        std::wstring text;
        while (!bytes.empty()) {
            const auto byte = static_cast<unsigned char>(bytes[0]);
            const size_t length = std::min(Length(bytes[0]), bytes.size());
            wchar_t c = byte < 0x80 ? byte : byte >= 0xA1 && byte <= 0xDF ? byte - 0xA1 + 0xFF61 : 0;
            for (const auto& [pair, character] : pairs) {
                c = pair == bytes.substr(0, length) ? character : c;
            }
            if (c == 0 && byte != 0 && strictly) {
                return std::nullopt;
            }
            text += c == 0 && byte != 0 ? L'\u30FB' : c;
            bytes.remove_prefix(length);
        }
        return text;
    }
};

}  // namespace tvn2x
