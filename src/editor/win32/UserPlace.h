#pragma once

#include <windows.h>

#include <array>
#include <cstdint>
#include <optional>

namespace tvn2x {

/// How a user has left the editor's window. It is kept for each user, and a value that makes no sense is as good as
/// none.
struct UserPlace
{
    RECT window{};  ///< in pixels of the screen
    int dpi = 0;    ///< the resolution that they were counted in
    int32_t page = 0;
    std::array<int, 3> channelShares{};  ///< of the columns, in thousandths
    std::array<int, 3> parameterShares{};
};

/// Nothing where none was kept, or where it is not whole.
std::optional<UserPlace> KeptPlace();
/// What cannot be kept is forgotten: it is no reason to trouble anybody.
void KeepPlace(const UserPlace& place);

}  // namespace tvn2x
