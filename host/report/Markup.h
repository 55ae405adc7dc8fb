#pragma once

#include <string>
#include <string_view>

namespace tvn2x {

/// A text as it may stand between tags and in quoted attributes, of HTML, SVG and XML alike. What no XML file may hold
/// is replaced by U+FFFD.
std::string Escape(std::string_view utf8);

}  // namespace tvn2x
