#pragma once

#include <string_view>

namespace tvn2x {

/// What may stand round the words of a line. A line end is none.
constexpr bool IsBlank(wchar_t c)
{
    return c == L' ' || c == L'\t' || c == L'\v' || c == L'\f';
}

template <class Character>
std::basic_string_view<Character> WithoutBlanks(std::basic_string_view<Character> text)
{
    while (!text.empty() && IsBlank(static_cast<wchar_t>(text.front()))) {
        text.remove_prefix(1);
    }
    while (!text.empty() && IsBlank(static_cast<wchar_t>(text.back()))) {
        text.remove_suffix(1);
    }
    return text;
}

inline std::string_view TrimBlanks(std::string_view text)
{
    return WithoutBlanks(text);
}
inline std::wstring_view TrimBlanks(std::wstring_view text)
{
    return WithoutBlanks(text);
}

}  // namespace tvn2x
