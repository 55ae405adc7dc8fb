#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

namespace tvn2x {

/// The registered classes of the user or of the machine, as programs of one word length see them. Read only.
struct RegistryView
{
    HKEY hive;
    REGSAM access;  ///< KEY_WOW64_64KEY or KEY_WOW64_32KEY
    int bits;
    bool isUsers;

    /// The text of a key's own value, or of the one of that name, below Software\Classes; nothing where there is none.
    std::optional<std::wstring> Read(const std::wstring& key, const wchar_t* name = nullptr) const;
    bool Has(const std::wstring& key) const;
};

/// All of this machine: the user's first, as the system asks them; one word length alone on a 32-bit system.
std::vector<RegistryView> RegistryViews();

/// What a file on the disk is.
struct FileState
{
    std::wstring version;  ///< empty where it states none
    std::wstring fault;    ///< why programs of `bits` cannot load it, empty where they can
};

/// Of a library with classes, or of any file with a type library (its resource's number may stand behind the path).
FileState StateOfLibrary(const std::wstring& path, int bits, bool hasClasses);

}  // namespace tvn2x
