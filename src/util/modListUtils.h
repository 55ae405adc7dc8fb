#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace tvn2x {

/// One entry of a drop-down list: what the user reads and the number behind it.
struct ListItem
{
    std::wstring_view text;
    int32_t value;
};

/// Position of the first entry with exactly this text, -1 where there is none.
constexpr int32_t FindListText(std::span<const ListItem> list, std::wstring_view text)
{
    for (size_t position = 0; position < list.size(); ++position) {
        if (list[position].text == text) {
            return static_cast<int32_t>(position);
        }
    }
    return -1;
}

/// Position of the first entry with this value, -1 where there is none.
constexpr int32_t FindListData(std::span<const ListItem> list, int32_t value)
{
    for (size_t position = 0; position < list.size(); ++position) {
        if (list[position].value == value) {
            return static_cast<int32_t>(position);
        }
    }
    return -1;
}

}  // namespace tvn2x
