#pragma once

#include <string>
#include <string_view>

namespace tvn2x {

/// In SystemCodePage(). A character that it lacks becomes "?".
std::string ToCodePage(std::wstring_view text);
std::wstring FromCodePage(std::string_view bytes);

/// UTF-8. Bytes that are none become U+FFFD.
std::string ToUtf8(std::wstring_view text);
std::wstring FromUtf8(std::string_view bytes);

}  // namespace tvn2x
