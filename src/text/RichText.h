#pragma once

#include <string>
#include <string_view>

namespace tvn2x {

/// What a person reads in notes, which an editor may have kept as rich text (RTF, "{\rtf1 ..."): the characters of
/// every code page that the text names, without fonts, pictures and what is hidden or deleted. Any other text comes
/// back as it is. Line ends are "\n" in both, and none stands at the end. Damaged rich text gives what can be read of
/// it; a character that cannot is U+FFFD.
std::wstring PlainText(std::wstring_view notes);

}  // namespace tvn2x
