#pragma once

#include <string>
#include <string_view>

namespace tvn2x {

/// The SHA-256 of some bytes, 64 small hexadecimal digits.
std::wstring Sha256(std::string_view bytes);

}  // namespace tvn2x
