#pragma once

#include <string>
#include <string_view>

namespace tvn2x {

/// A text in UTF-8 as it may stand between tags and in quoted attributes, of HTML, SVG and XML alike. What no XML file
/// may hold is replaced by U+FFFD.
std::string Escape(std::wstring_view text);

}  // namespace tvn2x
