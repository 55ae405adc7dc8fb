#include "instrument/Identity.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/ScriptedReceiver.h"

namespace tvn2x {
namespace {

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
