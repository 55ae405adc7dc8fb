// The plug-in's border: a driver library that answers wrongly, a host that computes in another floating-point state,
// and a script's parent that fails in odd ways.

#include <initguid.h>
#include <windows.h>

#include <dispex.h>

#include "Client.h"
#include "WrongDriver.h"

namespace tvn2x::client {
namespace {

using wrong::Answer;
using wrong::Misbehave;

constexpr short status = 13;

/// The wrong driver library in the place of the registered one, for this process and this apartment only.
class WrongDriver : public Apartment
{
protected:
    WrongDriver()
    {
        for (const auto& [id, factory] : wrong::factories) {
            EXPECT_EQ(
                CoRegisterClassObject(id, factory, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookies.emplace_back()),
                S_OK);
        }
    }
    ~WrongDriver() override
    {
        Misbehave("", Answer::rightly);
        for (const DWORD cookie : cookies) {
            CoRevokeClassObject(cookie);
        }
    }

    std::vector<DWORD> cookies;
};

/// The plug-in and every member of it that needs the driver.
struct Driven
{
    struct Member
    {
        const char* name;
        std::function<HRESULT()> call;
        bool answersFalse = false;  ///< it tells of a failure by its result alone
    };

    Driven()
    {
        parent.onNotice = [&](const std::wstring&) {
            // Called out of an unmasked host in every test that counts them.
            noticesInHostsState += FloatingPointWords::Now().ComputesLike(unmasked);
            ++notices;
            return S_OK;
        };
        setup->put_MaxSettlingTime(1);  // 0 may be over before the first poll
        setup.As<ISetup>()->put_Mode(1);
        measure->putref_Parent(&parent);
    }

    HRESULT Measure()
    {
        setup->put_ListSize(1);
        setup->put_Frequency(1, 474);
        setup->put_SymbolRate(1, 6900);  // for a short BER count
        setup->put_OrderOfQam(64);
        setup->put_BerSamples(1);
        setup->put_ReferenceSource(1);
        measure->ResetMeasurement(0);
        return measure->Measure(1, VARIANT{}, &flag);
    }

    HRESULT Test() { return driver->Test(identity.Put(), hardware.Put(), &mode, &flag); }

    Parent parent;
    int notices = 0;
    int noticesInHostsState = 0;
    ComPtr<_clsSetup> setup = Create<_clsSetup>(L"TVN2x.clsSetup");
    ComPtr<IMeasure> measure = setup.As<IMeasure>();
    ComPtr<IDriver> driver = setup.As<IDriver>();
    ComPtr<ICheckHardware> check = setup.As<ICheckHardware>();
    Bstr text, identity, hardware;
    ComPtr<IDispatch> settings;
    LONG mode = 0;
    VARIANT_BOOL flag = VARIANT_FALSE;

    const std::vector<Member> members = {
        {"Test", [&] { return Test(); }, true},
        {"ActivateMode", [&] { return check->ActivateMode(&flag); }, true},
        {"GetConfiguration of another mode", [&] { return measure->GetConfiguration(); }},
        {"SetConfiguration", [&] { return measure->SetConfiguration(); }},
        {"SetConfiguration of the demodulator",
         [&] {
             setup->put_Zin(4);
             return measure->SetConfiguration();
         }},
        {"GetConfiguration", [&] { return measure->GetConfiguration(); }},
        {"Mode", [&] { return check->Mode(&mode); }},
        {"ExtRef", [&] { return check->ExtRef(&flag); }},
        {"InputPort", [&] { return check->InputPort(&flag); }},
        {"SawFilterBw", [&] { return check->SawFilterBw(&flag); }},
        {"FirmwareVersion", [&] { return driver->get_FirmwareVersion(text.Put()); }},
        {"SerialNumber", [&] { return driver->get_SerialNumber(text.Put()); }},
        {"InstalledHardware", [&] { return driver->get_InstalledHardware(text.Put()); }},
        {"Online let", [&] { return driver->put_Online(VARIANT_TRUE); }},
        {"Online get", [&] { return driver->get_Online(&flag); }},
        {"Settings", [&] { return driver->get_Settings(settings.Put()); }},
        {"Measure", [&] { return Measure(); }, true},
    };
};

class EveryOperation : public WrongDriver
{
protected:
    /// What a member has answered where the operation failed under it.
    void ExpectFailure(const Driven& driven, const Driven::Member& member, const std::string& name, Answer answer,
                       HRESULT result) const
    {
        const bool isCreation = name.starts_with("CreateInstance");
        if (member.answersFalse &&
            !(isCreation && name != "CreateInstance clsErrorReport" && std::string(member.name) == "Measure")) {
            // A failed way to the instrument's other side and back is no failed identification.
            const bool harmless = name == "put_Online" && std::string(member.name) == "Test";
            EXPECT_EQ(result, S_OK);
            EXPECT_TRUE(driven.flag == VARIANT_FALSE || harmless);
            return;
        }
        const RaisedError told = LastError();
        const bool hasWords = answer == Answer::failsWithWords;
        EXPECT_THAT(told.description, testing::Not(testing::HasSubstr(wrong::leftOver)));
        if (isCreation) {
            EXPECT_EQ(result, RuntimeError(429));
            EXPECT_THAT(told.description, testing::HasSubstr(hasWords ? wrong::words[1] : L"XKTR2x.cls"));
            return;
        }
        const HRESULT expected[] = {E_FAIL, wrong::failureWithWords, wrong::unknownFailure, wrong::failureWithoutCode};
        EXPECT_EQ(result, expected[static_cast<int>(answer) - static_cast<int>(Answer::failsBare)]);
        EXPECT_EQ(told.source, hasWords ? wrong::words[0] : L"");
        EXPECT_EQ(told.helpFile, hasWords ? wrong::words[2] : L"");
        EXPECT_EQ(told.helpContext, hasWords ? wrong::topic : 0);
        EXPECT_FALSE(told.description.empty());
        EXPECT_EQ(told.description == wrong::words[1], hasWords);
    }
};

TEST_F(EveryOperation, AnsweredInEveryWrongWayHarmsNothing)
{
    for (Driven driven; const auto& member : driven.members) {
        EXPECT_EQ(FromUnmaskedHost(member.call), S_OK) << member.name;
    }
    const std::set<std::string> names = wrong::Operations();
    EXPECT_GT(names.size(), 50u);
    for (const std::string& name : names) {
        for (int i = 1; i <= static_cast<int>(wrong::lastAnswer); ++i) {
            const auto answer = static_cast<Answer>(i);
            SCOPED_TRACE(name + ", answer " + std::to_string(i));
            Misbehave(name, answer);
            const int before = wrong::Misdeeds();
            Driven driven;
            for (const auto& member : driven.members) {
                SCOPED_TRACE(member.name);
                const int earlier = wrong::Misdeeds();
                const HRESULT result = FromUnmaskedHost(member.call);
                const bool wronged = wrong::Misdeeds() > earlier;
                if (wronged && wrong::Fails(answer)) {
                    ExpectFailure(driven, member, name, answer, result);
                } else if (FAILED(result)) {
                    EXPECT_NE(answer, Answer::succeedsOddly);
                    EXPECT_NE(answer, Answer::unmasks);
                    EXPECT_THAT(LastError().description, testing::Not(testing::AnyOf(L"", wrong::leftOver)));
                }
            }
            EXPECT_GT(wrong::Misdeeds(), before);
            EXPECT_EQ(driven.noticesInHostsState, driven.notices);

            Misbehave("", Answer::rightly);
            EXPECT_EQ(FromUnmaskedHost([&] { return driven.Measure(); }), S_OK);
            EXPECT_EQ(driven.flag, VARIANT_TRUE);
            EXPECT_EQ(Cell(driven.measure.Get(), 1, status, 1), L"Done");
            EXPECT_EQ(driven.measure->GetConfiguration(), S_OK);
            EXPECT_EQ(driven.measure->SetConfiguration(), S_OK);
        }
    }
}

/// What a parent fails with, and what becomes of it.
struct LateFailure
{
    HRESULT result;
    WORD code;
    SCODE scode;
    const wchar_t* description;  ///< null: nothing is said, of the source and the help neither
    HRESULT(STDAPICALLTYPE* fillIn)(EXCEPINFO*);
    HRESULT expected;
    const wchar_t* told;  ///< null: the system's words
};

/// A script's parent, late bound by name, that fails as it is told.
class LateParent final : public Lasting<IDispatch, EarlyBound<IDispatch>>
{
public:
    explicit LateParent(const LateFailure& failure) : failure_(failure) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** out) noexcept override
    {
        // A success with nothing behind it, and a failure with something in front of it.
        const HRESULT known = Lasting::QueryInterface(id, out);
        *out = SUCCEEDED(known) || id == IID_IDispatchEx ? *out : reinterpret_cast<void*>(0x51);
        return id == IID_IDispatchEx ? S_OK : known;
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID* id) noexcept override
    {
        *id = 1;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO* exception,
                                     UINT*) noexcept override
    {
        exception->wCode = failure_.code;
        exception->scode = failure_.scode;
        exception->pfnDeferredFillIn = failure_.fillIn;
        if (failure_.description) {
            exception->bstrSource = SysAllocString(L"script");
            exception->bstrDescription = SysAllocString(failure_.description);
            exception->bstrHelpFile = SysAllocString(L"script.hlp");
            exception->dwHelpContext = 12;
        }
        return failure_.result;
    }

private:
    const LateFailure& failure_;
};

HRESULT STDAPICALLTYPE FillIn(EXCEPINFO* info)
{
    info->wCode = 1005;
    info->bstrDescription = SysAllocString(L"put off");
    return S_OK;
}

HRESULT STDAPICALLTYPE FillInAndFail(EXCEPINFO* info)
{
    info->wCode = 1005;
    info->bstrDescription = reinterpret_cast<BSTR>(0x51);
    return E_FAIL;
}

TEST_F(WrongDriver, LateBoundParentMayFailInOddWays)
{
    const HRESULT negative = static_cast<HRESULT>(0x800407D5);
    const LateFailure cases[] = {
        {DISP_E_EXCEPTION, 1004, 0, L"words", nullptr, RuntimeError(1004), L"words"},
        {DISP_E_EXCEPTION, 0, RuntimeError(1004), L"words", nullptr, RuntimeError(1004), L"words"},
        {DISP_E_EXCEPTION, 0, negative, L"words", nullptr, negative, L"words"},
        {DISP_E_EXCEPTION, 0, S_OK, L"words", nullptr, E_FAIL, L"words"},
        {DISP_E_EXCEPTION, 0, 1004, L"words", nullptr, RuntimeError(1004), L"words"},
        {DISP_E_EXCEPTION, 0, 70000, L"words", nullptr, E_FAIL, L"70000: words"},
        {DISP_E_EXCEPTION, 65535, S_FALSE, nullptr, nullptr, RuntimeError(65535), nullptr},
        {DISP_E_EXCEPTION, 0, 0, nullptr, FillIn, RuntimeError(1005), L"put off"},
        {DISP_E_EXCEPTION, 0, 0, nullptr, FillInAndFail, E_FAIL, nullptr},
        {wrong::unknownFailure, 1004, 0, nullptr, nullptr, wrong::unknownFailure, nullptr},
        {S_FALSE, 1004, 0, nullptr, nullptr, S_OK, nullptr},
    };
    for (const LateFailure& row : cases) {
        SCOPED_TRACE(&row - cases);
        Driven driven;
        LateParent parent(row);
        ASSERT_EQ(driven.measure->putref_Parent(&parent), S_OK);
        EXPECT_EQ(FromUnmaskedHost([&] { return driven.measure->SetConfiguration(); }), row.expected);
        const RaisedError told = LastError();
        if (row.told) {
            EXPECT_EQ(told.description, row.told);
        } else if (FAILED(row.expected)) {
            EXPECT_THAT(told.description, testing::Not(testing::AnyOf(L"", wrong::leftOver)));
        }
        EXPECT_EQ(std::tuple(told.source, told.helpFile, told.helpContext),
                  row.description ? std::tuple(L"script", L"script.hlp", 12u) : std::tuple(L"", L"", 0u));
        driven.measure->putref_Parent(nullptr);
    }
}

TEST_F(PlugIn, LeavesAnUnmaskedHostItsControlWords)
{
    const auto expect = [](HRESULT expected, const std::function<HRESULT()>& call) {
        EXPECT_EQ(FromUnmaskedHost(call), expected) << testing::PrintToString(LastError().description);
    };
    setup->put_MaxSettlingTime(0);
    VARIANT_BOOL result = VARIANT_FALSE;
    for (const double odd : {5e-324, 1e300, 0.0}) {
        expect(S_OK, [&] { return setup->put_Frequency(1, odd); });
        expect(S_OK, [&] { return setup->put_SymbolRate(1, odd); });
        expect(S_OK, [&] { return measure->ResetMeasurement(0); });
        expect(S_OK, [&] { return measure->Measure(1, VARIANT{}, &result); });
    }
    // What the argument has to be converted to decides whether it can be.
    const auto put = [&](const wchar_t* name, double value) {
        return Call(setup.As<IDispatch>(), name, DISPATCH_PROPERTYPUT, {Variant(VT_R8, &VARIANT::dblVal, value)});
    };
    expect(S_OK, [&] { return put(L"DefaultSymbolRate", 5e-324); });
    expect(S_OK, [&] { return put(L"MaxSettlingTime", 2.5); });
    EXPECT_LT(FromUnmaskedHost([&] { return put(L"MaxSettlingTime", 1e300); }), 0);
    expect(S_OK, [] { return Create<_clsTimeout>(L"TVN2x.clsTimeout")->Start(1e-40F); });
    expect(S_OK, [] { return Create<IUnknown>(L"XKTR2x.clsReceiver") ? S_OK : E_FAIL; });
    for (const wchar_t* library : {L"TVN2x.dll", L"XKTR2x.dll"}) {
        const auto registration = Export<HRESULT(STDMETHODCALLTYPE*)()>(library, "DllRegisterServer");
        ASSERT_TRUE(registration);
        expect(S_OK, registration);
    }
}

}  // namespace
}  // namespace tvn2x::client
