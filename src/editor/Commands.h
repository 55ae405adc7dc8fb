#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "editor/EditorView.h"

namespace tvn2x {

/// Keys that are held while another one is pressed or the mouse clicks.
namespace modifier {

constexpr unsigned none = 0;
constexpr unsigned shift = 1;
constexpr unsigned control = 2;
constexpr unsigned alt = 4;

}  // namespace modifier

/// One line of the lists' context menu.
struct CommandLine
{
    RowCommand command;
    std::wstring_view caption;  ///< with "&" before its access key
    std::wstring_view keyName;  ///< what stands at the right of it
    int32_t key;                ///< of the system's key messages; 0 for none of its own
    unsigned modifiers;
    bool endsGroup;     ///< a line is drawn below it
    bool channelsOnly;  ///< has no meaning for parameters
};

/// All of them, in their order.
std::span<const CommandLine> CommandLines();

/// What a key does in a list, nothing where it is no command's.
std::optional<RowCommand> CommandOfKey(int32_t pressed, unsigned modifiers);

}  // namespace tvn2x
