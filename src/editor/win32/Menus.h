#pragma once

#include <windows.h>

#include <optional>

#include "editor/Editor.h"

namespace tvn2x {

/// What the user has chosen in the menu of a text with formatting.
enum class NotesCommand : int
{
    undo = 1,
    cut,
    copy,
    paste,
    selectAll,
    protect,
    unprotect
};

/// The menu of a list at a place of the screen, with every command, its key, and those greyed that can do nothing.
/// Nothing where the user chooses none.
std::optional<RowCommand> ChooseCommand(HWND owner, POINT place, const Editor& editor, Grid grid);

/// The menu of the notes.
std::optional<NotesCommand> ChooseNotesCommand(HWND owner, POINT place, bool canUndo, bool hasSelection, bool canPaste);

}  // namespace tvn2x
