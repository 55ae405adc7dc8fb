// The plug-in as a late-bound client sees it, with everything that languages do differently from one another.

#include <ocidl.h>

#include <algorithm>
#include <filesystem>

#include "Client.h"

namespace tvn2x::client {
namespace {

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
    for (const VARIANT& wrong : {Held(Bstr(L"5")), VARIANT{}}) {
        EXPECT_NE(Call(measurement, L"Parent", DISPATCH_PROPERTYPUT, {wrong}), S_OK);
    }
    // A plain property takes no reference, and keeps taking values.
    EXPECT_NE(Call(measurement, L"Notes", DISPATCH_PROPERTYPUTREF, {Holding(&parent)}), S_OK);
    const Bstr notes(L"n");
    EXPECT_EQ(Call(measurement, L"Notes", DISPATCH_PROPERTYPUT, {Held(notes)}), S_OK);
    EXPECT_EQ(Get(setup.As<IMeasure>(), &IMeasure::get_Notes), L"n");
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
    // By position, passed on, by name: the document goes to its own file.
    const std::vector<VARIANT> names = {Held(productName), Held(version)};
    std::vector<VARIANT> withPath = names;
    for (const VARIANT& omitted : {nothing, Reference(nothing)}) {
        withPath.resize(2);
        withPath.push_back(omitted);
        saved.boolVal = VARIANT_FALSE;
        EXPECT_EQ(Call(document, L"Save", DISPATCH_METHOD, withPath, {}, &saved), S_OK);
        EXPECT_EQ(saved.boolVal, VARIANT_TRUE);
        saved.boolVal = VARIANT_FALSE;
        EXPECT_EQ(Call(document, L"Save", DISPATCH_METHOD, names, {{L"sFullPath", omitted}}, &saved), S_OK);
        EXPECT_EQ(saved.boolVal, VARIANT_TRUE);
        EXPECT_EQ(setup.As<ISetup>()->Save(productName.Get(), version.Get(), omitted, &saved.boolVal), S_OK);

        setup->put_ListSize(2);
        EXPECT_EQ(Call(measurement, L"ResetMeasurement", DISPATCH_METHOD, {omitted}), S_OK);
        EXPECT_EQ(Call(measurement, L"ResetMeasurement", DISPATCH_METHOD, {}, {{L"lngItem", omitted}}), S_OK);
        EXPECT_EQ(Cell(setup.As<IMeasure>().Get(), 1, 13, 2), L"Un-measured") << "all channels";
    }

    // The model and the mode come back through variables, however they are handed in.
    for (const int named : {0, 1, 2, 4}) {
        SCOPED_TRACE(named);
        VARIANT model{}, mode{}, productHeld = Held(productName);
        mode.vt = VT_I2;
        std::vector<std::pair<const wchar_t*, VARIANT>> arguments = {{L"sProductName", Reference(productHeld)},
                                                                     {L"sFullPath", Held(path)},
                                                                     {L"strModel", Reference(model)},
                                                                     {L"udtMode", Reference(mode)}};
        std::vector<VARIANT> positional;
        for (; arguments.size() > static_cast<size_t>(named); arguments.erase(arguments.begin())) {
            positional.push_back(arguments.front().second);
        }
        std::reverse(arguments.begin(), arguments.end());
        EXPECT_EQ(Call(document, L"Load", DISPATCH_METHOD, positional, arguments, &loaded), S_OK);
        EXPECT_EQ(loaded.boolVal, VARIANT_TRUE);
        EXPECT_EQ(com::ViewOf(model.bstrVal), L"2x");
        EXPECT_EQ(mode.vt, VT_I4);
        EXPECT_EQ(mode.lVal, 4);
        VariantClear(&model);
    }
    std::filesystem::remove(file);
}

}  // namespace
}  // namespace tvn2x::client
