// Checking, identifying, reading and writing the receiver through COM: plug-in and simulated receiver together.

#include <initguid.h>

#include <random>

#include "Client.h"

namespace tvn2x::client {
namespace {

constexpr short status = 13, rfLevel = 15, reference = 18, frame = 20;
constexpr const wchar_t* levelUnits[] = {L"dBmV", L"dBpW", L"dB\u00B5W", L"dBm", L"dB\u00B5V", L"mV"};

/// What both directions carry, in the order of the names.
using Settings = std::tuple<long, std::wstring, long, long, long, long, long>;
constexpr size_t route = 0, levelUnit = 1, filter = 2, order = 3, referenceSource = 6;

class Configure : public PlugIn
{
protected:
    Configure()
    {
        errors->Clear();
        Receiver(L"full.ini");
    }

    void Receiver(const wchar_t* name)
    {
        const std::wstring path = std::wstring(TVN_RECEIVERS L"\\") + name;
        EXPECT_EQ(simulator->put_NetworkModel(Bstr(path).Get()), S_OK);
    }

    void Set(const wchar_t* key, const wchar_t* value) { PlugIn::Set(L"Network", key, value); }

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

    bool Answer(HRESULT (STDMETHODCALLTYPE ICheckHardware::*question)(VARIANT_BOOL*)) const
    {
        return Get(check, question) != VARIANT_FALSE;
    }

    /// The cell of a parameter after a scan of one channel.
    std::wstring Scan(double frequency, double symbolRate, short parameter)
    {
        setup->put_ListSize(1);
        setup->put_Frequency(1, frequency);
        setup->put_SymbolRate(1, symbolRate);
        EXPECT_EQ(measure->ResetMeasurement(0), S_OK);
        EXPECT_TRUE(Measured(1));
        EXPECT_EQ(Cell(1, status, 1), L"Done");
        return Cell(0, parameter, 1);
    }

    ComPtr<ICheckHardware> check = setup.As<ICheckHardware>();
    ComPtr<IErrorReport> errors = Create<IErrorReport>(L"XKTR2x.clsErrorReport");
};

TEST_F(Configure, WhatIsWrittenIsReadBack)
{
    std::mt19937 random(20240607);
    const auto pick = [&](auto... values) {
        const long list[] = {values...};
        return list[random() % sizeof...(values)];
    };
    for (int round = 0; round < 200; ++round) {
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

TEST_F(Configure, OrderOfQamUnitAndRouteThatWereWrittenDecideWhatIsMeasured)
{
    Settings settings{75, L"dB\u00B5V", 8, 64, 15, 1, 0};
    for (int i = 0; i < 2; ++i) {
        // Writing leaves the receiver at another frequency than the one that was measured last.
        ASSERT_EQ(Write(settings), S_OK);
        EXPECT_EQ(Scan(466, 6.9, frame), L"OK");
    }
    EXPECT_EQ(Scan(474, 6.9, frame), L"UNSYNC") << "a channel of 256 QAM";
    EXPECT_EQ(Scan(482, 5, frame), L"OK");
    std::get<order>(settings) = 256;
    ASSERT_EQ(Write(settings), S_OK);
    EXPECT_EQ(Scan(474, 6.9, frame), L"OK");
    EXPECT_NEAR(_wtof(Cell(0, rfLevel, 1).c_str()), 66, 1);
    std::get<levelUnit>(settings) = L"dBmV";
    ASSERT_EQ(Write(settings), S_OK);
    EXPECT_NEAR(_wtof(Scan(474, 6.9, rfLevel).c_str()), 6, 1);
    std::get<route>(settings) = 128;
    ASSERT_EQ(Write(settings), S_OK);
    EXPECT_EQ(Scan(474, 6.9, rfLevel), L"---") << "no network on the IF input";
}

TEST_F(Configure, FittedReceiverPassesEveryCheckAndABareOneFails)
{
    for (const wchar_t* name : {L"full.ini", L"bare.ini"}) {
        const bool full = name[0] == L'f';
        Receiver(name);
        for (const long zin : {2, 4, 50, 75, 128, 1}) {
            setup->put_Zin(zin);
            EXPECT_EQ(Answer(&ICheckHardware::InputPort), zin != 1 && (full || zin >= 50)) << zin;
        }
        for (const long width : {0, 2, 6, 7, 8, 5}) {
            setup->put_SawBw(width);
            EXPECT_EQ(Answer(&ICheckHardware::SawFilterBw), full || width == 0 || width == 5) << width;
        }
        for (const long source : {0, 1}) {
            setup->put_ReferenceSource(source);
            EXPECT_EQ(Answer(&ICheckHardware::ExtRef), full || source == 0) << source;
        }
        for (const long mode : {4, 6, 7, 8, 13, 14, 1}) {
            setup.As<ISetup>()->put_Mode(mode);
            const bool available = full || mode == 4 || mode == 1;
            EXPECT_EQ(Answer(&ICheckHardware::ActivateMode), available) << mode;
            EXPECT_EQ(Get(check, &ICheckHardware::Mode), available ? 2 : 0) << mode;
        }
    }
    setup.As<ISetup>()->put_Mode(4);
    EXPECT_EQ(Get(check, &ICheckHardware::Mode), 1) << "the receiver is still in mode 1";
}

TEST_F(Configure, ExternalReferenceAbsentOrUnlocked)
{
    Settings settings{75, L"dBmV", 8, 64, 15, 10, 1};
    ASSERT_EQ(Write(settings), S_OK);
    EXPECT_EQ(Scan(466, 6.9, reference), L"OK");
    Set(L"External Reference", L"No");
    EXPECT_EQ(Scan(466, 6.9, reference), L"UNSYNC") << "fitted, but nothing is on it";

    Set(L"Installed Options", L"KTR-H2,KTR-H4,KTR-H5");
    EXPECT_EQ(static_cast<uint32_t>(Write()), 0x800407D5u);
    const ErrorText error = LastError();
    EXPECT_EQ(error.source, L"clsSetup.SetConfiguration");
    EXPECT_EQ(error.description, L"External 10MHz reference input is not fitted, internal reference will be used");
    EXPECT_EQ(Get(errors, &IErrorReport::get_Description), L"Let Setup10MhzRef not available");
    std::get<referenceSource>(settings) = 0;
    EXPECT_EQ(OfReceiver(), settings) << "all the rest has been written";
}

TEST_F(Configure, RefusedFilterOrModeEndsTheWriting)
{
    Set(L"Installed Options", L"KTR-H2,KTR-H5,KTR-H8");
    EXPECT_LT(Write({75, L"dBmV", 8, 64, 15, 10, 0}), 0);
    EXPECT_EQ(LastError().description, L"Selected SAW filter is not available, filter will be turned off");
    ASSERT_EQ(Write({75, L"dBmV", 7, 64, 15, 10, 0}), S_OK);
    EXPECT_EQ(std::get<filter>(OfReceiver()), 6) << "its neighbour";

    Set(L"Installed Options", L"KTR-H5");
    EXPECT_LT(Write({75, L"dBm", 0, 16, 15, 10, 0}), 0);
    EXPECT_THAT(LastError().description, testing::HasSubstr(L"Let Mode failed"));
    Set(L"Ignores Missing Modes", L"Yes");
    EXPECT_EQ(Write(), RuntimeError(1002));
    const ErrorText error = LastError();
    EXPECT_EQ(error.source, L"clsSetup.SetConfiguration");
    EXPECT_THAT(error.description, testing::HasSubstr(L"DVB-C Demod. mode"));
    EXPECT_THAT(error.description, testing::HasSubstr(L"KTR-H2"));
    EXPECT_EQ(std::get<order>(OfReceiver()), 64) << "read in the wrong mode too, and never written";
    EXPECT_EQ(Get(errors, &IErrorReport::get_Number), 1002);
    EXPECT_EQ(Get(errors, &IErrorReport::get_Source), L"frmMain.IMeasure_GetConfiguration");
    EXPECT_EQ(Get(errors, &IErrorReport::get_Description), L"KTR must be in DVB-C Demod. mode");
}

TEST_F(Configure, IdentityInAnyLetterCaseAndOffLine)
{
    Bstr identity(L"old"), hardware(L"old");
    long mode = 0;
    const auto test = [&] {
        BSTR texts[] = {identity.Detach(), hardware.Detach()};
        VARIANT_BOOL result = VARIANT_FALSE;
        EXPECT_EQ(driver->Test(&texts[0], &texts[1], &mode, &result), S_OK);
        *identity.Put() = texts[0];
        *hardware.Put() = texts[1];
        return result != VARIANT_FALSE;
    };
    Set(L"Manufacturer", L"kestrel&brand");
    Set(L"Model", L"ktr");
    EXPECT_TRUE(test());
    EXPECT_EQ(identity.View(), L"Test receiver,SIM1,ktr,kestrel&brand");
    EXPECT_THAT(std::wstring(hardware.View()), testing::HasSubstr(L"KTR 2x"));
    EXPECT_EQ(mode, 4);
    EXPECT_EQ(Get(driver, &IDriver::get_Online), VARIANT_FALSE) << "off line again";

    Set(L"Receiver Connected", L"No");
    EXPECT_FALSE(test());
    EXPECT_EQ(identity.View(), L"");
    EXPECT_FALSE(Answer(&ICheckHardware::ActivateMode));
    setup->put_ReferenceSource(1);
    VARIANT_BOOL result;
    for (const HRESULT failure : {check->Mode(&mode), check->InputPort(&result), check->SawFilterBw(&result),
                                  check->ExtRef(&result), measure->GetConfiguration(), Write()}) {
        EXPECT_LT(failure, 0);
    }
    EXPECT_THAT(LastError().description, testing::HasSubstr(L"does not answer"));
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
        check.Reset();
        driver.Reset();
        return S_OK;
    };
    EXPECT_EQ(last->SetConfiguration(), S_OK);
    EXPECT_EQ(parent.references, 0u) << "the object is gone, and with it its parent reference";
}

}  // namespace
}  // namespace tvn2x::client
