#include <windows.h>

#include <limits>
#include <stdexcept>

#include "util/CodePage.h"

namespace tvn2x {
namespace {

int Length32(size_t size)
{
    if (size > static_cast<size_t>(std::numeric_limits<int>::max())) {
        throw std::length_error("text too long for the system's code page functions");
    }
    return static_cast<int>(size);
}

/// What the system converts: any code page but UTF-8, for which it refuses a substitute character.
class Ansi : public CodePage
{
public:
    std::string Encode(std::wstring_view text) const override
    {
        if (text.empty()) {
            return {};
        }
        // No look-alikes: one of them could become the "[" or "=" that a file's structure is made of.
        const auto convert = [&](char* bytes, int size) {
            return WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, text.data(), Length32(text.size()), bytes, size,
                                       "?", nullptr);
        };
        std::string bytes(static_cast<size_t>(convert(nullptr, 0)), '\0');
        convert(bytes.data(), Length32(bytes.size()));
        return bytes;
    }
    std::wstring Decode(std::string_view bytes) const override { return Convert(bytes, 0); }
    std::optional<std::wstring> DecodeStrictly(std::string_view bytes) const override
    {
        // Whether half a character at the end counts as an error depends on the system's version.
        if (bytes.size() == 1 && Length(bytes[0]) != 1) {
            return std::nullopt;
        }
        std::wstring text = Convert(bytes, MB_ERR_INVALID_CHARS);
        return text.empty() && !bytes.empty() ? std::nullopt : std::optional(std::move(text));
    }
    size_t Length(char first) const override { return IsDBCSLeadByte(static_cast<BYTE>(first)) ? 2 : 1; }

private:
    /// Empty where the flags make the system refuse a byte.
    static std::wstring Convert(std::string_view bytes, DWORD flags)
    {
        if (bytes.empty()) {
            return {};
        }
        const auto convert = [&](wchar_t* text, int size) {
            return MultiByteToWideChar(CP_ACP, flags, bytes.data(), Length32(bytes.size()), text, size);
        };
        std::wstring text(static_cast<size_t>(convert(nullptr, 0)), L'\0');
        convert(text.data(), Length32(text.size()));
        return text;
    }
};

}  // namespace

const CodePage& SystemCodePage()
{
    static const Ansi page;
    return GetACP() == CP_UTF8 ? Utf8CodePage() : page;
}

std::optional<std::wstring> DecodeNumbered(uint32_t number, std::string_view bytes)
{
    // Lower numbers stand for pages that the system chooses.
    constexpr UINT firstPage = 37;
    if (number < firstPage || number == CP_SYMBOL || IsValidCodePage(number) == FALSE) {
        return std::nullopt;
    }
    if (bytes.empty()) {
        return std::wstring();
    }
    const auto convert = [&](wchar_t* text, int size) {
        return MultiByteToWideChar(number, 0, bytes.data(), Length32(bytes.size()), text, size);
    };
    std::wstring text(static_cast<size_t>(convert(nullptr, 0)), L'\0');
    convert(text.data(), Length32(text.size()));
    return text.empty() ? std::nullopt : std::optional(std::move(text));
}

}  // namespace tvn2x
