#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tvn2x {

/// A label whose last number has counted on by so many: S21 gives S22, K09 gives K10, "Ch 5 HD" gives "Ch 6 HD". It
/// keeps its leading zeros and does not fall below 0. A label without a number, or with one of more than 15 digits,
/// stays as it is.
std::wstring CountOn(std::wstring_view label, int64_t by);

}  // namespace tvn2x
