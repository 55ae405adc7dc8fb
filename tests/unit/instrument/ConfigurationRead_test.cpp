#include "instrument/ConfigurationRead.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TestConfiguration.h"

namespace tvn2x {
namespace {

struct Reading : TestConfiguration
{
    std::optional<RaisedError> Read()
    {
        return Outcome([&] { ReadConfiguration(document, Peers()); });
    }
};

TEST(ConfigurationRead, CallsReceiverAndParentInThisOrder)
{
    Reading test;
    EXPECT_FALSE(test.Read());
    EXPECT_EQ(Lines(test.log.calls), R"(Status Reading KTR Configuration, Progress 0/10, Mode
StopFlag, Progress 1, InputRoute
StopFlag, Progress 2, LevelUnit
StopFlag, Progress 3, SawBandwidth
StopFlag, Progress 4, OrderOfQam
StopFlag, Progress 5, RollOffFactor
StopFlag, Progress 6, BerSamples
StopFlag, Progress 7, Frequency
StopFlag, Progress 8, SymbolRate
StopFlag, Progress 9, InstalledOptions, ReferenceSource
StopFlag, Progress 10)");
}

TEST(ConfigurationRead, TakesEverySettingOverAndKeepsTheRest)
{
    Reading test;
    test.document.Notes(L"keep me");
    test.document.MaxSettlingTime(33);
    test.document.dirty = false;
    EXPECT_FALSE(test.Read());
    EXPECT_EQ(test.document.Zin(), 75);
    EXPECT_EQ(test.document.LevelUnit(), L"dB\u00B5V");
    EXPECT_EQ(test.document.SawBw(), 8);
    EXPECT_EQ(test.document.OrderOfQam(), 64);
    EXPECT_EQ(test.document.RollOffFactor(), 15);
    EXPECT_EQ(test.document.BerSamples(), 10);
    EXPECT_EQ(test.document.ListSize(), 1);
    EXPECT_EQ(test.document.Frequency(1), 474.25);
    EXPECT_EQ(test.document.SymbolRate(1), 5.5);
    EXPECT_EQ(test.document.DefaultSymbolRate(), 5.5);
    EXPECT_EQ(test.document.ReferenceSource(), 0);
    EXPECT_TRUE(test.document.dirty);
    EXPECT_EQ(test.document.Notes(), L"keep me");
    EXPECT_EQ(test.document.MaxSettlingTime(), 33);

    test.document.UserField(1, L"label");
    test.document.dirty = false;
    EXPECT_FALSE(test.Read());
    EXPECT_FALSE(test.document.dirty) << "nothing has changed";
    EXPECT_EQ(test.document.UserField(1), L"label");
}

TEST(ConfigurationRead, UnknownLevelUnitStaysAndAKnownOneIsNoChangeOfTheDocument)
{
    const std::pair<int32_t, const wchar_t*> units[] = {{0, L"dBmV"}, {1, L"dBpW"},     {2, L"dB\u00B5W"},
                                                        {3, L"dBm"},  {5, L"mV"},       {6, L"mV"},
                                                        {-1, L"mV"},  {4, L"dB\u00B5V"}};
    Reading test;
    EXPECT_FALSE(test.Read());
    test.document.dirty = false;
    for (const auto& [code, name] : units) {
        test.receiver.levelUnit = code;
        EXPECT_FALSE(test.Read());
        EXPECT_EQ(test.document.LevelUnit(), name) << code;
        EXPECT_FALSE(test.document.dirty);
    }
}

TEST(ConfigurationRead, ReferenceSourceCountsOnlyWithItsInput)
{
    Reading test;
    test.receiver.referenceSource = 1;
    EXPECT_FALSE(test.Read());
    EXPECT_EQ(test.document.ReferenceSource(), 1);
    test.receiver.options = L"KTR-H2,extref";
    EXPECT_FALSE(test.Read());
    EXPECT_EQ(test.document.ReferenceSource(), 0);
    EXPECT_EQ(test.log.Count("ReferenceSource"), 1) << "not even asked";
}

TEST(ConfigurationRead, WrongModeIsReportedAndReadNevertheless)
{
    Reading test;
    test.receiver.mode = 6;
    EXPECT_FALSE(test.Read());
    ASSERT_EQ(test.errors.reported.size(), 1u);
    EXPECT_EQ(test.errors.reported[0].number, 1002);
    EXPECT_EQ(test.errors.reported[0].source, L"frmMain.IMeasure_GetConfiguration");
    EXPECT_EQ(test.errors.reported[0].description, L"KTR must be in DVB-C Demod. mode");
    EXPECT_EQ(test.log.calls[3], "Report 1002");
    EXPECT_EQ(test.document.Zin(), 75);
    EXPECT_EQ(test.log.calls.back(), "Progress 10");
    EXPECT_EQ(test.receiver.mode, 6);
}

TEST(ConfigurationRead, NeedsNoParent)
{
    Reading test;
    ReadConfiguration(test.document, {test.receiver, test.runControl, nullptr, test.errors});
    EXPECT_EQ(test.document.Zin(), 75);
    EXPECT_EQ(test.log.Count("Progress") + test.log.Count("Status"), 0);
    EXPECT_EQ(test.log.Count("StopFlag"), 10);
}

/// The document is what the calls before the end have made it, setting by setting.
void ExpectTakenOver(const Reading& test, size_t callsDone)
{
    std::vector<std::string> done(test.log.calls.begin(),
                                  test.log.calls.begin() + static_cast<std::ptrdiff_t>(callsDone));
    const auto was = [&](const char* call) { return std::find(done.begin(), done.end(), call) != done.end(); };
    const SetupDocument& document = test.document;
    EXPECT_EQ(document.Zin(), was("InputRoute") ? 75 : 50);
    EXPECT_EQ(document.LevelUnit(), was("LevelUnit") ? L"dB\u00B5V" : L"dBm");
    EXPECT_EQ(document.SawBw(), was("SawBandwidth") ? 8 : 7);
    EXPECT_EQ(document.OrderOfQam(), was("OrderOfQam") ? 64 : 256);
    EXPECT_EQ(document.RollOffFactor(), was("RollOffFactor") ? 15 : 13);
    EXPECT_EQ(document.BerSamples(), was("BerSamples") ? 10 : 100);
    EXPECT_EQ(document.ListSize(), test.log.Count("Frequency") > 0 ? 1 : 3);
    EXPECT_EQ(document.Frequency(1), was("Frequency") ? 474.25 : test.log.Count("Frequency") > 0 ? 0 : 300);
    EXPECT_EQ(document.DefaultSymbolRate(), was("SymbolRate") ? 5.5 : 6.9);
    EXPECT_EQ(document.SymbolRate(1), was("SymbolRate") ? 5.5 : 0);
    EXPECT_EQ(document.ReferenceSource(), was("ReferenceSource") ? 0 : 1);
}

TEST(ConfigurationRead, NthCallFails)
{
    bool hurt = true;
    for (int n = 1; hurt; ++n) {
        SCOPED_TRACE(n);
        Reading test;
        test.receiver.mode = 6;
        test.log.FailAt(n, 4711);
        const auto error = test.Read();
        hurt = test.log.Triggered();
        EXPECT_EQ(error.has_value(), hurt);
        EXPECT_TRUE(!hurt ||
                    (error->number == 4711 && error->source == L"XKTR2x" && error->description == L"scripted"));
        EXPECT_TRUE(!hurt || test.log.calls.size() == static_cast<size_t>(n)) << "nothing follows";
        ExpectTakenOver(test, test.log.calls.size() - (hurt ? 1 : 0));
    }
}

TEST(ConfigurationRead, StopFlagSetFromTheNthCallOn)
{
    bool hurt = true;
    for (int n = 1; hurt; ++n) {
        SCOPED_TRACE(n);
        Reading test;
        test.log.StopAt(n);
        EXPECT_FALSE(test.Read());
        hurt = test.log.Triggered();
        const std::string& last = test.log.calls.back();
        EXPECT_TRUE(last == "StopFlag" || last == "Progress 10");
        EXPECT_LE(test.log.calls.size(), static_cast<size_t>(n) + 4) << "within a step";
        ExpectTakenOver(test, test.log.calls.size());
    }
}

TEST(ConfigurationRead, ParentThatEmptiesTheListEndsItWithTheSettersError)
{
    Reading test;
    test.log.Once("Progress 8", [&] { test.document.ListSize(0); });
    const auto error = test.Read();
    ASSERT_TRUE(error);
    EXPECT_EQ(error->number, 9);
    EXPECT_EQ(error->source, L"clsSetup.SymbolRate");
}

}  // namespace
}  // namespace tvn2x
