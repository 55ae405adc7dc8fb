#pragma once

#include <windows.h>

#include <array>
#include <string>

namespace tvn2x {

/// A class of a driver library.
struct DriverClass
{
    CLSID id;
    std::wstring name;  ///< "XKTR2x.clsReceiver"
};

/// The classes of one driver library: receiver, run control and error reporting. They are named alike,
/// NAME.clsReceiver, NAME.clsRunControl and NAME.clsErrorReport.
struct DriverLibrary
{
    std::array<DriverClass, 3> classes;
};

/// The one that is registered as the instrument driver, by the identities that every host knows: XKTR2x.
const DriverLibrary& RegisteredDriver();

/// The simulated receiver, by its own identities: XKTR2xSim.
const DriverLibrary& SimulatedDriver();

/// The receiver of recorded signals: XKIQ2x.
const DriverLibrary& RecordingsDriver();

/// The library that a choice names: "simulated", "recordings", "registered" or the identity
/// of a receiver class, in braces. `chooser`
/// is who says so, for the error (429) that is raised where the words name nothing, or nothing that is registered.
DriverLibrary FindDriver(const std::wstring& words, const std::wstring& chooser);

/// The file that serves a class for programs of this word length; empty where none is registered.
std::wstring ServerOf(REFCLSID id);

/// Raises 429 where different files are registered for the library's classes: a stop would not reach the receiver, and
/// its errors would be lost.
void RequireOneFile(const DriverLibrary& library);

}  // namespace tvn2x
