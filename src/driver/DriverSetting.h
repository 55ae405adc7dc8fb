#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tvn2x {

/// What the user, or else the administrator, has chosen for one host program.
struct DriverSetting
{
    std::wstring words;  ///< as they stand there: nothing has looked at them yet
    std::wstring place;  ///< where that stands, for the user to read
};

/// Where the choices stand, below HKEY_CURRENT_USER or else HKEY_LOCAL_MACHINE: the receiver, in words that FindDriver
/// takes, and the folder of the recordings for the receiver that plays some.
constexpr const wchar_t* receiverKey = L"Software\\TVN2x\\Receiver";
constexpr const wchar_t* signalsKey = L"Software\\TVN2x\\Signals";

/// The setting for the program that this process runs: the value of the key with the name of its file, such as
/// "scan.exe". The machine's stands in one place for programs of both word lengths. Nothing where there is none.
std::optional<DriverSetting> SettingOfThisProgram(const wchar_t* key);

/// Those for all programs, the user's before the machine's.
std::vector<DriverSetting> AllSettings(const wchar_t* key);

}  // namespace tvn2x
