#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace tvn2x {

/// The text on the clipboard, "" where it has none; nothing where another program keeps it open for half a second.
std::optional<std::wstring> TextOnClipboard(HWND owner);

/// Replaces what is on the clipboard; false where another program keeps it open.
bool PutTextOnClipboard(HWND owner, const std::wstring& text);

}  // namespace tvn2x
