#include "instrument/ConfigurationWrite.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TestConfiguration.h"
#include "support/TestFiles.h"

namespace tvn2x {
namespace {

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
    test.errors.raises = false;
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
