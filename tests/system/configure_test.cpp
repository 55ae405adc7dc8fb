// Reading and writing the receiver through COM: plug-in and simulated receiver together.

#include <initguid.h>

#include <random>

#include "Client.h"

namespace tvn2x::client {
namespace {

constexpr const wchar_t* levelUnits[] = {L"dBmV", L"dBpW", L"dB\u00B5W", L"dBm", L"dB\u00B5V", L"mV"};

/// What both directions carry, in the order of the names.
using Settings = std::tuple<long, std::wstring, long, long, long, long, long>;
constexpr size_t referenceSource = 6;

class Configure : public PlugIn
{
protected:
    Configure()
    {
        errors->Clear();
        EXPECT_EQ(simulator->put_NetworkModel(Bstr(TVN_RECEIVERS L"\\full.ini").Get()), S_OK);
    }

    void Put(const Settings& settings)
    {
        const auto& [zin, unit, saw, qam, alpha, samples, source] = settings;
        setup->put_Zin(zin);
        setup->put_LevelUnit(Bstr(unit).Get());
        setup->put_SawBw(saw);
        setup->put_OrderOfQam(qam);
        setup->put_RollOffFactor(alpha);
        setup->put_BerSamples(samples);
        setup->put_ReferenceSource(source);
    }

    HRESULT Write() { return measure->SetConfiguration(); }

    HRESULT Write(const Settings& settings)
    {
        Put(settings);
        return Write();
    }

    /// The settings that the receiver reports, read into the document, which has forgotten its own.
    Settings OfReceiver()
    {
        Put({1, L"?", 99, 99, 99, 99, 99});
        EXPECT_EQ(measure->GetConfiguration(), S_OK) << testing::PrintToString(LastError().description);
        return {Get(setup, &_clsSetup::get_Zin),
                Get(setup, &_clsSetup::get_LevelUnit),
                Get(setup, &_clsSetup::get_SawBw),
                Get(setup, &_clsSetup::get_OrderOfQam),
                Get(setup, &_clsSetup::get_RollOffFactor),
                Get(setup, &_clsSetup::get_BerSamples),
                Get(setup, &_clsSetup::get_ReferenceSource)};
    }

    ComPtr<IErrorReport> errors = Create<IErrorReport>(L"XKTR2x.clsErrorReport");
};

TEST_F(Configure, WhatIsWrittenIsReadBack)
{
    std::mt19937 random(20240607);
    const auto pick = [&](auto... values) {
        const long list[] = {values...};
        return list[random() % sizeof...(values)];
    };
    for (int round = 0; round < 50; ++round) {
        const Settings settings{pick(2, 4, 50, 75, 128),
                                levelUnits[random() % 6],
                                pick(0, 2, 6, 8),
                                pick(4, 16, 32, 64, 128, 256),
                                static_cast<long>(12 + random() % 24),
                                static_cast<long>(1 + random() % 10000),
                                pick(0, 1)};
        ASSERT_EQ(Write(settings), S_OK) << testing::PrintToString(LastError().description);
        ASSERT_EQ(OfReceiver(), settings) << "round " << round;
    }
}

TEST_F(Configure, SettingThatIsRefusedIsToldByThePlugInAndByTheErrorReport)
{
    Settings settings{75, L"dBmV", 8, 64, 15, 10, 1};
    Set(L"Network", L"Installed Options", L"KTR-H2,KTR-H4,KTR-H5");
    EXPECT_EQ(static_cast<uint32_t>(Write(settings)), 0x800407D5u);
    const ErrorText error = LastError();
    EXPECT_EQ(error.source, L"clsSetup.SetConfiguration");
    EXPECT_EQ(error.description, L"External 10MHz reference input is not fitted, internal reference will be used");
    EXPECT_EQ(Get(errors, &IErrorReport::get_Description), L"Let Setup10MhzRef not available");
    std::get<referenceSource>(settings) = 0;
    EXPECT_EQ(OfReceiver(), settings) << "all the rest has been written";
}

TEST_F(Configure, NthOperationOfTheReceiverFails)
{
    const Settings before{75, L"dBmV", 8, 64, 15, 10, 0};
    for (const bool writing : {true, false}) {
        bool failed = true;
        for (long n = 1; failed; ++n) {
            ASSERT_LT(n, 100);
            Put(before);
            simulator->ClearFaults();
            simulator->FailAt(Bstr(L"*").Get(), n, 4711, Bstr(L"receiver").Get(), Bstr(L"cable").Get());
            const HRESULT result = writing ? Write() : measure->GetConfiguration();
            failed = FAILED(result);
            const ErrorText error = LastError();
            EXPECT_TRUE(!failed ||
                        (result == RuntimeError(4711) && error.source == L"receiver" && error.description == L"cable"));
        }
        simulator->ClearFaults();
    }
    EXPECT_EQ(OfReceiver(), before);
}

TEST_F(Configure, ParentMayCallBackOrReleaseThePlugIn)
{
    measure->putref_Parent(&parent);
    int refused = 0, notices = 0;
    parent.onNotice = [&](const std::wstring&) {
        ++notices;
        VARIANT_BOOL result;
        for (const HRESULT call :
             {measure->Measure(1, VARIANT{}, &result), measure->GetConfiguration(), measure->SetConfiguration()}) {
            refused += call == RuntimeError(5) ? 1 : 0;
        }
        setup->put_ListSize(notices % 3);
        return S_OK;
    };
    Write();
    measure->GetConfiguration();
    EXPECT_EQ(refused, 3 * notices);
    EXPECT_GT(notices, 20);

    parent.onNotice = [&](const std::wstring&) { return RuntimeError(1004); };
    EXPECT_EQ(Write(), RuntimeError(1004));
    EXPECT_EQ(measure->GetConfiguration(), RuntimeError(1004));

    IMeasure* last = measure.Get();
    parent.onNotice = [&](const std::wstring&) {
        setup.Reset();
        measure.Reset();
        driver.Reset();
        return S_OK;
    };
    EXPECT_EQ(last->SetConfiguration(), S_OK);
    EXPECT_EQ(parent.references, 0u) << "the object is gone, and with it its parent reference";
}

}  // namespace
}  // namespace tvn2x::client
