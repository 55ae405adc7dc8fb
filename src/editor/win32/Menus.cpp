#include "editor/win32/Menus.h"

#include <initializer_list>
#include <string>

#include "editor/win32/Handles.h"

namespace tvn2x {
namespace {

void DestroyTheMenu(HMENU menu)
{
    DestroyMenu(menu);
}
using Menu = Owned<HMENU, DestroyTheMenu>;

void Add(const Menu& menu, int number, const std::wstring& text, bool isEnabled)
{
    AppendMenuW(menu.Get(), MF_STRING | (isEnabled ? MF_ENABLED : MF_GRAYED), static_cast<UINT_PTR>(number),
                text.c_str());
}

/// The number of the chosen line, 0 for none.
int Choose(const Menu& menu, HWND owner, POINT place)
{
    return TrackPopupMenu(menu.Get(), TPM_RETURNCMD | TPM_RIGHTBUTTON | TPM_NONOTIFY, place.x, place.y, 0, owner,
                          nullptr);
}

}  // namespace

std::optional<RowCommand> ChooseCommand(HWND owner, POINT place, const Editor& editor, Grid grid)
{
    const Menu menu(CreatePopupMenu());
    for (const CommandLine& line : CommandLines()) {
        if (!line.channelsOnly || grid == Grid::channels) {
            Add(menu, static_cast<int>(line.command) + 1,
                std::wstring(line.caption) + L"\t" + std::wstring(line.keyName), editor.CanExecute(line.command, grid));
        }
        if (line.endsGroup) {
            AppendMenuW(menu.Get(), MF_SEPARATOR, 0, nullptr);
        }
    }
    const int chosen = Choose(menu, owner, place);
    return chosen == 0 ? std::nullopt : std::optional(static_cast<RowCommand>(chosen - 1));
}

std::optional<NotesCommand> ChooseNotesCommand(HWND owner, POINT place, bool canUndo, bool hasSelection, bool canPaste)
{
    const Menu menu(CreatePopupMenu());
    const auto add = [&](NotesCommand command, const wchar_t* text, bool isEnabled) {
        Add(menu, static_cast<int>(command), text, isEnabled);
    };
    add(NotesCommand::undo, L"&Undo\tCtrl+Z", canUndo);
    AppendMenuW(menu.Get(), MF_SEPARATOR, 0, nullptr);
    add(NotesCommand::cut, L"Cu&t\tCtrl+X", hasSelection);
    add(NotesCommand::copy, L"&Copy\tCtrl+C", hasSelection);
    add(NotesCommand::paste, L"&Paste\tCtrl+V", canPaste);
    add(NotesCommand::selectAll, L"Select &All\tCtrl+A", true);
    AppendMenuW(menu.Get(), MF_SEPARATOR, 0, nullptr);
    add(NotesCommand::protect, L"P&rotect\tAlt+R", hasSelection);
    add(NotesCommand::unprotect, L"U&nprotect\tAlt+U", hasSelection);
    const int chosen = Choose(menu, owner, place);
    return chosen == 0 ? std::nullopt : std::optional(static_cast<NotesCommand>(chosen));
}

}  // namespace tvn2x
