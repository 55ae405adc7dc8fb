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

TEST(ConfigurationRead, KeepsTheRestAndChangesNothingWhereNothingButAKnownLevelUnitHasChanged)
{
    Reading test;
    test.document.Notes(L"keep me");
    test.document.MaxSettlingTime(33);
    test.document.dirty = false;
    EXPECT_EQ(test.Run(), L"");
    EXPECT_TRUE(test.document.dirty);
    EXPECT_EQ(test.document.Notes(), L"keep me");
    EXPECT_EQ(test.document.MaxSettlingTime(), 33);
    test.document.UserField(1, L"label");
    test.document.dirty = false;
    for (const auto& [code, name] : {std::pair{5, L"mV"}, {6, L"mV"}, {-1, L"mV"}, {4, L"dB\u00B5V"}}) {
        test.receiver.answers.LevelUnit = code;
        EXPECT_EQ(test.Run(), L"");
        EXPECT_EQ(test.document.LevelUnit(), name) << code;
        EXPECT_FALSE(test.document.dirty);
    }
    EXPECT_EQ(test.document.UserField(1), L"label");
}

TEST(ConfigurationRead, FirstChannelKeepsItsUserFieldWhateverTheListsSize)
{
    for (const auto& [size, label] : {std::pair{3, L"first"}, {2, L""}, {1, L"first"}, {0, L""}}) {
        Reading test;
        if (size != 3) {
            test.document.ListSize(size);
            test.document.UserField(size, L"first");
        }
        EXPECT_EQ(test.Run(), L"");
        EXPECT_EQ(test.document.ListSize(), 1);
        EXPECT_EQ(test.document.UserField(1), label) << size;
    }
}

TEST(ConfigurationRead, FrequencyOrSymbolRateThatIsNoNumberIsRefused)
{
    constexpr double infinite = std::numeric_limits<double>::infinity();
    for (const double value : {std::numeric_limits<double>::quiet_NaN(), infinite, -infinite, 1.1e15, -1.1e15}) {
        Reading frequency, symbolRate;
        frequency.receiver.answers.Frequency = value;
        EXPECT_EQ(frequency.Run(), L"13 clsSetup.GetConfiguration: The receiver reports a frequency that is no number");
        EXPECT_EQ(frequency.document.Frequency(1), 300);
        symbolRate.receiver.answers.SymbolRate = value;
        EXPECT_EQ(symbolRate.Run(),
                  L"13 clsSetup.GetConfiguration: The receiver reports a symbol rate that is no number");
        EXPECT_EQ(symbolRate.document.DefaultSymbolRate(), 6.9);
    }
}

TEST(ConfigurationRead, ReferenceSourceCountsOnlyWithItsInput)
{
    Reading test;
    test.receiver.answers.ReferenceSource = 1;
    EXPECT_EQ(test.Run(), L"");
    EXPECT_EQ(test.document.ReferenceSource(), 1);
    test.receiver.answers.InstalledOptions = L"KTR-H2,extref";
    EXPECT_EQ(test.Run(), L"");
    EXPECT_EQ(test.document.ReferenceSource(), 0);
    EXPECT_EQ(test.log.Count("ReferenceSource"), 1) << "not even asked";
}

TEST(ConfigurationRead, AnotherModeIsReportedAndReadAllTheSame)
{
    Reading test;
    test.receiver.answers.Mode = 6;
    EXPECT_EQ(test.Run(), L"");
    ASSERT_EQ(test.host.reported.size(), 1u);
    EXPECT_EQ(RaisedBy([&] { throw test.host.reported[0]; }),
              L"1002 frmMain.IMeasure_GetConfiguration: KTR must be in DVB-C Demod. mode");
    EXPECT_EQ(test.document.OrderOfQam(), 64);
}

TEST(ConfigurationRead, EndsInOrderWhereverAnErrorOrTheStopFlagComes)
{
    ExpectOrderlyEndInEachCall<Reading>("Progress 10", 4);
}

constexpr const wchar_t* filterMessage = L"Selected SAW filter is not available, filter will be turned off";
constexpr const wchar_t* referenceMessage =
    L"External 10MHz reference input is not fitted, internal reference will be used";

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

TEST(ConfigurationWrite, BringsTheReceiverIntoDemodulatorMode)
{
    Writing test;
    test.receiver.answers.Mode = 6;
    EXPECT_EQ(test.Run(), L"");
    EXPECT_EQ(test.receiver.answers.Mode, 4);
    EXPECT_EQ(test.log.Count("Mode"), 3);

    test.receiver.answers.Mode = 6;
    test.receiver.ignoresModes = true;
    EXPECT_EQ(test.Run(),
              L"1002 clsSetup.SetConfiguration: The KTR does not change to DVB-C Demod. mode; check that its option "
              L"KTR-H2 is installed");
}

TEST(ConfigurationWrite, InputSettingsBelongToTheirRoutes)
{
    for (const auto& [route, setting] : {std::pair{2, ", InputAttenuation 255"},
                                         {75, ", InputAttenuation 255"},
                                         {4, ", DemodulatorGainControl 1"},
                                         {128, ""}}) {
        Writing test;
        test.document.Zin(route);
        EXPECT_EQ(test.Run(), L"");
        EXPECT_THAT(Lines(test.log.calls), testing::HasSubstr("InputRoute " + std::to_string(route) +
                                                              "\nStopFlag, Progress 4" + setting + "\nStopFlag"));
    }
}

TEST(ConfigurationWrite, SawFilterThatIsNotTheRightOneIsSwitchedOff)
{
    const std::tuple<int32_t, int32_t, bool> rows[] = {
        {2, 2, false}, {2, 6, true},  {8, 8, false}, {8, 6, true}, {8, 0, true},  {6, 6, false}, {6, 7, false},
        {7, 6, false}, {7, 7, false}, {7, 8, true},  {6, 0, true}, {0, 0, false}, {0, 8, false}, {5, 6, false}};
    for (const auto& [wanted, taken, off] : rows) {
        SCOPED_TRACE(std::to_string(wanted) + " " + std::to_string(taken));
        Writing test;
        test.document.SawBw(wanted);
        if (taken != wanted) {
            test.receiver.sawTaken[wanted] = taken;
        }
        EXPECT_EQ(test.Run(), L"");
        EXPECT_EQ(test.receiver.answers.SawBandwidth, off ? 0 : taken);
        EXPECT_EQ(test.log.Count("SawBandwidth"), off ? 3 : 2);
    }
}

TEST(ConfigurationWrite, UnknownLevelUnitAndReferenceWithoutItsInputAreNotWritten)
{
    Writing test;
    test.document.LevelUnit(L"dBuV");
    test.receiver.answers.InstalledOptions = L"KTR-H2,ExtRef";
    test.receiver.answers.ReferenceSource = 7;
    test.host.raises = false;
    EXPECT_EQ(test.Run(), std::wstring(L"-2147219499 clsSetup.SetConfiguration: ") + referenceMessage);
    EXPECT_EQ(test.log.calls.back(), "Report -2147219499 raise");
    test.document.ReferenceSource(0);
    EXPECT_EQ(test.Run(), L"");
    EXPECT_EQ(test.receiver.answers.ReferenceSource, 7);
    EXPECT_EQ(test.log.Count("LevelUnit"), 0);
}

TEST(ConfigurationWrite, DescriptionOfAnErrorDecidesWhatTheUserIsTold)
{
    const std::pair<const wchar_t*, const wchar_t*> rows[] = {
        {L"Let Mode failed", L"Let Mode failed"},
        {L"13: Let StatusSawFilterBW failed: no such filter", filterMessage},
        {L"Let Setup10MhzRef not available", referenceMessage},
        {L"Let StatusSawFilterBW failed, Let Mode failed", L"Let StatusSawFilterBW failed, Let Mode failed"},
        {L"Let Setup10MhzRef not available, Let StatusSawFilterBW failed", filterMessage},
        {L"Timeout", L"Timeout"},
    };
    for (const auto& [description, told] : rows) {
        for (const char* call : {"Initialise", "Mode", "SawBandwidth", "Equaliser", "Progress 12"}) {
            Writing test;
            test.log.FailAt(1, std::make_exception_ptr(RaisedError(4711, L"XKTR2x.clsReceiver", description)), call);
            EXPECT_EQ(test.Run(), std::wstring(L"4711 XKTR2x.clsReceiver: ") + told);
            EXPECT_TRUE(test.log.calls.back().starts_with(call)) << "nothing follows";
        }
    }
}

TEST(ConfigurationWrite, EndsInOrderWhereverAnErrorOrTheStopFlagComes)
{
    ExpectOrderlyEndInEachCall<Writing>("Progress 12", 5);
}

}  // namespace
}  // namespace tvn2x
