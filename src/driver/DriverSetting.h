#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tvn2x {

/// Which receiver the user, or else the administrator, has chosen for one host program.
struct DriverSetting
{
    std::wstring words;  ///< as FindDriver takes them; nothing has looked at them yet
    std::wstring place;  ///< where that stands, for the user to read
};

/// The setting for the program that this process runs: the value with the name of its file, such as "scan.exe", in
/// HKEY_CURRENT_USER\Software\TVN2x\Receiver, or else in HKEY_LOCAL_MACHINE. The machine's stands in one place for
/// programs of both word lengths. Nothing where there is none.
std::optional<DriverSetting> SettingOfThisProgram();

/// Those for all programs, the user's before the machine's.
std::vector<DriverSetting> AllSettings();

}  // namespace tvn2x
