#pragma once

#include <string>
#include <string_view>

namespace tvn2x {

/// Why a text cannot stand in a setup file, and what to do about it; "" where it can. Notes may have lines, which end
/// with CR LF.
std::wstring UnsavableText(std::wstring_view text, bool mayHaveLines);

}  // namespace tvn2x
