#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "instrument/ConfigurationSteps.h"
#include "setup/SetupDocument.h"
#include "support/RaisedBy.h"
#include "support/ScriptedReceiver.h"

namespace tvn2x {

/// A document and a scripted receiver that differ in every setting, and whom they talk to.
struct TestConfiguration
{
    TestConfiguration()
    {
        document.ListSize(3);
        document.Frequency(1, 300);
        document.SymbolRate(1, 6.8);
        document.UserField(1, L"first");
        document.Zin(50);
        document.LevelUnit(L"dBm");
        document.SawBw(7);
        document.OrderOfQam(256);
        document.RollOffFactor(13);
        document.BerSamples(100);
        document.ReferenceSource(1);
        document.dirty = false;
        receiver.answers.InstalledOptions = L"KTR-H2,EXTREF";
        receiver.answers.Frequency = 474.25e6;
        receiver.answers.SymbolRate = 5.5e6;
        receiver.answers.LevelUnit = 4;
    }

    ConfigurationPeers Peers() { return {receiver, runControl, &parent, errors}; }

    SetupDocument document;
    CallLog log;
    ScriptedReceiver receiver{log};
    ScriptedRunControl runControl{log};
    ScriptedParent parent{log};
    ScriptedErrorReporter errors{log};
};

/// Runs the test with every call failing in turn, and with the stop flag set from every call on: nothing follows an
/// error, and a stop takes effect within one step. The test says what must have been done by then.
template <class Test>
void ExpectOrderlyEndInEachCall(const std::string& lastCall, size_t longestStep)
{
    for (const bool fails : {true, false}) {
        bool hurt = true;
        for (int n = 1; hurt; ++n) {
            SCOPED_TRACE((fails ? "failure " : "stop ") + std::to_string(n));
            Test test;
            test.receiver.answers.Mode = 6;
            fails ? test.log.FailAt(n, 4711) : test.log.StopAt(n);
            const std::wstring error = test.Run();
            hurt = test.log.Triggered();
            EXPECT_EQ(error, fails && hurt ? L"4711 XKTR2x: scripted" : L"");
            const std::vector<std::string>& calls = test.log.calls;
            if (!error.empty()) {
                EXPECT_EQ(calls.size(), static_cast<size_t>(n));
            } else {
                EXPECT_TRUE(calls.back() == lastCall || (!fails && calls.back() == "StopFlag"));
                EXPECT_TRUE(fails || calls.size() <= static_cast<size_t>(n) + longestStep);
            }
            test.ExpectDone(calls.size() - (error.empty() ? 0 : 1));
        }
    }
}

/// The calls of a run, separated by commas, a line for each progress value.
inline std::string Lines(const std::vector<std::string>& calls)
{
    std::string text;
    for (const std::string& call : calls) {
        if (!text.empty()) {
            text += call == "StopFlag" ? "\n" : ", ";
        }
        text += call;
    }
    return text;
}

}  // namespace tvn2x
