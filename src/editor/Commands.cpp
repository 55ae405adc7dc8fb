#include "editor/Commands.h"

#include <algorithm>
#include <array>

#include "editor/EditorKeys.h"

namespace tvn2x {
namespace {

using enum RowCommand;
constexpr unsigned plain = modifier::none;
constexpr unsigned ctrl = modifier::control;
constexpr unsigned ctrlShift = modifier::control | modifier::shift;

constexpr std::array<CommandLine, 20> lines{{
    {undo, L"&Undo", L"Ctrl+Z", 'Z', ctrl, false, false},
    {redo, L"&Redo", L"Ctrl+Y", 'Y', ctrl, true, false},
    {cut, L"Cu&t", L"Ctrl+X", 'X', ctrl, false, true},
    {copy, L"&Copy", L"Ctrl+C", 'C', ctrl, false, false},
    {paste, L"&Paste", L"Ctrl+V", 'V', ctrl, false, false},
    {pasteRows, L"Paste as &New Rows", L"Ctrl+Shift+V", 'V', ctrlShift, true, true},
    {editCell, L"&Edit Cell", L"F2", key::f2, plain, false, false},
    {insert, L"&Insert", L"Ins", key::insert, plain, false, false},
    {remove, L"De&lete", L"Del", key::remove, plain, false, false},
    {duplicate, L"Dup&licate", L"Ctrl+Shift+D", 'D', ctrlShift, false, true},
    {moveUp, L"Move U&p", L"Alt+Up", key::up, modifier::alt, false, false},
    {moveDown, L"Move Do&wn", L"Alt+Down", key::down, modifier::alt, true, false},
    {fillDown, L"Fill &Down", L"Ctrl+D", 'D', ctrl, false, false},
    {fillSeries, L"Fill &Series...", L"Ctrl+Shift+S", 'S', ctrlShift, false, true},
    {addChannels, L"Add C&hannels...", L"Ctrl+N", 'N', ctrl, true, true},
    {find, L"&Find...", L"Ctrl+F", 'F', ctrl, false, false},
    {findNext, L"Find Ne&xt", L"F3", key::f3, plain, false, false},
    {goTo, L"&Go to Channel...", L"Ctrl+G", 'G', ctrl, true, true},
    {selectAll, L"Select &All", L"Ctrl+A", 'A', ctrl, false, false},
    {sort, L"S&ort by This Column", L"Ctrl+Shift+O", 'O', ctrlShift, false, true},
}};

/// Another key of a command, as other programs have it too.
struct SecondKey
{
    int32_t key;
    unsigned modifiers;
    RowCommand command;
};
constexpr std::array<SecondKey, 4> secondKeys{{
    {key::insert, ctrl, copy},
    {key::insert, modifier::shift, paste},
    {key::remove, modifier::shift, cut},
    {'Z', ctrlShift, redo},
}};

}  // namespace

std::span<const CommandLine> CommandLines()
{
    return lines;
}

std::optional<RowCommand> CommandOfKey(int32_t pressed, unsigned modifiers)
{
    const auto line = std::ranges::find_if(
        lines, [&](const CommandLine& each) { return each.key == pressed && each.modifiers == modifiers; });
    if (line != lines.end()) {
        return line->command;
    }
    const auto second = std::ranges::find_if(
        secondKeys, [&](const SecondKey& each) { return each.key == pressed && each.modifiers == modifiers; });
    return second == secondKeys.end() ? std::nullopt : std::optional(second->command);
}

}  // namespace tvn2x
