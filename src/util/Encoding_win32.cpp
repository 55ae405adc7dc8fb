#include <windows.h>

#include <limits>
#include <stdexcept>

#include "util/Encoding.h"

namespace tvn2x {
namespace {

int Length(size_t size)
{
    if (size > static_cast<size_t>(std::numeric_limits<int>::max()))
        throw std::length_error("text too long for the system's code page functions");
    return static_cast<int>(size);
}

}  // namespace

std::string ToCodePage(std::wstring_view text)
{
    // The system refuses a substitute for UTF-8, which lacks no character.
    if (GetACP() == CP_UTF8)
        return ToUtf8(text);
    if (text.empty())
        return {};
    // No look-alikes: one of them could become the "[" or "=" that a file's structure is made of.
    const auto convert = [&](char* bytes, int size) {
        return WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, text.data(), Length(text.size()), bytes, size, "?",
                                   nullptr);
    };
    std::string bytes(static_cast<size_t>(convert(nullptr, 0)), '\0');
    convert(bytes.data(), Length(bytes.size()));
    return bytes;
}

std::wstring FromCodePage(std::string_view bytes)
{
    if (bytes.empty())
        return {};
    const auto convert = [&](wchar_t* text, int size) {
        return MultiByteToWideChar(CP_ACP, 0, bytes.data(), Length(bytes.size()), text, size);
    };
    std::wstring text(static_cast<size_t>(convert(nullptr, 0)), L'\0');
    convert(text.data(), Length(text.size()));
    return text;
}

}  // namespace tvn2x
