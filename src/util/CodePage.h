#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tvn2x {

/// A code page: text as bytes, each character on its own. A byte below 0x80 that begins a character is ASCII; in some
/// code pages bytes from 0x30 on may also end one.
class CodePage
{
public:
    virtual ~CodePage() = default;

    /// A character that the code page lacks becomes "?", never a look-alike.
    virtual std::string Encode(std::wstring_view text) const = 0;
    /// Bytes that are no character become whatever the system takes them for.
    virtual std::wstring Decode(std::string_view bytes) const = 0;
    /// Nothing where a byte belongs to no character.
    virtual std::optional<std::wstring> DecodeStrictly(std::string_view bytes) const = 0;
    /// How many bytes a character takes that begins with this one, from 1; that of a byte that begins none is 1.
    virtual size_t Length(char first) const = 0;
};

/// The system's: Windows-1252 on Linux.
const CodePage& SystemCodePage();

/// UTF-8, which a system may have for its code page. Half a surrogate pair is a character that it lacks.
const CodePage& Utf8CodePage();

/// The text of bytes in the code page of a number (1251, 932); bytes that are no character become whatever the system
/// takes them for. Nothing where the system does not know the number.
std::optional<std::wstring> DecodeNumbered(uint32_t number, std::string_view bytes);

}  // namespace tvn2x
