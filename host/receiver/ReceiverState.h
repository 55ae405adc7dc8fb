#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/setup/Setup.h"
#include "setup/catalogue/Options.h"

namespace tvn2x {

/// A setting that the receiver has otherwise than a setup.
struct SettingDifference
{
    std::wstring name;                    ///< "SAW filter"
    std::wstring wanted;                  ///< the setup's value in words
    std::wstring actual;                  ///< the receiver's
    std::optional<Capability> need = {};  ///< the equipment without which the receiver cannot be set so
    bool isNeighbour = false;  ///< SAW filters of 6 and 7 MHz: the one that is fitted stands in for the other
};

/// The settings with which a measurement stands and falls: level unit, order of QAM, roll-off factor, SAW filter, input
/// route, reference and BER samples. A level unit of the receiver that is not known is "".
std::vector<SettingDifference> CompareSettings(const SetupSettings& setup, const SetupSettings& receiver);

/// "SAW filter: 8 MHz in the setup, Off on the receiver".
std::wstring DifferenceText(const SettingDifference& difference);

/// What a receiver is set to, a line for each setting, each ended with LF.
std::wstring StateText(const SetupSettings& settings);

/// What is to be told of a setting that the receiver refused while a configuration was written: which one it was, what
/// the receiver's state is now, which settings it has not been given, and what to change. `step` is the progress that
/// was reported last; without `now` the receiver does not tell its state.
std::wstring RefusalText(double step, const std::optional<SetupSettings>& now);

}  // namespace tvn2x
