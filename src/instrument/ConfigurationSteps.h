#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>

#include "instrument/Receiver.h"

namespace tvn2x {

/// Whom the reading and the writing of a configuration work with. The parent is null where the host has set none.
struct ConfigurationPeers
{
    Receiver& receiver;
    RunControl& runControl;
    HostParent* parent;
    ErrorReporter& errors;
};

/// Tells the parent what begins, at which progress value, and how many steps there are.
inline void Announce(const ConfigurationPeers& with, const std::wstring& status, double progress, int16_t steps)
{
    if (!with.parent) {
        return;
    }
    with.parent->Status(status);
    with.parent->Progress(progress, steps);
}

/// Runs the steps in order, each after a look at the stop flag and under its progress value, counted from `first`. A
/// set stop flag skips what is left; an error ends the sequence.
inline void RunSteps(const ConfigurationPeers& with, double first, std::initializer_list<std::function<void()>> steps)
{
    double progress = first;
    for (const auto& step : steps) {
        if (with.runControl.StopFlag()) {
            return;
        }
        if (with.parent) {
            with.parent->Progress(progress);
        }
        step();
        progress += 1;
    }
}

}  // namespace tvn2x
