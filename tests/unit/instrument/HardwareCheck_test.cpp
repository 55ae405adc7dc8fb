#include "instrument/HardwareCheck.h"

#include <gmock/gmock.h>

#include "instrument/Identity.h"
#include "support/ScriptedReceiver.h"
#include "support/TestTable.h"
#include "util/Encoding.h"
#include "util/RaisedError.h"

namespace tvn2x {
namespace {

class HardwareCheckTest : public testing::Test
{
protected:
    HardwareCheckTest()
        : check(document, [this]() -> Receiver& {
              ++opened;
              return receiver;
          })
    {
    }

    SetupDocument document;
    CallLog log;
    ScriptedReceiver receiver{log};
    int opened = 0;
    HardwareCheck check;
};

TEST_F(HardwareCheckTest, EachSettingNeedsItsOptionAsTheTableSays)
{
    const auto canDoMode = [&] {
        receiver.answers.Mode = document.mode + 1;
        const bool inactive = check.Mode() == 1;
        receiver.answers.Mode = document.mode;
        EXPECT_EQ(check.Mode(), inactive ? 2 : 0);
        return inactive;
    };
    const std::map<std::string, std::pair<std::function<void(int32_t)>, std::function<bool()>>> checks = {
        {"mode", {[&](int32_t mode) { document.mode = mode; }, canDoMode}},
        {"route", {[&](int32_t route) { document.Zin(route); }, [&] { return check.InputPort(); }}},
        {"filter", {[&](int32_t filter) { document.SawBw(filter); }, [&] { return check.SawFilterBw(); }}},
        {"reference", {[&](int32_t source) { document.ReferenceSource(source); }, [&] { return check.ExtRef(); }}},
    };
    for (const std::vector<std::string>& row : TestTable("hardware-answers.tsv", 4)) {
        const auto& [put, canDo] = checks.at(row[0]);
        put(std::stoi(row[1]));
        receiver.answers.InstalledOptions = FromUtf8(CellText(row[2]));
        EXPECT_EQ(canDo(), row[3] == "yes") << testing::PrintToString(row);
    }
}

TEST_F(HardwareCheckTest, AsksTheReceiverOnlyWhereItHasToAnswer)
{
    document.Zin(128);
    document.SawBw(0);
    EXPECT_TRUE(check.InputPort());
    EXPECT_TRUE(check.SawFilterBw());
    EXPECT_TRUE(check.ExtRef());
    document.SawBw(5);
    document.ReferenceSource(2);
    document.Zin(1);
    EXPECT_TRUE(check.SawFilterBw());
    EXPECT_TRUE(check.ExtRef());
    EXPECT_FALSE(check.InputPort());
    EXPECT_EQ(opened, 0);
    EXPECT_THAT(log.calls, testing::IsEmpty());
}

TEST_F(HardwareCheckTest, ActivateModeSetsTheModeOnlyWhereItIsAnotherOne)
{
    receiver.answers.InstalledOptions = L"KTR-H2";
    EXPECT_TRUE(check.ActivateMode());
    EXPECT_EQ(log.Count("Mode 4"), 0);
    receiver.answers.Mode = 6;
    receiver.ignoresModes = true;
    EXPECT_FALSE(check.ActivateMode());
    log.calls.clear();
    receiver.answers.InstalledOptions = L"KTR-H7";
    EXPECT_FALSE(check.ActivateMode());
    EXPECT_THAT(log.calls, testing::ElementsAre("InstalledOptions"));
    const HardwareCheck unconnected(document, []() -> Receiver& { throw RaisedError(429, {}, {}); });
    EXPECT_FALSE(unconnected.ActivateMode());
}

TEST_F(HardwareCheckTest, ActivateModeGoesOnAfterAnErrorAndAnswersByTheLastModeRead)
{
    receiver.answers.InstalledOptions = L"KTR-H2";
    // InstalledOptions, Mode, Mode, Mode 4, Mode: the n-th of them fails. The answer, the calls and the mode are then:
    const std::tuple<bool, size_t, int32_t> expected[] = {{false, 1, 6}, {false, 2, 6}, {true, 5, 4},
                                                          {false, 5, 6}, {false, 5, 4}, {true, 5, 4}};
    for (int n = 1; n <= 6; ++n) {
        SCOPED_TRACE(n);
        receiver.answers.Mode = 6;
        log.calls.clear();
        log.FailAt(n, 77);
        const bool result = check.ActivateMode();
        EXPECT_EQ(std::tuple(result, log.calls.size(), receiver.answers.Mode), expected[n - 1]);
        log.Disarm();
    }
}

class Identity : public testing::Test
{
protected:
    bool Test()
    {
        identity = L"old";
        hardware = L"old";
        mode = -1;
        log.calls.clear();
        return Identify(receiver, receiver, identity, hardware, mode);
    }

    void ExpectUnknown()
    {
        EXPECT_FALSE(Test());
        EXPECT_EQ(std::tuple(identity, hardware, mode), std::tuple(L"", L"old", -1));
    }

    CallLog log;
    ScriptedReceiver receiver{log};
    std::wstring identity;
    std::wstring hardware;
    int32_t mode = 0;
};

TEST_F(Identity, OfTheRightInstrument)
{
    receiver.answers.Mode = 7;
    EXPECT_TRUE(Test());
    EXPECT_EQ(identity, L"Receiver 3,GPIB0::12,KTR,KESTREL&BRAND");
    EXPECT_EQ(hardware, L"KTR 23");
    EXPECT_EQ(mode, 7);
    EXPECT_THAT(log.calls, testing::ElementsAre("Online 1", "Online", "Manufacturer", "Model", "Hardware", "Mode",
                                                "InstrumentName", "BusAddress", "Model", "Manufacturer", "Online 0"));
    receiver.answers.Manufacturer = L"kestrel&BRAnd";
    receiver.answers.Model = L"kTr";
    EXPECT_TRUE(Test());
    EXPECT_EQ(identity, L"Receiver 3,GPIB0::12,kTr,kestrel&BRAnd");
}

TEST_F(Identity, OfAnotherMakeOrModelOrOffLineIsUnknown)
{
    for (const auto& [manufacturer, model] :
         {std::pair{L"KESTREL", L"KTR"}, {L"KESTREL&BRAND ", L"KTR"}, {L"KESTREL&BRAND", L"KTR2"}, {L"", L""}}) {
        receiver.answers.Manufacturer = manufacturer;
        receiver.answers.Model = model;
        ExpectUnknown();
        EXPECT_EQ(log.calls.back(), "Online 0");
    }
    receiver.isReachable = false;
    ExpectUnknown();
    EXPECT_THAT(log.calls, testing::ElementsAre("Online 1", "Online")) << "no more questions";
}

/// Online 1, Online, Manufacturer, Model, Hardware, Mode, four for the identity, Online 0.
TEST_F(Identity, NthCallFailsAndTheNextStatementFollows)
{
    constexpr int goesOnline = 1, isOnline = 2, lastQuestion = 10, goesOffline = 11;
    for (int n = 1; n <= goesOffline + 1; ++n) {
        SCOPED_TRACE(n);
        log.Disarm();
        receiver.online = n == goesOnline;  // was on line before: the failure does no harm
        log.FailAt(n, 77);
        const bool harmed = n >= isOnline && n <= lastQuestion;
        EXPECT_EQ(Test(), !harmed);
        EXPECT_EQ(identity.empty(), harmed);
        EXPECT_EQ(log.calls.back(), n == isOnline ? "Online" : "Online 0");
        EXPECT_EQ(hardware == L"old", n >= isOnline && n <= 5);
        EXPECT_EQ(mode == -1, n >= isOnline && n <= 6 && n != 5);
    }
}

}  // namespace
}  // namespace tvn2x
