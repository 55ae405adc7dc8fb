#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tvn2x {

/// A text in UTF-8 as it may stand between tags and in quoted attributes, of HTML, SVG and XML alike. What no XML file
/// may hold is replaced by U+FFFD.
std::string Escape(std::wstring_view text);

/// A text of at most so many columns (2 or more), as a terminal counts them; what is cut off leaves "…".
std::wstring Shortened(std::wstring_view text, int32_t columns);

}  // namespace tvn2x
