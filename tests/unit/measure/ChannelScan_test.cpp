#include "measure/ChannelScan.h"

#include <gtest/gtest.h>

#include <cmath>

#include "TestScan.h"
#include "support/TestFiles.h"

namespace tvn2x {
namespace {

/// The calls of a run, one line a step, with the check of all four locks folded into one word.
std::string Steps(const std::vector<std::string>& calls)
{
    const std::string locks = "RfSignalPresent, ReferenceLocked, SymbolClockUnlocked, CarrierUnlocked, TsError, ";
    std::string text;
    for (const std::string& call : calls) {
        text += call + (call.starts_with("Progress") || &call == &calls.back() ? "\n" : ", ");
        if (text.ends_with(locks)) {
            text.replace(text.size() - locks.size(), locks.size(), "Locks, ");
        }
    }
    return text;
}

TEST(ChannelScan, CallsReceiverAndParentInThisOrder)
{
    TestScan test;
    test.receiver.answers.Hold = true;
    test.log.Once("ReadBer", [&] { test.clock.Advance(60); });
    EXPECT_TRUE(test.Measure());
    EXPECT_EQ(Steps(test.log.calls), TestFile("scan-calls.txt"));
}

TEST(ChannelScan, AllWaitsShareOneSettlingTimeAndEveryOneEnds)
{
    TestScan test;
    test.receiver.answers.CarrierUnlocked = true;
    for (const double wallSet : {0, -3600, 3600}) {  // once in each of the scan's calls
        test.log.onCall = [&](const std::string& call) {
            test.clock.Advance(call == "RfSignalPresent" && test.log.Count(call) == 1 ? 9 : 0);
            test.clock.SetWallBy(wallSet);
        };
        test.clock.Set(0);
        EXPECT_TRUE(test.Measure());
        EXPECT_EQ(test.Cell(MP_SYNC), L"UNSYNC");
        EXPECT_GT(test.clock.SteadySeconds(), 10);
        EXPECT_LT(test.clock.SteadySeconds(), 13);
    }
    test.log.onCall = {};

    test.receiver.answers.RfSignalPresent = false;
    test.clock.step = 300;
    for (const int32_t seconds : {0, -1, INT32_MIN, INT32_MAX}) {
        test.document.MaxSettlingTime(seconds);
        EXPECT_TRUE(test.Measure());
        EXPECT_EQ(test.Cell(MP_DATA), L"UNSYNC");
    }
}

TEST(ChannelScan, LockThatGoesWhileMeasuringReadsIntermittentEvenWhenItComesBack)
{
    const std::tuple<bool ReceiverAnswers::*, MP_TYPES> cases[] = {{&ReceiverAnswers::ReferenceLocked, MP_REF},
                                                                   {&ReceiverAnswers::SymbolClockUnlocked, MP_SYNC},
                                                                   {&ReceiverAnswers::CarrierUnlocked, MP_SYNC},
                                                                   {&ReceiverAnswers::TsError, MP_DATA}};
    for (const auto& [flag, lost] : cases) {
        for (const char* when : {"ReadRfLevel", "ReadMer"}) {
            TestScan test;
            const auto toggle = [&, flag = flag] { test.receiver.answers.*flag = !(test.receiver.answers.*flag); };
            test.log.Once(when, [&] {
                toggle();
                test.log.Once("Progress 23", toggle);
            });
            EXPECT_TRUE(test.Measure());
            for (const MP_TYPES indicator : lockIndicators) {
                EXPECT_EQ(test.Cell(indicator), indicator == lost ? L"INTERMITTENT" : L"OK") << indicator << when;
                EXPECT_EQ(test.log.Count("Cell 1," + std::to_string(indicator)), indicator == lost ? 2 : 1);
            }
        }
    }
}

TEST(ChannelScan, ReadingThatNobodyCanHaveTakenReadsDashesInItsOwnCellOnly)
{
    TestScan sound;
    EXPECT_TRUE(sound.Measure());
    const double beyond = std::nextafter(1e15, 1e16);
    for (const auto& [name, parameter, reading] : readings) {
        for (const double value : {std::nan(""), double{INFINITY}, double{-INFINITY}, 1e300, beyond, -beyond}) {
            TestScan test;
            test.receiver.answers.*reading = value;
            EXPECT_TRUE(test.Measure());
            EXPECT_EQ(test.Status(), L"Done");
            for (const MP_TYPES column : valueColumns) {
                EXPECT_EQ(test.Cell(column), column == parameter ? L"---" : sound.Cell(column)) << name << column;
                EXPECT_EQ(test.Value(column).has_value(), column != parameter) << name << column;
            }
        }
    }
    TestScan test;
    for (const auto& [value, marker, text] : {std::tuple(1e15, L"", L"1000000000000000.0"),
                                              {-1e15, L"", L"-1000000000000000.0"},
                                              {std::nan(""), L"OVER", L"OVER"}}) {
        test.receiver.answers.ReadMer = value;
        test.receiver.markers["ReadMer"] = marker;
        EXPECT_TRUE(test.Measure());
        EXPECT_EQ(test.Cell(MP_MER), text);
    }
}

}  // namespace
}  // namespace tvn2x
