#include "driver/DriverSetting.h"

#include <windows.h>
namespace tvn2x {
namespace {

constexpr wchar_t settingsKey[] = L"Software\\TVN2x\\Receiver";

/// A hive that may hold the setting; the user's goes before the machine's.
struct Hive
{
    HKEY root;
    const wchar_t* name;
};
const Hive hives[] = {{HKEY_CURRENT_USER, L"HKEY_CURRENT_USER"}, {HKEY_LOCAL_MACHINE, L"HKEY_LOCAL_MACHINE"}};

std::wstring ProgramName()
{
    constexpr DWORD longestPath = 32'768;
    std::wstring path(longestPath, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), longestPath));
    return path.substr(path.find_last_of(L'\\') + 1);
}

/// What the value says; a value that is no text says what it is, so that it is refused instead of passed over.
std::optional<std::wstring> WordsIn(HKEY root, const std::wstring& program)
{
    constexpr size_t longestWords = 260;
    wchar_t words[longestWords];
    DWORD size = sizeof words;
    HKEY key;
    LSTATUS status = RegOpenKeyExW(root, settingsKey, 0, KEY_READ | KEY_WOW64_64KEY, &key);
    if (status == ERROR_SUCCESS) {
        status = RegGetValueW(key, nullptr, program.c_str(), RRF_RT_REG_SZ, nullptr, words, &size);
        RegCloseKey(key);
    }
    if (status == ERROR_FILE_NOT_FOUND || status == ERROR_PATH_NOT_FOUND) {
        return std::nullopt;
    }
    return status == ERROR_SUCCESS ? words : L"(a value that is no text)";
}

}  // namespace

std::optional<DriverSetting> SettingOfThisProgram()
{
    const std::wstring program = ProgramName();
    for (const Hive& hive : hives) {
        if (const auto words = WordsIn(hive.root, program)) {
            return DriverSetting{*words, std::wstring(hive.name) + L'\\' + settingsKey + L", value " + program + L","};
        }
    }
    return std::nullopt;
}

}  // namespace tvn2x
