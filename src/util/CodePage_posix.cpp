#include <iconv.h>

#include <algorithm>
#include <array>
#include <cstdint>

#include "util/CodePage.h"
#include "util/Encoding.h"

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
    if ((c >= 0 && c < 0x80) || (c >= 0xA0 && c <= 0xFF)) {
        return static_cast<char>(c);
    }
    const auto* const found = std::find(upperControls.begin(), upperControls.end(), c);
    return found == upperControls.end() ? '?' : static_cast<char>(0x80 + (found - upperControls.begin()));
}

wchar_t FromByte(char byte)
{
    const auto value = static_cast<unsigned char>(byte);
    return value >= 0x80 && value < 0xA0 ? upperControls[value - 0x80] : static_cast<wchar_t>(value);
}

/// Windows-1252, for systems that have no code pages.
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

/// What the C library converts.
class Converter
{
public:
    explicit Converter(const std::string& name) : handle_(iconv_open("WCHAR_T", name.c_str())) {}
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;
    ~Converter()
    {
        if (IsKnown()) {
            iconv_close(handle_);
        }
    }

    bool IsKnown() const { return reinterpret_cast<intptr_t>(handle_) != -1; }
    std::wstring Decode(std::string_view bytes) const
    {
        std::string left(bytes);
        char* from = left.data();
        size_t rest = left.size();
        constexpr size_t longestCharacter = 2;
        std::wstring text((bytes.size() + 1) * longestCharacter, L'\0');
        char* to = reinterpret_cast<char*>(text.data());
        size_t room = text.size() * sizeof(wchar_t);
        while (rest != 0 && iconv(handle_, &from, &rest, &to, &room) == static_cast<size_t>(-1)) {
            const wchar_t unknown = L'\uFFFD';
            to = std::copy_n(reinterpret_cast<const char*>(&unknown), sizeof unknown, to);
            room -= sizeof unknown;
            ++from;
            --rest;
        }
        iconv(handle_, nullptr, nullptr, &to, &room);  // a letter that was waiting for its accent
        text.resize(text.size() - room / sizeof(wchar_t));
        return text;
    }

private:
    iconv_t handle_;
};

}  // namespace

const CodePage& SystemCodePage()
{
    static const WesternEurope page;
    return page;
}

std::optional<std::wstring> DecodeNumbered(uint32_t number, std::string_view bytes)
{
    constexpr uint32_t macintosh = 10000;
    constexpr uint32_t utf8 = 65001;
    if (number == utf8) {
        return FromUtf8(bytes);
    }
    const Converter converter(number == macintosh ? "MACINTOSH" : "CP" + std::to_string(number));
    return converter.IsKnown() ? std::optional(converter.Decode(bytes)) : std::nullopt;
}

}  // namespace tvn2x
