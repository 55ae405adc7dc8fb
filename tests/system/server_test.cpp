// The component server as a client sees it: classes, interfaces, identity, counts, errors, unloading; the plug-in as a
// late-bound client does, with everything that languages do differently from one another; and a parent that calls back.

#include <initguid.h>

#include <ocidl.h>

#include <algorithm>
#include <filesystem>
#include <thread>

#include "Client.h"

namespace tvn2x::client {
namespace {

using Server = Apartment;

/// By class: the interfaces that it answers beside the four that all answer, and some that it has not.
const std::tuple<const wchar_t*, std::vector<IID>, std::vector<IID>> answeredInterfaces[] = {
    {L"TVN2x.clsSetup",
     {IID__clsSetup, IID_ISetup, IID_IMeasure, IID_IDriver, IID_ICheckHardware, IID_IResults},
     {IID_ISupport, IID__clsTimeout, IID_IMeasureParent, IID_IReceiver, IID_IPersist, IID_IMarshal}},
    {L"TVN2x.clsSupport", {IID_ISupport}, {IID_ISetup, IID__clsSetup, IID_IMeasure}},
    {L"TVN2x.clsTimeout", {IID__clsTimeout}, {IID_ISetup, IID__clsSetup, IID_ISupport}},
    {L"XKTR2x.clsReceiver",
     {IID_IReceiver, IID_IDriver, IID_IIdentification},
     {IID_ISetup, IID_IRunControl, IID_IErrorReport}},
    {L"XKTR2x.clsRunControl", {IID_IRunControl, IID_IMarshal}, {IID_IReceiver, IID_IErrorReport}},
    {L"XKTR2x.clsErrorReport", {IID_IErrorReport}, {IID_IReceiver, IID_IRunControl, IID_IMarshal}},
};

TEST_F(Server, AnswersItsInterfacesAndRefusesOthersUnderOneIdentity)
{
    for (auto [progId, answered, refused] : answeredInterfaces) {
        answered.insert(answered.end(), {IID_IUnknown, IID_IDispatch, IID_ISupportErrorInfo, IID_IProvideClassInfo});
        SCOPED_TRACE(testing::PrintToString(std::wstring(progId)));
        const auto object = Create<IUnknown>(progId);
        ASSERT_TRUE(object);
        ExpectOneIdentity(object.Get(), answered);
        for (const IID& id : refused) {
            void* other = this;
            EXPECT_EQ(object->QueryInterface(id, &other), E_NOINTERFACE);
            EXPECT_EQ(other, nullptr);
        }
        EXPECT_EQ(object->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
        const auto errors = object.As<ISupportErrorInfo>();
        EXPECT_EQ(errors->InterfaceSupportsErrorInfo(answered.front()), S_OK);
        EXPECT_EQ(errors->InterfaceSupportsErrorInfo(refused.front()), S_FALSE);

        ComPtr<ITypeInfo> info;
        Bstr name;
        ASSERT_EQ(object.As<IProvideClassInfo>()->GetClassInfo(info.Put()), S_OK);
        EXPECT_EQ(info->GetDocumentation(MEMBERID_NIL, name.Put(), nullptr, nullptr, nullptr), S_OK);
        EXPECT_EQ(name.View(), wcschr(progId, L'.') + 1);
    }
}

TEST_F(Server, CountsReferencesOfAllInterfacesTogetherAndUnloadsOnlyWhenNothingIsHeld)
{
    auto object = Create<IUnknown>(L"TVN2x.clsSetup");
    auto setup = object.As<ISetup>();
    auto measure = object.As<IMeasure>();
    EXPECT_EQ(measure->AddRef(), 4u);
    EXPECT_EQ(setup->Release(), 3u);
    setup.Reset();
    measure.Reset();
    EXPECT_EQ(object.Detach()->Release(), 0u);

    object = Create<IUnknown>(L"TVN2x.clsTimeout");
    ASSERT_TRUE(GetModuleHandleW(L"TVN2x.dll"));
    CoFreeUnusedLibrariesEx(0, 0);
    EXPECT_TRUE(GetModuleHandleW(L"TVN2x.dll")) << "an object lives";
    object.Reset();

    ComPtr<IClassFactory> factory;
    ASSERT_EQ(CoGetClassObject(CLSID_clsTimeout, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory,
                               reinterpret_cast<void**>(factory.Put())),
              S_OK);
    EXPECT_EQ(factory->LockServer(TRUE), S_OK);
    CoFreeUnusedLibrariesEx(0, 0);
    EXPECT_TRUE(GetModuleHandleW(L"TVN2x.dll")) << "the server is locked";
    EXPECT_EQ(factory->LockServer(FALSE), S_OK);
    factory.Reset();

    CoFreeUnusedLibrariesEx(0, 0);
    CoFreeUnusedLibrariesEx(0, 0);
    EXPECT_FALSE(GetModuleHandleW(L"TVN2x.dll"));
}

/// A stop comes while the measuring thread is busy and handles no messages: a call that waited for it would hang here.
TEST_F(Server, RunControlIsOneObjectOfItsThreadAndEveryThreadMayCallIt)
{
    auto run = Create<IRunControl>(L"XKTR2x.clsRunControl");
    EXPECT_EQ(Create<IRunControl>(L"XKTR2x.clsRunControl").Get(), run.Get());
    EXPECT_EQ(run->put_StopFlag(VARIANT_FALSE), S_OK);
    ComPtr<IStream> stream;
    ASSERT_EQ(CoMarshalInterThreadInterfaceInStream(__uuidof(IRunControl), run.Get(), stream.Put()), S_OK);
    VARIANT_BOOL ofOtherThread = VARIANT_TRUE;
    std::thread([&] {
        CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        ComPtr<IRunControl> other;
        EXPECT_EQ(CoGetInterfaceAndReleaseStream(stream.Detach(), __uuidof(IRunControl),
                                                 reinterpret_cast<void**>(other.Put())),
                  S_OK);
        EXPECT_EQ(other.Get(), run.Get()) << "no proxy";
        EXPECT_EQ(other->put_StopFlag(VARIANT_TRUE), S_OK);
        EXPECT_EQ(Create<IRunControl>(L"XKTR2x.clsRunControl")->get_StopFlag(&ofOtherThread), S_OK);
        run.Reset();  // the last reference but this thread's
        other.Reset();
        CoUninitialize();
    }).join();
    EXPECT_EQ(ofOtherThread, VARIANT_FALSE) << "another thread, another flag";
    VARIANT_BOOL stop = VARIANT_FALSE;
    run = Create<IRunControl>(L"XKTR2x.clsRunControl");
    EXPECT_EQ(run->get_StopFlag(&stop), S_OK);
    EXPECT_EQ(stop, VARIANT_TRUE) << "what the thread knows outlives the object";
    run->put_StopFlag(VARIANT_FALSE);
}

TEST_F(Server, ClassFactoryRefusesAggregationAndUnknownClasses)
{
    ComPtr<IClassFactory> factory;
    ASSERT_EQ(CoGetClassObject(CLSID_clsSetup, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory,
                               reinterpret_cast<void**>(factory.Put())),
              S_OK);
    const auto outer = Create<IUnknown>(L"TVN2x.clsSupport");
    void* out = this;
    EXPECT_EQ(factory->CreateInstance(outer.Get(), IID_IUnknown, &out), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_ISupport, &out), E_NOINTERFACE);

    using GetClassObject = HRESULT(STDMETHODCALLTYPE*)(REFCLSID, REFIID, void**);
    const auto get = Export<GetClassObject>(L"TVN2x.dll", "DllGetClassObject");
    ASSERT_TRUE(get);
    EXPECT_EQ(get(IID_ISetup, IID_IClassFactory, &out), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(out, nullptr);
}

TEST_F(Server, RefusalBeforeTheMemberTellsNothingOfAnotherCall)
{
    const auto setup = Create<_clsSetup>(L"TVN2x.clsSetup");
    const auto receiver = Create<IReceiver>(L"XKTR2x.clsReceiver");
    const auto document = setup.As<ISetup>();
    VARIANT_BOOL result;
    auto name = const_cast<LPOLESTR>(L"Notes");
    DISPID id = 0;
    DISPPARAMS none{};
    const auto get = [&](DISPID member, REFIID reserved) {
        return document->Invoke(member, reserved, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, nullptr, nullptr,
                                nullptr);
    };
    const std::pair<HRESULT, std::function<HRESULT()>> calls[] = {
        {E_POINTER, [&] { return setup->get_Notes(nullptr); }},
        {E_POINTER, [&] { return document->Edit(nullptr); }},
        {E_POINTER, [&] { return document->Load(nullptr, nullptr, nullptr, nullptr, &result); }},
        {E_POINTER, [&] { return receiver->get_ErrorCounters(nullptr); }},
        {E_POINTER, [&] { return setup->GetTypeInfoCount(nullptr); }},
        {E_POINTER, [&] { return setup->GetTypeInfo(0, LOCALE_USER_DEFAULT, nullptr); }},
        {E_POINTER, [&] { return setup->GetIDsOfNames(IID_NULL, nullptr, 1, LOCALE_USER_DEFAULT, nullptr); }},
        {DISP_E_UNKNOWNINTERFACE, [&] { return setup->GetIDsOfNames(IID_ISetup, &name, 1, LOCALE_USER_DEFAULT, &id); }},
        {DISP_E_UNKNOWNINTERFACE, [&] { return get(1, IID_ISetup); }},
        {DISP_E_MEMBERNOTFOUND, [&] { return get(9999, IID_NULL); }},
    };
    for (const auto& row : calls) {
        SCOPED_TRACE(&row - calls);
        double frequency = 1;
        ASSERT_EQ(setup->get_Frequency(2, &frequency), RuntimeError(9));
        EXPECT_EQ(frequency, 0);
        EXPECT_EQ(row.second(), row.first);
        EXPECT_EQ(LastError().description, L"");
    }
}

/// A client of a multithreaded apartment reaches the objects, which live in another one, through proxies: the system
/// makes them of what is registered for each interface. Nobody but the plug-in need have registered anything.
TEST(MultithreadedClient, ReachesEveryInterfaceOfThePlugIn)
{
    ASSERT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
    {
        const auto setup = Create<_clsSetup>(L"TVN2x.clsSetup");
        ASSERT_TRUE(setup);
        const auto document = setup.As<ISetup>();
        ASSERT_TRUE(document);
        EXPECT_TRUE(setup.As<IMeasure>() && setup.As<IDriver>() && setup.As<ICheckHardware>() && setup.As<IResults>());
        EXPECT_TRUE(Create<ISupport>(L"TVN2x.clsSupport"));
        EXPECT_TRUE(Create<_clsTimeout>(L"TVN2x.clsTimeout"));

        EXPECT_EQ(document->put_ListSize(3), S_OK);
        EXPECT_EQ(Get(setup, &_clsSetup::get_ListSize), 3);
        const auto view = ComPtr<IDispatch>::Attach(Get(setup, &_clsSetup::get_Setup)).As<ISetup>();
        ASSERT_TRUE(view);
        EXPECT_EQ(Get(view, &ISetup::get_ListSize), 3);
        EXPECT_EQ(view->put_Order(99, 1), RuntimeError(9));
    }
    CoUninitialize();
}

/// The key of a class or an interface of the machine.
std::wstring KeyOf(const wchar_t* kind, REFGUID id)
{
    return L"Software\\Classes\\" + std::wstring(kind) + L"\\" + com::TextOf(id);
}

std::wstring RegisteredText(const std::wstring& key)
{
    wchar_t text[300] = L"";
    DWORD size = sizeof text;
    const LSTATUS status = RegGetValueW(HKEY_LOCAL_MACHINE, key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, text, &size);
    return status == ERROR_SUCCESS ? text : L"<none>";
}

TEST_F(Server, RegistrationThatFailsHalfWayLeavesWhatWasThereBefore)
{
    const std::wstring kept = KeyOf(L"CLSID", CLSID_clsSetup), lacking = KeyOf(L"CLSID", CLSID_clsTimeout),
                       blocked = KeyOf(L"Interface", IID_IResults);
    const std::wstring file = RegisteredText(kept + L"\\InprocServer32");
    ASSERT_NE(file, L"<none>");
    ASSERT_EQ(RegSetKeyValueW(HKEY_LOCAL_MACHINE, kept.c_str(), nullptr, REG_SZ, L"before", 7 * sizeof(wchar_t)),
              ERROR_SUCCESS);
    ASSERT_EQ(RegDeleteTreeW(HKEY_LOCAL_MACHINE, lacking.c_str()), ERROR_SUCCESS);
    ASSERT_EQ(RegDeleteTreeW(HKEY_LOCAL_MACHINE, blocked.c_str()), ERROR_SUCCESS);
    // A key that goes with the session takes no lasting keys below it.
    HKEY key;
    ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, blocked.c_str(), 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS,
                              nullptr, &key, nullptr),
              ERROR_SUCCESS);
    RegCloseKey(key);

    const auto setup = Create<_clsSetup>(L"TVN2x.clsSetup");
    const auto registerServer = Export<HRESULT(STDMETHODCALLTYPE*)()>(L"TVN2x.dll", "DllRegisterServer");
    EXPECT_EQ(registerServer(), HRESULT_FROM_WIN32(ERROR_CHILD_MUST_BE_VOLATILE));
    EXPECT_EQ(RegisteredText(kept), L"before");
    EXPECT_EQ(RegisteredText(kept + L"\\InprocServer32"), file);
    EXPECT_EQ(RegisteredText(lacking), L"<none>");
    EXPECT_EQ(RegisteredText(blocked), L"<none>");
    EXPECT_EQ(RegisteredText(KeyOf(L"Interface", IID_ISetup)), L"ISetup");

    EXPECT_EQ(RegDeleteTreeW(HKEY_LOCAL_MACHINE, blocked.c_str()), ERROR_SUCCESS);
    EXPECT_EQ(registerServer(), S_OK);
    EXPECT_EQ(RegisteredText(lacking), L"Polled timer");
    EXPECT_EQ(RegisteredText(blocked), L"IResults");
}

constexpr const wchar_t* product = L"TVN2x test";

VARIANT Reference(VARIANT& variable)
{
    return Variant(VT_BYREF | VT_VARIANT, &VARIANT::pvarVal, &variable);
}
VARIANT Held(const Bstr& text)
{
    return Variant(VT_BSTR, &VARIANT::bstrVal, text.Get());
}
VARIANT Holding(IDispatch* object)
{
    return Variant(VT_DISPATCH, &VARIANT::pdispVal, object);
}

struct LateBinding : Apartment
{
    ComPtr<_clsSetup> setup = Create<_clsSetup>(L"TVN2x.clsSetup");
    ComPtr<IDispatch> document = ComPtr<IDispatch>::Attach(Get(setup, &_clsSetup::get_Setup));
    ComPtr<IDispatch> measurement = ComPtr<IDispatch>::Attach(Get(setup, &_clsSetup::get_Measurement));
};

struct ViewOfInterface
{
    HRESULT (STDMETHODCALLTYPE _clsSetup::*get)(IDispatch**);
    IID id;
    const wchar_t* name;
};

TEST_F(LateBinding, ViewAnswersTheInterfaceOfItsTypeInformationUnderOneIdentityThatLastsAsLongAsTheObject)
{
    const ViewOfInterface views[] = {
        {&_clsSetup::get_Setup, IID_ISetup, L"ISetup"},
        {&_clsSetup::get_Measurement, IID_IMeasure, L"IMeasure"},
        {&_clsSetup::get_Driver, IID_IDriver, L"IDriver"},
        {&_clsSetup::get_CheckHardware, IID_ICheckHardware, L"ICheckHardware"},
        {&_clsSetup::get_Results, IID_IResults, L"IResults"},
    };
    for (const auto& [get, id, name] : views) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(name)));
        auto view = ComPtr<IDispatch>::Attach(Get(setup, get));
        const IUnknown* identity = view.As<IUnknown>().Get();
        EXPECT_EQ(ComPtr<IDispatch>::Attach(Get(setup, get)).As<IUnknown>().Get(), identity);
        view.Reset();
        view = ComPtr<IDispatch>::Attach(Get(setup, get));
        EXPECT_EQ(view.As<IUnknown>().Get(), identity) << "nobody held it meanwhile";

        ExpectOneIdentity(view.Get(), {IID_IUnknown, IID_IDispatch, id, IID_ISupportErrorInfo});
        EXPECT_FALSE(view.As<_clsSetup>()) << "another object";

        ComPtr<ITypeInfo> info;
        ASSERT_EQ(view->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.Put()), S_OK);
        Bstr named;
        EXPECT_EQ(info->GetDocumentation(MEMBERID_NIL, named.Put(), nullptr, nullptr, nullptr), S_OK);
        EXPECT_EQ(named.View(), name);
    }
    // Whoever goes last, the object goes with the last reference of all.
    document.Reset();
    setup.Reset();
    EXPECT_EQ(Call(measurement, L"ResetMeasurement", DISPATCH_METHOD, {}), S_OK);
    EXPECT_EQ(measurement.Detach()->Release(), 0u);
}

TEST_F(LateBinding, ParentTakesEveryKindOfAssignment)
{
    Parent parent;
    for (const WORD flags :
         {DISPATCH_PROPERTYPUT, DISPATCH_PROPERTYPUTREF, DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF}) {
        SCOPED_TRACE(flags);
        VARIANT variable = Holding(&parent), none{};
        none.vt = VT_NULL;
        const std::pair<VARIANT, bool> assigned[] = {
            {variable, true}, {Holding(nullptr), false}, {Reference(variable), true},
            {none, false},    {variable, true},          {Reference(none), false}};
        for (const auto& [value, isHeld] : assigned) {
            EXPECT_EQ(Call(measurement, L"Parent", flags, {value}), S_OK);
            EXPECT_EQ(parent.references > 0, isHeld);
        }
    }
}

TEST_F(LateBinding, ReferencesWorkByNameAsByPositionAndWhatIsLeftOutStaysLeftOutWhenPassedOn)
{
    const auto file = (std::filesystem::temp_directory_path() / L"late_binding_test.ini").wstring();
    const Bstr productName(product), version(L"2.0"), path(file);
    VARIANT nothing = Variant(VT_ERROR, &VARIANT::scode, DISP_E_PARAMNOTFOUND), saved{}, loaded{};
    EXPECT_EQ(Call(document, L"Save", DISPATCH_METHOD, {Held(productName)},
                   {{L"sFullPath", Held(path)}, {L"sAppVersion", Held(version)}}, &saved),
              S_OK);
    EXPECT_EQ(saved.boolVal, VARIANT_TRUE);
    // By position, passed on, by name: the document goes to its own file, and all channels are reset.
    setup->put_ListSize(2);
    for (const VARIANT& omitted : {nothing, Reference(nothing)}) {
        const std::vector<VARIANT> names = {Held(productName), Held(version)};
        for (const bool isNamed : {false, true}) {
            auto positional = names;
            positional.resize(isNamed ? 2 : 3, omitted);
            saved.boolVal = VARIANT_FALSE;
            EXPECT_EQ(Call(document, L"Save", DISPATCH_METHOD, positional,
                           std::vector(isNamed, std::pair(L"sFullPath", omitted)), &saved),
                      S_OK);
            EXPECT_EQ(saved.boolVal, VARIANT_TRUE);
        }
        EXPECT_EQ(setup.As<ISetup>()->Save(productName.Get(), version.Get(), omitted, &saved.boolVal), S_OK);
        EXPECT_EQ(Call(measurement, L"ResetMeasurement", DISPATCH_METHOD, {}, {{L"lngItem", omitted}}), S_OK);
        EXPECT_EQ(Cell(setup.As<IMeasure>().Get(), 1, 13, 2), L"Un-measured");
    }

    // The model and the mode come back through variables, by name as by position.
    for (const size_t named : {0, 1, 2, 4}) {
        SCOPED_TRACE(named);
        VARIANT model{}, mode{}, productHeld = Held(productName);
        mode.vt = VT_I2;
        const std::vector<VARIANT> values = {Reference(productHeld), Held(path), Reference(model), Reference(mode)};
        std::vector<std::pair<const wchar_t*, VARIANT>> arguments;
        for (size_t i = 4; i-- > 4 - named;) {
            constexpr const wchar_t* names[] = {L"sProductName", L"sFullPath", L"strModel", L"udtMode"};
            arguments.emplace_back(names[i], values[i]);
        }
        EXPECT_EQ(Call(document, L"Load", DISPATCH_METHOD, {values.begin(), values.end() - static_cast<int>(named)},
                       arguments, &loaded),
                  S_OK);
        EXPECT_EQ(loaded.boolVal, VARIANT_TRUE);
        EXPECT_EQ(com::ViewOf(model.bstrVal), L"2x");
        EXPECT_EQ(mode.vt, VT_I4);
        EXPECT_EQ(mode.lVal, 4);
        VariantClear(&model);
    }
    std::filesystem::remove(file);
}

TEST_F(PlugIn, ParentMayCallBackAndGoAtEveryNotice)
{
    VARIANT_BOOL result;
    const std::function<HRESULT()> operations[] = {
        [&] { return measure->Measure(1, VARIANT{}, &result); },
        [&] { return measure->SetConfiguration(); },
        [&] { return measure->GetConfiguration(); },
    };
    measure->ResetMeasurement(0);
    for (const wchar_t* when : {L"status", L"progress", L"cell", L"channel"}) {
        for (const auto& operation : operations) {
            SCOPED_TRACE(testing::Message() << &operation - operations);
            measure->putref_Parent(&parent);
            parent.onNotice = [&, when](const std::wstring& notice) {
                if (notice == when) {
                    EXPECT_THAT(operations, testing::Each(testing::ResultOf([](auto& nested) { return nested(); },
                                                                            RuntimeError(5))));
                    measure->putref_Parent(nullptr);
                }
                return S_OK;
            };
            EXPECT_EQ(operation(), S_OK);
            measure->putref_Parent(nullptr);
            EXPECT_EQ(parent.references, 0u);
        }
    }
}

TEST_F(PlugIn, ParentMayReleaseThePlugInMeanwhile)
{
    VARIANT_BOOL result = VARIANT_FALSE;
    const std::pair<const wchar_t*, std::function<HRESULT(IMeasure*)>> operations[] = {
        {L"channel", [&](IMeasure* last) { return last->Measure(1, VARIANT{}, &result); }},
        {L"progress", [](IMeasure* last) { return last->SetConfiguration(); }},
    };
    for (const auto& [when, operation] : operations) {
        auto held = Create<IMeasure>(L"TVN2x.clsSetup");
        IMeasure* const last = held.Get();
        held.As<_clsSetup>()->put_MaxSettlingTime(1);
        held->ResetMeasurement(0);
        held->putref_Parent(&parent);
        parent.onNotice = [&, when = when](const std::wstring& notice) {
            if (notice == when) {
                held.Reset();
            }
            return S_OK;
        };
        EXPECT_EQ(operation(last), S_OK);
        EXPECT_EQ(parent.references, 0u) << "the object is gone, and with it its parent reference";
    }
    EXPECT_THAT(parent.statuses, testing::Contains(L"Measuring at 213 MHz"));
}

}  // namespace
}  // namespace tvn2x::client
