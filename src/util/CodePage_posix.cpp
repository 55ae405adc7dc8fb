#include <algorithm>
#include <array>

#include "util/CodePage.h"

namespace tvn2x {
namespace {

/// Code page 1252 from 0x80 to 0x9F; elsewhere a byte is its own character. The five bytes that have no character keep
/// their control characters, so that every byte survives a round trip.
constexpr std::array<wchar_t, 32> upperControls = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                   0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                                   0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                   0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

char ToByte(wchar_t c)
{
    if ((c >= 0 && c < 0x80) || (c >= 0xA0 && c <= 0xFF))
        return static_cast<char>(c);
    const auto* const found = std::find(upperControls.begin(), upperControls.end(), c);
    return found == upperControls.end() ? '?' : static_cast<char>(0x80 + (found - upperControls.begin()));
}

wchar_t FromByte(char byte)
{
    const auto value = static_cast<unsigned char>(byte);
    return value >= 0x80 && value < 0xA0 ? upperControls[value - 0x80] : static_cast<wchar_t>(value);
}

class WesternEurope : public CodePage
{
public:
    std::string Encode(std::wstring_view text) const override
    {
        std::string bytes(text.size(), '\0');
        std::transform(text.begin(), text.end(), bytes.begin(), ToByte);
        return bytes;
    }
    std::wstring Decode(std::string_view bytes) const override
    {
        std::wstring text(bytes.size(), L'\0');
        std::transform(bytes.begin(), bytes.end(), text.begin(), FromByte);
        return text;
    }
    std::optional<std::wstring> DecodeStrictly(std::string_view bytes) const override { return Decode(bytes); }
    size_t Length(char) const override { return 1; }
};

}  // namespace

const CodePage& SystemCodePage()
{
    static const WesternEurope page;
    return page;
}

}  // namespace tvn2x
