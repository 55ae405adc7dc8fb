#pragma once

#include <cstdint>
#include <string>

namespace tvn2x {

constexpr uint32_t replacementCharacter = 0xFFFD;  ///< stands for what is no character
constexpr uint32_t lastCharacter = 0x10FFFF;
constexpr uint32_t firstPair = 0x10000;  ///< the first character that is two units of UTF-16

constexpr bool IsHighSurrogate(uint32_t unit)
{
    return unit >= 0xD800 && unit < 0xDC00;
}

constexpr bool IsLowSurrogate(uint32_t unit)
{
    return unit >= 0xDC00 && unit < 0xE000;
}

/// The character of both halves.
constexpr uint32_t JoinedSurrogates(uint32_t high, uint32_t low)
{
    return firstPair + ((high - 0xD800) << 10) + (low - 0xDC00);
}

/// A pair where the units have 16 bits and one does not do. Half a pair stays what it is.
template <class Unit>
void AppendCharacter(std::basic_string<Unit>& text, uint32_t c)
{
    if (sizeof(Unit) == 2 && c >= firstPair) {
        text += static_cast<Unit>(0xD800 + ((c - firstPair) >> 10));
        text += static_cast<Unit>(0xDC00 + ((c - firstPair) & 0x3FF));
    } else {
        text += static_cast<Unit>(c);
    }
}

/// Also half a pair and what is above the last character: whoever has no use for these asks before.
inline void AppendUtf8(std::string& bytes, uint32_t c)
{
    const int tails = c < 0x80 ? 0 : c < 0x800 ? 1 : c < firstPair ? 2 : 3;
    constexpr unsigned char leads[] = {0, 0xC0, 0xE0, 0xF0};
    bytes += static_cast<char>(leads[tails] | c >> (6 * tails));
    for (int shift = 6 * (tails - 1); shift >= 0; shift -= 6) {
        bytes += static_cast<char>(0x80 | ((c >> shift) & 0x3F));
    }
}

}  // namespace tvn2x
