#include "setup/SystemProfile.h"

#include <windows.h>

#include <vector>

#include "setup/ProfileText.h"
#include "text/IniLines.h"

namespace tvn2x {

std::wstring WindowsFolder()
{
    std::vector<wchar_t> folder(MAX_PATH);
    const UINT length = GetWindowsDirectoryW(folder.data(), static_cast<UINT>(folder.size()));
    return std::wstring(folder.data(), length < folder.size() ? length : 0);
}

std::wstring RunningModule()
{
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&RunningModule), &module);
    std::vector<wchar_t> path(ini::longestText + 1);
    return std::wstring(path.data(), GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size())));
}

std::string WinIniString(FileSystem&, const std::string& section, const std::string& key,
                         const std::string& defaultValue)
{
    std::vector<char> text(ini::longestText + 1);
    const DWORD length = GetProfileStringA(section.c_str(), key.c_str(), defaultValue.c_str(), text.data(),
                                           static_cast<DWORD>(text.size()));
    return std::string(text.data(), length);
}

uint32_t WinIniInt(FileSystem&, const std::string& section, const std::string& key, int32_t defaultValue)
{
    return GetProfileIntA(section.c_str(), key.c_str(), defaultValue);
}

std::string WinIniSection(FileSystem&, const std::string& section)
{
    std::vector<char> lines(ini::longestText + 1);
    const DWORD length = GetProfileSectionA(section.c_str(), lines.data(), static_cast<DWORD>(lines.size()));
    return std::string(lines.data(), length);
}

bool WriteWinIni(FileSystem&, const std::string& section, const std::optional<std::string>& key,
                 const std::optional<std::string>& value)
{
    // The system's own writer puts line ends and what follows them into the file as they are.
    if (!profile::IsWritable(section) || !profile::IsWritable(key.value_or("")) ||
        !profile::IsWritable(value.value_or(""))) {
        return false;
    }
    return WriteProfileStringA(section.c_str(), key ? key->c_str() : nullptr,
                               key && value ? value->c_str() : nullptr) != FALSE;
}

}  // namespace tvn2x
