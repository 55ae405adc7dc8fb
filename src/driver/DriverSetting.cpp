#include "driver/DriverSetting.h"

#include <windows.h>

#include "com/OpenKey.h"

namespace tvn2x {
namespace {

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

/// The key in one hive, where it is there.
com::OpenKey SettingsKey(HKEY root, const wchar_t* key)
{
    return {root, key, KEY_READ | KEY_WOW64_64KEY};
}

/// What a value says; one that is no text says what it is, so that it is refused instead of passed over.
std::optional<std::wstring> WordsIn(HKEY key, const std::wstring& program)
{
    constexpr size_t longestWords = 260;
    wchar_t words[longestWords];
    DWORD size = sizeof words;
    const LSTATUS status =
        key ? RegGetValueW(key, nullptr, program.c_str(), RRF_RT_REG_SZ, nullptr, words, &size) : ERROR_FILE_NOT_FOUND;
    if (status == ERROR_FILE_NOT_FOUND) {
        return std::nullopt;
    }
    return status == ERROR_SUCCESS ? words : L"(a value that is no text)";
}

std::wstring PlaceOf(const Hive& hive, const wchar_t* key, const std::wstring& program)
{
    return std::wstring(hive.name) + L'\\' + key + L", value " + program + L",";
}

}  // namespace

std::optional<DriverSetting> SettingOfThisProgram(const wchar_t* key)
{
    const std::wstring program = ProgramName();
    for (const Hive& hive : hives) {
        if (const auto words = WordsIn(SettingsKey(hive.root, key), program)) {
            return DriverSetting{*words, PlaceOf(hive, key, program)};
        }
    }
    return std::nullopt;
}

std::vector<DriverSetting> AllSettings(const wchar_t* key)
{
    constexpr DWORD longestName = 16'384;  // of any value in the registry, its end included
    std::vector<DriverSetting> settings;
    std::wstring name(longestName, L'\0');
    for (const Hive& hive : hives) {
        const com::OpenKey opened = SettingsKey(hive.root, key);
        DWORD length = longestName;
        for (DWORD i = 0; opened && RegEnumValueW(opened, i, name.data(), &length, nullptr, nullptr, nullptr,
                                                  nullptr) == ERROR_SUCCESS;
             ++i, length = longestName) {
            const std::wstring program(name, 0, length);
            settings.push_back({WordsIn(opened, program).value_or(L""), PlaceOf(hive, key, program)});
        }
    }
    return settings;
}

}  // namespace tvn2x
