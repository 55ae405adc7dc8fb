#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace tvn2x {

/// The parameters that a result row has: 10..12 fixed columns, 13..30 measured.
constexpr int32_t firstFixedParameter = 10;
constexpr int32_t lastFixedParameter = 12;
constexpr int32_t lastParameter = 30;

/// The parameters of a list such as "status,rflev,mer", by the names they have on the command line (case does not
/// matter); in the order of the list. Raises unusableInput, with all names, where one is none.
std::vector<int32_t> SelectParameters(std::wstring_view list);

}  // namespace tvn2x
