#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "instrument/ConfigurationSteps.h"
#include "setup/SetupDocument.h"
#include "support/ScriptedReceiver.h"

namespace tvn2x {

/// A document and a scripted receiver that differ in every setting, and whom they talk to.
struct TestConfiguration
{
    TestConfiguration()
    {
        document.ListSize(3);
        document.Frequency(1, 300);
        document.UserField(1, L"first");
        document.Zin(50);
        document.LevelUnit(L"dBm");
        document.SawBw(7);
        document.OrderOfQam(256);
        document.RollOffFactor(13);
        document.BerSamples(100);
        document.ReferenceSource(1);
        document.dirty = false;
        receiver.options = L"KTR-H2,EXTREF";
        receiver.frequency = 474.25e6;
        receiver.symbolRate = 5.5e6;
        receiver.levelUnit = 4;
    }

    ConfigurationPeers Peers() { return {receiver, runControl, &parent, errors}; }

    /// The error that an operation ends with.
    static std::optional<RaisedError> Outcome(const std::function<void()>& operation)
    {
        try {
            operation();
        } catch (const RaisedError& error) {
            return error;
        }
        return std::nullopt;
    }

    SetupDocument document;
    CallLog log;
    ScriptedReceiver receiver{log};
    ScriptedRunControl runControl{log};
    ScriptedParent parent{log};
    ScriptedErrorReporter errors{log};
};

/// The calls of a run, separated by commas, a line for each progress value.
inline std::string Lines(const std::vector<std::string>& calls)
{
    std::string text;
    for (const std::string& call : calls) {
        if (!text.empty())
            text += call == "StopFlag" ? "\n" : ", ";
        text += call;
    }
    return text;
}

}  // namespace tvn2x
