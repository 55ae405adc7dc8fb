#include "instrument/ConfigurationWrite.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "TestConfiguration.h"

namespace tvn2x {
namespace {

constexpr const wchar_t* filterMessage = L"Selected SAW filter is not available, filter will be turned off";
constexpr const wchar_t* referenceMessage =
    L"External 10MHz reference input is not fitted, internal reference will be used";

struct Writing : TestConfiguration
{
    std::optional<RaisedError> Write()
    {
        log.calls.clear();
        return Outcome([&] { WriteConfiguration(document, Peers(), [&] { log.Call("ForgetTuning"); }); });
    }

    void FailWith(const std::string& call, const wchar_t* description)
    {
        log.FailAt(1, std::make_exception_ptr(RaisedError(4711, L"XKTR2x.clsReceiver", description)), call);
    }
};

TEST(ConfigurationWrite, CallsReceiverAndParentInThisOrder)
{
    Writing test;
    EXPECT_FALSE(test.Write());
    EXPECT_EQ(Lines(test.log.calls), R"(Status Configuring KTR, Progress 1/12, ForgetTuning, Initialise
StopFlag, Progress 2, Mode
StopFlag, Progress 3, InputRoute 50
StopFlag, Progress 4, InputAttenuation 255
StopFlag, Progress 5, LevelUnit 3
StopFlag, Progress 6, SawBandwidth 7, SawBandwidth
StopFlag, Progress 7, OrderOfQam 256
StopFlag, Progress 8, RollOffFactor 13
StopFlag, Progress 9, BerSamples 100
StopFlag, Progress 10, Equaliser 1
StopFlag, Progress 11, InstalledOptions, ReferenceSource 1
StopFlag, Progress 12)");
    EXPECT_FALSE(test.document.dirty);
}

TEST(ConfigurationWrite, BringsTheReceiverIntoDemodulatorModeOrEndsThere)
{
    Writing test;
    test.receiver.mode = 6;
    EXPECT_FALSE(test.Write());
    EXPECT_EQ(test.receiver.mode, 4);
    EXPECT_EQ(test.log.Count("Mode"), 3);

    test.receiver.mode = 6;
    test.receiver.ignoresModes = true;
    const auto error = test.Write();
    ASSERT_TRUE(error);
    EXPECT_EQ(error->number, 1002);
    EXPECT_EQ(error->source, L"clsSetup.SetConfiguration");
    EXPECT_THAT(error->description, testing::HasSubstr(L"DVB-C Demod. mode"));
    EXPECT_EQ(test.log.calls.back(), "Mode");
}

TEST(ConfigurationWrite, InputSettingsBelongToTheirRoutes)
{
    const struct
    {
        int32_t route;
        const char* call;  ///< "" for none
    } rows[] = {{2, "InputAttenuation 255"},
                {50, "InputAttenuation 255"},
                {75, "InputAttenuation 255"},
                {4, "DemodulatorGainControl 1"},
                {128, ""}};
    for (const auto& [route, call] : rows) {
        Writing test;
        test.document.Zin(route);
        EXPECT_FALSE(test.Write());
        EXPECT_EQ(test.receiver.inputRoute, route);
        std::string calls;
        for (const char* setting : {"InputAttenuation 255", "DemodulatorGainControl 1"})
            calls += test.log.Count(setting) != 0 ? setting : "";
        EXPECT_EQ(calls, call) << route;
    }
}

TEST(ConfigurationWrite, LevelUnitByItsExactName)
{
    const std::pair<const wchar_t*, int32_t> units[] = {
        {L"dBmV", 0},  {L"dBpW", 1},  {L"dB\u00B5W", 2},  {L"dBm", 3},   {L"dB\u00B5V", 4}, {L"mV", 5},
        {L"dBuV", 42}, {L"DBMV", 42}, {L"dB\u03BCV", 42}, {L"dBm ", 42}, {L"", 42}};
    for (const auto& [name, code] : units) {
        Writing test;
        test.receiver.levelUnit = 42;
        test.document.LevelUnit(name);
        EXPECT_FALSE(test.Write());
        EXPECT_EQ(test.receiver.levelUnit, code) << testing::PrintToString(std::wstring(name));
    }
}

TEST(ConfigurationWrite, SawFilterThatIsNotTheRightOneIsSwitchedOff)
{
    const struct
    {
        int32_t wanted;
        int32_t taken;
        bool off;
    } rows[] = {{2, 2, false}, {2, 6, true},  {8, 8, false}, {8, 6, true}, {8, 0, true},  {6, 6, false}, {6, 7, false},
                {7, 6, false}, {7, 7, false}, {7, 8, true},  {6, 0, true}, {0, 0, false}, {0, 8, false}, {5, 6, false}};
    for (const auto& [wanted, taken, off] : rows) {
        SCOPED_TRACE(std::to_string(wanted) + " " + std::to_string(taken));
        Writing test;
        test.document.SawBw(wanted);
        if (taken != wanted)
            test.receiver.sawTaken[wanted] = taken;
        EXPECT_FALSE(test.Write());
        EXPECT_EQ(test.receiver.sawBandwidth, off ? 0 : taken);
        EXPECT_EQ(test.log.Count("SawBandwidth"), off ? 3 : 2);
        EXPECT_EQ(test.log.calls.back(), "Progress 12");
    }
}

TEST(ConfigurationWrite, ReferenceWithoutItsInput)
{
    Writing test;
    test.receiver.options = L"KTR-H2,ExtRef";
    test.receiver.referenceSource = 7;
    for (const bool reporterRaises : {true, false}) {
        test.errors.raises = reporterRaises;
        const auto error = test.Write();
        ASSERT_TRUE(error);
        EXPECT_EQ(static_cast<uint32_t>(error->number), 0x800407D5u);
        EXPECT_EQ(error->source, L"clsSetup.SetConfiguration");
        EXPECT_EQ(error->description, referenceMessage);
        EXPECT_EQ(test.errors.reported.back().description, L"Let Setup10MhzRef not available");
        EXPECT_EQ(test.log.calls.back(), "Report -2147219499 raise");
        EXPECT_EQ(test.receiver.referenceSource, 7) << "not written";
    }
    test.document.ReferenceSource(0);
    EXPECT_FALSE(test.Write());
    EXPECT_EQ(test.receiver.referenceSource, 7);
}

TEST(ConfigurationWrite, DescriptionOfAnErrorDecidesWhatTheUserIsTold)
{
    const std::pair<const wchar_t*, const wchar_t*> rows[] = {
        {L"Let Mode failed", L"Let Mode failed"},
        {L"13: Let StatusSawFilterBW failed: no such filter", filterMessage},
        {L"Let Setup10MhzRef not available", referenceMessage},
        {L"Let StatusSawFilterBW failed, Let Mode failed", L"Let StatusSawFilterBW failed, Let Mode failed"},
        {L"Let Setup10MhzRef not available, Let StatusSawFilterBW failed", filterMessage},
        {L"let mode failed", L"let mode failed"},
        {L"Timeout", L"Timeout"},
        {L"", L""},
    };
    for (const auto& [description, told] : rows) {
        for (const char* call : {"Initialise", "Mode", "SawBandwidth", "Equaliser", "Progress 12"}) {
            Writing test;
            test.FailWith(call, description);
            const auto error = test.Write();
            ASSERT_TRUE(error);
            EXPECT_EQ(error->number, 4711);
            EXPECT_EQ(error->source, L"XKTR2x.clsReceiver");
            EXPECT_EQ(error->description, told);
            EXPECT_TRUE(test.log.calls.back().starts_with(call)) << "nothing follows";
        }
    }
}

TEST(ConfigurationWrite, NeedsNoParent)
{
    Writing test;
    WriteConfiguration(test.document, {test.receiver, test.runControl, nullptr, test.errors}, [] {});
    EXPECT_EQ(test.receiver.orderOfQam, 256);
    EXPECT_EQ(test.log.Count("Progress") + test.log.Count("Status"), 0);
    EXPECT_EQ(test.log.Count("StopFlag"), 11);
}

/// The receiver's settings are those that the calls before the end have written, over those it had.
void ExpectWritten(const Writing& test, size_t callsDone)
{
    const ScriptedReceiver& receiver = test.receiver;
    std::map<std::string, int32_t> expected{
        {"Mode", 6},        {"InputRoute", 75},    {"InputAttenuation", 0}, {"LevelUnit", 4}, {"SawBandwidth", 8},
        {"OrderOfQam", 64}, {"RollOffFactor", 15}, {"BerSamples", 10},      {"Equaliser", 0}, {"ReferenceSource", 0}};
    for (size_t i = 0; i < callsDone; ++i) {
        const std::string& call = test.log.calls[i];
        const size_t blank = call.find(' ');
        if (blank != std::string::npos && expected.count(call.substr(0, blank)) != 0)
            expected[call.substr(0, blank)] = std::stoi(call.substr(blank));
    }
    const std::map<std::string, int32_t> settings{{"Mode", receiver.mode},
                                                  {"InputRoute", receiver.inputRoute},
                                                  {"InputAttenuation", receiver.inputAttenuation},
                                                  {"LevelUnit", receiver.levelUnit},
                                                  {"SawBandwidth", receiver.sawBandwidth},
                                                  {"OrderOfQam", receiver.orderOfQam},
                                                  {"RollOffFactor", receiver.rollOffFactor},
                                                  {"BerSamples", receiver.berSamples},
                                                  {"Equaliser", receiver.equaliser},
                                                  {"ReferenceSource", receiver.referenceSource}};
    EXPECT_EQ(settings, expected);
}

TEST(ConfigurationWrite, NthCallFails)
{
    bool hurt = true;
    for (int n = 1; hurt; ++n) {
        SCOPED_TRACE(n);
        Writing test;
        test.receiver.mode = 6;
        test.log.FailAt(n, 4711);
        const auto error = test.Write();
        hurt = test.log.Triggered();
        EXPECT_EQ(error.has_value(), hurt);
        EXPECT_TRUE(!hurt ||
                    (error->number == 4711 && error->source == L"XKTR2x" && error->description == L"scripted"));
        EXPECT_TRUE(!hurt || test.log.calls.size() == static_cast<size_t>(n)) << "nothing follows";
        EXPECT_EQ(test.log.Count("ForgetTuning"), n <= 2 ? 0 : 1);
        ExpectWritten(test, test.log.calls.size() - (hurt ? 1 : 0));
    }
}

TEST(ConfigurationWrite, StopFlagSetFromTheNthCallOn)
{
    bool hurt = true;
    for (int n = 1; hurt; ++n) {
        SCOPED_TRACE(n);
        Writing test;
        test.receiver.mode = 6;
        test.log.StopAt(n);
        EXPECT_FALSE(test.Write());
        hurt = test.log.Triggered();
        const std::string& last = test.log.calls.back();
        EXPECT_TRUE(last == "StopFlag" || last == "Progress 12");
        EXPECT_LE(test.log.calls.size(), static_cast<size_t>(n) + 5) << "within a step";
        EXPECT_EQ(test.log.Count("ForgetTuning"), 1);
        EXPECT_EQ(test.log.Count("Initialise"), 1);
        ExpectWritten(test, test.log.calls.size());
    }
}

}  // namespace
}  // namespace tvn2x
