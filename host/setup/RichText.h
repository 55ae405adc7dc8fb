#pragma once

#include <string>
#include <string_view>

namespace tvn2x {

/// What a person reads in a text that may be rich text ("{\rtf1 ..."): its characters and line ends (LF), without
/// fonts, colours and protection. Any other text comes back as it is, its CR LF as LF.
std::wstring PlainText(std::wstring_view text);

}  // namespace tvn2x
