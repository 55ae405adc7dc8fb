#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace tvn2x {

/// The channels that a selection such as "3-7,12,30-" names, ascending and each once; the empty text is all of them.
/// "30-" is from 30 to the last. Raises unusableInput for anything else and for a channel outside 1..channels.
std::vector<int32_t> SelectChannels(std::wstring_view selection, int32_t channels);

}  // namespace tvn2x
