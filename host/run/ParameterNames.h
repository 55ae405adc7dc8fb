#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace tvn2x {

/// The parameters of a list such as "status,rflev,mer", by the names they have on the command line (case does not
/// matter); in the order of the list. Raises unusableInput, with all names, where one is none.
std::vector<int32_t> SelectParameters(std::wstring_view list);

}  // namespace tvn2x
