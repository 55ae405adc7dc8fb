#include "instrument/ConfigurationRead.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "TestConfiguration.h"
#include "support/TestFiles.h"

namespace tvn2x {
namespace {

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
    for (const auto& [size, label] : {std::pair{3, L"first"}, {1, L"first"}, {0, L""}}) {
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
    ASSERT_EQ(test.errors.reported.size(), 1u);
    EXPECT_EQ(RaisedBy([&] { throw test.errors.reported[0]; }),
              L"1002 frmMain.IMeasure_GetConfiguration: KTR must be in DVB-C Demod. mode");
    EXPECT_EQ(test.document.OrderOfQam(), 64);
}

TEST(ConfigurationRead, EndsInOrderWhereverAnErrorOrTheStopFlagComes)
{
    ExpectOrderlyEndInEachCall<Reading>("Progress 10", 4);
}

}  // namespace
}  // namespace tvn2x
