#include "instrument/ConfigurationRead.h"

#include <limits>

#include "instrument/ConfigurationSteps.h"
#include "instrument/ConfigurationWrite.h"
#include "setup/SetupDocument.h"
#include "support/RaisedBy.h"
#include "support/ScriptedReceiver.h"
#include "support/TestFiles.h"

namespace tvn2x {
namespace {

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

    ConfigurationPeers Peers() { return {receiver, host, &host, host}; }

    SetupDocument document;
    CallLog log;
    ScriptedReceiver receiver{log};
    ScriptedHost host{log};
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
std::string Lines(const std::vector<std::string>& calls)
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

struct Reading : TestConfiguration
{
    std::wstring Run()
    {
        return RaisedBy([&] { ReadConfiguration(document, Peers()); });
    }

    /// The document is what the calls before the end have made it, setting by setting.
    void ExpectDone(size_t callsDone) const
    {
        const auto end = log.calls.begin() + static_cast<std::ptrdiff_t>(callsDone);
        const auto was = [&](const char* call) { return std::find(log.calls.begin(), end, call) != end; };
        EXPECT_EQ(document.Zin(), was("InputRoute") ? 75 : 50);
        EXPECT_EQ(document.LevelUnit(), was("LevelUnit") ? L"dB\u00B5V" : L"dBm");
        EXPECT_EQ(document.SawBw(), was("SawBandwidth") ? 8 : 7);
        EXPECT_EQ(document.OrderOfQam(), was("OrderOfQam") ? 64 : 256);
        EXPECT_EQ(document.RollOffFactor(), was("RollOffFactor") ? 15 : 13);
        EXPECT_EQ(document.BerSamples(), was("BerSamples") ? 10 : 100);
        EXPECT_EQ(document.UserField(1), L"first");
        EXPECT_EQ(document.ListSize(), log.Count("Frequency") > 0 ? 1 : 3);
        EXPECT_EQ(document.Frequency(1), was("Frequency") ? 474.25 : 300);
        EXPECT_EQ(document.DefaultSymbolRate(), was("SymbolRate") ? 5.5 : 6.9);
        EXPECT_EQ(document.SymbolRate(1), was("SymbolRate") ? 5.5 : 6.8);
        EXPECT_EQ(document.ReferenceSource(), was("ReferenceSource") ? 0 : 1);
    }
};

TEST(ConfigurationRead, CallsReceiverAndParentInThisOrder)
{
    Reading test;
    EXPECT_EQ(test.Run(), L"");
    EXPECT_EQ(Lines(test.log.calls) + "\n", TestFile("configuration-read-calls.txt"));
}

TEST(ConfigurationRead, EndsInOrderWhereverAnErrorOrTheStopFlagComes)
{
    ExpectOrderlyEndInEachCall<Reading>("Progress 10", 4);
}

struct Writing : TestConfiguration
{
    std::wstring Run()
    {
        log.calls.clear();
        return RaisedBy([&] { WriteConfiguration(document, Peers(), [&] { log.Call("ForgetTuning"); }); });
    }

    /// What the receiver and the parent are told is in the calls; the scan must know of it from the first one on.
    void ExpectDone(size_t) const { EXPECT_EQ(log.Count("ForgetTuning"), log.calls.size() > 2 ? 1 : 0); }
};

TEST(ConfigurationWrite, CallsReceiverAndParentInThisOrder)
{
    Writing test;
    EXPECT_EQ(test.Run(), L"");
    EXPECT_EQ(Lines(test.log.calls) + "\n", TestFile("configuration-write-calls.txt"));
    EXPECT_FALSE(test.document.dirty);
}

TEST(ConfigurationWrite, EndsInOrderWhereverAnErrorOrTheStopFlagComes)
{
    ExpectOrderlyEndInEachCall<Writing>("Progress 12", 5);
}

}  // namespace
}  // namespace tvn2x
