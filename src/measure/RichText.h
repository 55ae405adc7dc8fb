#pragma once

#include <string>
#include <string_view>

namespace tvn2x {

/// The words of notes that an editor has kept as rich text (RTF), line ends as "\n". Any other text is returned as it
/// is. Damaged rich text gives what can be read of it.
std::wstring PlainText(std::wstring_view notes);

}  // namespace tvn2x
