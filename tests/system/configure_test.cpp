// Checking, identifying, reading and writing the receiver through COM: plug-in and simulated receiver together.

#include <initguid.h>

#include <random>

#include "Client.h"

namespace tvn2x::client {
namespace {

constexpr short status = 13, rfLevel = 15, ber = 16, reference = 18, carrier = 19, frame = 20;
constexpr const wchar_t* levelUnits[] = {L"dBmV", L"dBpW", L"dB\u00B5W", L"dBm", L"dB\u00B5V", L"mV"};

/// The fields that both directions carry.
struct Settings
{
    long route = 0;
    std::wstring levelUnit;
    long filter = 0;
    long order = 0;
    long rollOff = 0;
    long berSamples = 0;
    long referenceSource = 0;

    bool operator==(const Settings&) const = default;
};

void PrintTo(const Settings& s, std::ostream* out)
{
    *out << "route " << s.route << ", unit " << testing::PrintToString(s.levelUnit) << ", filter " << s.filter
         << ", order " << s.order << ", roll-off " << s.rollOff << ", BER " << s.berSamples << ", reference "
         << s.referenceSource;
}

class Configure : public Apartment
{
protected:
    Configure()
    {
        setup = Create<_clsSetup>(L"TVN2x.clsSetup");
        measure = setup.As<IMeasure>();
        check = setup.As<ICheckHardware>();
        driver = setup.As<IDriver>();
        ComPtr<IDispatch> object;
        EXPECT_EQ(driver->get_Settings(object.Put()), S_OK);
        simulator = object.As<ISimulatorSettings>();
        EXPECT_TRUE(simulator);
        EXPECT_EQ(simulator->put_TimeScale(0.01), S_OK);
        setup->put_MaxSettlingTime(1);
        setup->put_Parameter(0, ber, VARIANT_FALSE);
        run = Create<IRunControl>(L"XKTR2x.clsRunControl");
        run->put_StopFlag(VARIANT_FALSE);
        errors = Create<IErrorReport>(L"XKTR2x.clsErrorReport");
        errors->Clear();
        Receiver(L"full.ini");
    }

    void Receiver(const wchar_t* name)
    {
        const std::wstring path = std::wstring(TVN_RECEIVERS L"\\") + name;
        EXPECT_EQ(simulator->put_NetworkModel(Bstr(path).Get()), S_OK) << LastErrorText();
    }

    void Set(const wchar_t* key, const wchar_t* value)
    {
        EXPECT_EQ(simulator->put_Value(Bstr(L"Network").Get(), Bstr(key).Get(), Bstr(value).Get()), S_OK);
    }

    static std::string LastErrorText()
    {
        const std::wstring text = LastError().description;
        return {text.begin(), text.end()};
    }

    void Put(const Settings& s)
    {
        setup->put_Zin(s.route);
        setup->put_LevelUnit(Bstr(s.levelUnit).Get());
        setup->put_SawBw(s.filter);
        setup->put_OrderOfQam(s.order);
        setup->put_RollOffFactor(s.rollOff);
        setup->put_BerSamples(s.berSamples);
        setup->put_ReferenceSource(s.referenceSource);
    }

    Settings Present() const
    {
        Settings s;
        Bstr unit;
        setup->get_Zin(&s.route);
        setup->get_LevelUnit(unit.Put());
        setup->get_SawBw(&s.filter);
        setup->get_OrderOfQam(&s.order);
        setup->get_RollOffFactor(&s.rollOff);
        setup->get_BerSamples(&s.berSamples);
        setup->get_ReferenceSource(&s.referenceSource);
        s.levelUnit = unit.View();
        return s;
    }

    /// The settings that the receiver reports, read into the document, which has forgotten its own.
    Settings OfReceiver()
    {
        Put({1, L"?", 99, 99, 99, 99, 99});
        EXPECT_EQ(measure->GetConfiguration(), S_OK) << LastErrorText();
        return Present();
    }

    HRESULT Write() { return measure->SetConfiguration(); }

    bool Answer(HRESULT (STDMETHODCALLTYPE ICheckHardware::*question)(VARIANT_BOOL*)) const
    {
        VARIANT_BOOL answer = VARIANT_FALSE;
        EXPECT_EQ((check.Get()->*question)(&answer), S_OK);
        return answer != VARIANT_FALSE;
    }

    /// The cell of a parameter after a scan of one channel.
    std::wstring Scan(double frequency, double symbolRate, short parameter)
    {
        setup->put_ListSize(1);
        setup->put_Frequency(1, frequency);
        setup->put_SymbolRate(1, symbolRate);
        EXPECT_EQ(measure->ResetMeasurement(0), S_OK);
        VARIANT_BOOL result = VARIANT_FALSE;
        EXPECT_EQ(measure->Measure(1, VARIANT{}, &result), S_OK);
        EXPECT_EQ(Cell(measure.Get(), 1, status, 1), L"Done");
        return Cell(measure.Get(), 0, parameter, 1);
    }

    ComPtr<_clsSetup> setup;
    ComPtr<IMeasure> measure;
    ComPtr<ICheckHardware> check;
    ComPtr<IDriver> driver;
    ComPtr<ISimulatorSettings> simulator;
    ComPtr<IRunControl> run;
    ComPtr<IErrorReport> errors;
    Parent parent;  // outlives the plug-in's reference, which the body of a test gives up
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
        Put(settings);
        ASSERT_EQ(Write(), S_OK) << LastErrorText();
        ASSERT_EQ(OfReceiver(), settings) << "round " << round;
    }
    long size = 0;
    double frequency = 0, symbolRate = 0, defaultRate = 0;
    setup->get_ListSize(&size);
    setup->get_Frequency(1, &frequency);
    setup->get_SymbolRate(1, &symbolRate);
    setup->get_DefaultSymbolRate(&defaultRate);
    EXPECT_EQ(size, 1);
    EXPECT_EQ(frequency, 474) << "the basic state's";
    EXPECT_EQ(symbolRate, 6.9);
    EXPECT_EQ(defaultRate, 6.9);
}

TEST_F(Configure, OrderOfQamSymbolRateAndRouteThatWereWrittenDecideWhatIsMeasured)
{
    Settings settings{75, L"dB\u00B5V", 8, 64, 15, 1, 0};
    Put(settings);
    ASSERT_EQ(Write(), S_OK);
    EXPECT_EQ(Scan(466, 6.9, frame), L"OK");
    EXPECT_EQ(Scan(474, 6.9, frame), L"UNSYNC") << "a channel of 256 QAM";
    EXPECT_EQ(Scan(482, 6.9, carrier), L"UNSYNC") << "a channel of another symbol rate";
    EXPECT_EQ(Scan(482, 5, frame), L"OK");
    settings.order = 256;
    Put(settings);
    ASSERT_EQ(Write(), S_OK);
    EXPECT_EQ(Scan(474, 6.9, frame), L"OK");
    EXPECT_NEAR(_wtof(Scan(474, 6.9, rfLevel).c_str()), 66, 1);
    settings.levelUnit = L"dBmV";
    Put(settings);
    ASSERT_EQ(Write(), S_OK);
    EXPECT_NEAR(_wtof(Scan(474, 6.9, rfLevel).c_str()), 6, 1);
    settings.route = 128;
    Put(settings);
    ASSERT_EQ(Write(), S_OK);
    EXPECT_EQ(Scan(474, 6.9, rfLevel), L"---") << "no network on the IF input";
    EXPECT_EQ(Scan(474, 6.9, carrier), L"UNSYNC");
}

/// The receiver is back in its basic state, at another frequency than the one that was measured last.
TEST_F(Configure, ChannelIsTunedAnewAfterTheReceiverWasConfigured)
{
    Put({75, L"dBmV", 8, 64, 15, 1, 0});
    ASSERT_EQ(Write(), S_OK);
    EXPECT_EQ(Scan(466, 6.9, frame), L"OK");
    ASSERT_EQ(Write(), S_OK);
    EXPECT_EQ(Scan(466, 6.9, frame), L"OK");
}

TEST_F(Configure, FittedReceiverPassesEveryCheckAndABareOneFails)
{
    for (const wchar_t* name : {L"full.ini", L"bare.ini"}) {
        const bool full = name[0] == L'f';
        Receiver(name);
        for (const long route : {2, 4, 50, 75, 128, 1}) {
            setup->put_Zin(route);
            EXPECT_EQ(Answer(&ICheckHardware::InputPort), route != 1 && (full || route >= 50)) << route;
        }
        for (const long filter : {0, 2, 6, 7, 8, 5}) {
            setup->put_SawBw(filter);
            EXPECT_EQ(Answer(&ICheckHardware::SawFilterBw), full || filter == 0 || filter == 5) << filter;
        }
        for (const long source : {0, 1}) {
            setup->put_ReferenceSource(source);
            EXPECT_EQ(Answer(&ICheckHardware::ExtRef), full || source == 0) << source;
        }
        for (const long mode : {4, 6, 7, 8, 13, 14, 1}) {
            setup.As<ISetup>()->put_Mode(mode);
            const bool available = full || mode == 4 || mode == 1;
            EXPECT_EQ(Answer(&ICheckHardware::ActivateMode), available) << mode;
            long state = -1;
            EXPECT_EQ(check->Mode(&state), S_OK);
            EXPECT_EQ(state, available ? 2 : 0) << mode;
        }
    }
    setup.As<ISetup>()->put_Mode(4);
    long state = -1;
    check->Mode(&state);
    EXPECT_EQ(state, 1) << "the receiver is still in mode 1";
    Set(L"Installed Options", L"KTR-H8,KTR-H9");
    for (const long filter : {6, 7}) {
        setup->put_SawBw(filter);
        EXPECT_FALSE(Answer(&ICheckHardware::SawFilterBw)) << "not listed as one entry";
    }
}

TEST_F(Configure, MissingFilterIsRefusedSwappedOrSwitchedOff)
{
    Settings settings{75, L"dBmV", 8, 64, 15, 10, 0};
    Set(L"Installed Options", L"KTR-H2,KTR-H5,KTR-H8");
    Put(settings);
    EXPECT_LT(Write(), 0);
    ErrorText error = LastError();
    EXPECT_EQ(error.description, L"Selected SAW filter is not available, filter will be turned off");
    EXPECT_EQ(error.source, L"clsReceiver.SawBandwidth");
    settings.filter = 7;
    Put(settings);
    ASSERT_EQ(Write(), S_OK);
    EXPECT_EQ(OfReceiver().filter, 6) << "its neighbour";
    Set(L"Swaps SAW Filters", L"Yes");
    for (const auto& [wanted, taken] : {std::pair{8L, 0L}, {2L, 0L}, {6L, 6L}, {7L, 6L}, {0L, 0L}}) {
        settings.filter = wanted;
        Put(settings);
        ASSERT_EQ(Write(), S_OK);
        EXPECT_EQ(OfReceiver().filter, taken) << wanted;
    }
}

TEST_F(Configure, ExternalReferenceAbsentOrUnlocked)
{
    const Settings settings{75, L"dBmV", 8, 64, 15, 10, 1};
    Put(settings);
    ASSERT_EQ(Write(), S_OK);
    EXPECT_EQ(Scan(466, 6.9, reference), L"OK");
    Set(L"External Reference", L"No");
    EXPECT_EQ(Scan(466, 6.9, reference), L"UNSYNC") << "fitted, but nothing is on it";

    Set(L"Installed Options", L"KTR-H2,KTR-H4,KTR-H5");
    EXPECT_EQ(static_cast<uint32_t>(Write()), 0x800407D5u);
    const ErrorText error = LastError();
    EXPECT_EQ(error.source, L"clsSetup.SetConfiguration");
    EXPECT_EQ(error.description, L"External 10MHz reference input is not fitted, internal reference will be used");
    Bstr reported;
    errors->get_Description(reported.Put());
    EXPECT_EQ(reported.View(), L"Let Setup10MhzRef not available");
    Settings internal = settings;
    internal.referenceSource = 0;
    EXPECT_EQ(OfReceiver(), internal) << "all the rest has been written";
}

TEST_F(Configure, RefusedModeEndsTheWriting)
{
    Put({75, L"dBm", 0, 16, 15, 10, 0});
    Set(L"Installed Options", L"KTR-H5");
    EXPECT_LT(Write(), 0);
    EXPECT_THAT(LastError().description, testing::HasSubstr(L"Let Mode failed"));
    Set(L"Ignores Missing Modes", L"Yes");
    EXPECT_EQ(Write(), RuntimeError(1002));
    const ErrorText error = LastError();
    EXPECT_EQ(error.source, L"clsSetup.SetConfiguration");
    EXPECT_THAT(error.description, testing::HasSubstr(L"KTR-H2"));

    long reports = 0, number = 0;
    EXPECT_EQ(OfReceiver().order, 64) << "read in the wrong mode too, and never written";
    errors->get_Count(&reports);
    errors->get_Number(&number);
    EXPECT_EQ(reports, 1);
    EXPECT_EQ(number, 1002);
    Bstr source, description;
    errors->get_Source(source.Put());
    errors->get_Description(description.Put());
    EXPECT_EQ(source.View(), L"frmMain.IMeasure_GetConfiguration");
    EXPECT_EQ(description.View(), L"KTR must be in DVB-C Demod. mode");
}

TEST_F(Configure, IdentityInAnyLetterCaseAndOffLine)
{
    Bstr identity(L"old"), hardware(L"old");
    long mode = 0;
    VARIANT_BOOL result = VARIANT_FALSE;
    const auto test = [&] {
        BSTR texts[] = {identity.Detach(), hardware.Detach()};
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
    VARIANT_BOOL online = VARIANT_TRUE;
    driver->get_Online(&online);
    EXPECT_EQ(online, VARIANT_FALSE) << "off line again";

    simulator->FailAt(Bstr(L"Hardware").Get(), 1, 77, Bstr(L"x").Get(), Bstr(L"y").Get());
    EXPECT_FALSE(test());
    EXPECT_EQ(identity.View(), L"");
    Set(L"Model", L"other");
    EXPECT_FALSE(test());
    Set(L"Model", L"KTR");
    Set(L"Receiver Connected", L"No");
    EXPECT_FALSE(test());
    EXPECT_FALSE(Answer(&ICheckHardware::ActivateMode));
    long state = 0;
    EXPECT_LT(check->Mode(&state), 0);
    EXPECT_THAT(LastError().description, testing::HasSubstr(L"does not answer"));
    EXPECT_LT(measure->GetConfiguration(), 0);
    EXPECT_THAT(LastError().description, testing::HasSubstr(L"does not answer"));
    EXPECT_LT(Write(), 0);
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

TEST_F(Configure, ParentIsToldAndMayCallBackOrReleaseThePlugIn)
{
    measure->putref_Parent(&parent);
    EXPECT_EQ(Write(), S_OK);
    EXPECT_EQ(measure->GetConfiguration(), S_OK);
    EXPECT_THAT(parent.statuses, testing::ElementsAre(L"Configuring KTR", L"Reading KTR Configuration"));
    measure->ResetMeasurement(0);

    int refused = 0, notices = 0;
    parent.onNotice = [&](const std::wstring&) {
        ++notices;
        VARIANT_BOOL result;
        for (const HRESULT call :
             {measure->Measure(1, VARIANT{}, &result), measure->GetConfiguration(), measure->SetConfiguration()})
            refused += call == RuntimeError(5) ? 1 : 0;
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

    parent.onNotice = [&](const std::wstring& notice) {
        return notice == L"status" ? run->put_StopFlag(VARIANT_TRUE) : S_OK;
    };
    setup->put_OrderOfQam(16);
    EXPECT_EQ(Write(), S_OK) << "a stop is no error";
    run->put_StopFlag(VARIANT_FALSE);
    parent.onNotice = [](const std::wstring&) { return S_OK; };
    EXPECT_EQ(OfReceiver().order, 64) << "initialised and no more";

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
