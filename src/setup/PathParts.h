#pragma once

#include <string>
#include <string_view>

namespace tvn2x {

/// Parts of a path, "\" and "/" being separators alike. A drive without a separator ("C:net.ini") ends the folder part.

inline bool IsSeparator(wchar_t c)
{
    return c == L'\\' || c == L'/';
}

/// File name with its extension: what follows the last separator or the drive.
std::wstring_view NamePart(std::wstring_view path);
/// What the file name holds before its first ".".
std::wstring_view TitlePart(std::wstring_view path);
/// What the file name holds behind its first ".".
std::wstring_view ExtensionPart(std::wstring_view path);
/// What precedes the last separator; a root keeps its separator ("C:\"), a bare or drive-relative name has none ("").
std::wstring_view FolderPart(std::wstring_view path);
/// Folder and name with exactly one separator between them, in the folder's own style.
std::wstring JoinPath(std::wstring_view folder, std::wstring_view name);

}  // namespace tvn2x
