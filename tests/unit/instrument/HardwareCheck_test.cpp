#include "instrument/HardwareCheck.h"

#include <gmock/gmock.h>

#include "instrument/Identity.h"
#include "support/ScriptedReceiver.h"
#include "util/RaisedError.h"

namespace tvn2x {
namespace {

/// A setting of the setup, lists of options that fit it, and lists that do not although they look like it.
struct Case
{
    int32_t value;
    std::vector<std::wstring> fitting;
    std::vector<std::wstring> missing;
};

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

    /// Puts each setting into the setup and asks whether the receiver can do it.
    template <class Put, class Ask>
    void ExpectAnswers(std::initializer_list<Case> cases, Put put, Ask ask)
    {
        for (const Case& row : cases) {
            put(row.value);
            for (const auto& [lists, expected] : {std::pair{row.fitting, true}, {row.missing, false}}) {
                for (const std::wstring& options : lists) {
                    receiver.answers.InstalledOptions = options;
                    EXPECT_EQ(ask(), expected) << row.value << " " << testing::PrintToString(options);
                }
            }
        }
    }

    SetupDocument document;
    CallLog log;
    ScriptedReceiver receiver{log};
    int opened = 0;
    HardwareCheck check;
};

TEST_F(HardwareCheckTest, ModeNeedsItsOptionAsAWholeEntryInThisLetterCase)
{
    const auto canDo = [&] {
        receiver.answers.Mode = document.mode + 1;
        const bool inactive = check.Mode() == 1;
        receiver.answers.Mode = document.mode;
        EXPECT_EQ(check.Mode(), inactive ? 2 : 0);
        return inactive;
    };
    ExpectAnswers(
        {
            {4, {L"KTR-H2", L"A,KTR-H2,B"}, {L"", L"ktr-h2", L"KTR-H22", L"XKTR-H2", L"A, KTR-H2", L"KTR-H7"}},
            {6, {L"KTR-S31", L"B,KTR-S31"}, {L"KTR-S33", L"KTR-S311", L"KTR-H2"}},
            {7, {L"KTR-S33"}, {L"KTR-S31"}},
            {13, {L"KTR-H7"}, {L"KTR-H2"}},
            {14, {L"KTR-S32"}, {L"KTR-S31,KTR-S33"}},
            {1, {L"", L"KTR-H2"}, {}},  // a mode that needs no option
        },
        [&](int32_t mode) { document.mode = mode; }, canDo);
}

TEST_F(HardwareCheckTest, InputFilterAndReferenceNeedTheirOptions)
{
    ExpectAnswers(
        {
            {2, {L"EAMOD", L"XEAMODX"}, {L"eamod", L"RB,KTR-H5"}},
            {4, {L"RB", L"A,RBX"}, {L"rb", L"EAMOD"}},
            {50, {L"KTR-H5", L"KTR-H55"}, {L"KTR-H4", L""}},
            {75, {L"KTR-H5"}, {L"RB,EAMOD"}},
            {1, {}, {L"EAMOD,RB,KTR-H5"}},
        },
        [&](int32_t route) { document.Zin(route); }, [&] { return check.InputPort(); });
    ExpectAnswers(
        {
            {2, {L"KTR-H6", L"A,KTR-H6,B"}, {L"KTR-H66", L"KTR-H8 (or KTR-H9)"}},
            {6, {L"KTR-H8 (or KTR-H9)", L"KTR-H8 "}, {L"KTR-H8", L"A,KTR-H8,B", L"KTR-H9"}},
            {7, {L"KTR-H8 (or KTR-H9)", L"(or KTR-H9),B"}, {L"KTR-H9", L"(or KTR-H9) ,B", L"KTR-H8 "}},
            {8, {L"KTR-H4"}, {L"KTR-H45"}},
        },
        [&](int32_t filter) { document.SawBw(filter); }, [&] { return check.SawFilterBw(); });
    ExpectAnswers(
        {{1, {L"A,XEXTREF2"}, {L"ExtRef"}}}, [&](int32_t source) { document.ReferenceSource(source); },
        [&] { return check.ExtRef(); });
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
        return Identify(instrument, receiver, identity, hardware, mode);
    }

    void ExpectUnknown()
    {
        EXPECT_FALSE(Test());
        EXPECT_EQ(std::tuple(identity, hardware, mode), std::tuple(L"", L"old", -1));
    }

    CallLog log;
    ScriptedInstrument instrument{log};
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
    instrument.identity.Manufacturer = L"kestrel&BRAnd";
    instrument.identity.Model = L"kTr";
    EXPECT_TRUE(Test());
    EXPECT_EQ(identity, L"Receiver 3,GPIB0::12,kTr,kestrel&BRAnd");
}

TEST_F(Identity, OfAnotherMakeOrModelOrOffLineIsUnknown)
{
    for (const auto& [manufacturer, model] :
         {std::pair{L"KESTREL", L"KTR"}, {L"KESTREL&BRAND ", L"KTR"}, {L"KESTREL&BRAND", L"KTR2"}, {L"", L""}}) {
        instrument.identity.Manufacturer = manufacturer;
        instrument.identity.Model = model;
        ExpectUnknown();
        EXPECT_EQ(log.calls.back(), "Online 0");
    }
    instrument.answers = false;
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
        instrument.online = n == goesOnline;  // was on line before: the failure does no harm
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
