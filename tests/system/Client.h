#pragma once

#include <cguid.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <atomic>
#include <functional>
#include <string>
#include <vector>

#include "TVN2x.h"
#include "TVNINT.h"
#include "XKTR2x.h"
#include "com/ComPtr.h"
#include "com/Errors.h"
#include "com/Text.h"
#include "support/StaticObject.h"
#include "util/FloatingPoint.h"

namespace tvn2x::client {

using com::Bstr;
using com::ComPtr;

constexpr HRESULT RuntimeError(int number)
{
    return static_cast<HRESULT>(0x800A0000u | static_cast<unsigned>(number));
}

/// A single-threaded apartment for the life of a test.
class Apartment : public testing::Test
{
protected:
    Apartment() { CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
    ~Apartment() override { CoUninitialize(); }
};

/// A new object by its ProgID, as any client makes one.
template <class Interface>
ComPtr<Interface> Create(const wchar_t* progId)
{
    CLSID id;
    ComPtr<Interface> object;
    const HRESULT known = CLSIDFromProgID(progId, &id);
    EXPECT_EQ(known, S_OK) << "is the library registered?";
    if (SUCCEEDED(known)) {
        EXPECT_EQ(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface),
                                   reinterpret_cast<void**>(object.Put())),
                  S_OK);
    }
    return object;
}

/// The error information that the last failed call left behind.
inline RaisedError LastError()
{
    RaisedError told(0, {}, {});
    com::TakeErrorInfo(told);
    return told;
}

/// An entry point of a library that is loaded.
template <class Function>
Function Export(const wchar_t* library, const char* name)
{
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(library), name)));
}

template <class Value>
VARIANT Variant(VARTYPE type, Value VARIANT::*member, Value value)
{
    VARIANT variant{};
    variant.vt = type;
    variant.*member = value;
    return variant;
}

/// A call by name: arguments by position in their order, then those by name.
inline HRESULT Call(const ComPtr<IDispatch>& object, const wchar_t* member, WORD flags, std::vector<VARIANT> positional,
                    const std::vector<std::pair<const wchar_t*, VARIANT>>& named = {}, VARIANT* result = nullptr)
{
    std::vector<LPOLESTR> names = {const_cast<LPOLESTR>(member)};
    std::vector<VARIANT> arguments;
    for (const auto& [name, value] : named) {
        names.push_back(const_cast<LPOLESTR>(name));
        arguments.push_back(value);
    }
    std::vector<DISPID> ids(names.size());
    EXPECT_EQ(
        object->GetIDsOfNames(IID_NULL, names.data(), static_cast<UINT>(names.size()), LOCALE_USER_DEFAULT, ids.data()),
        S_OK);
    const DISPID id = ids.front();
    ids.erase(ids.begin());
    if (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) {
        arguments.push_back(positional.back());
        positional.pop_back();
        ids.push_back(DISPID_PROPERTYPUT);
    }
    arguments.insert(arguments.end(), positional.rbegin(), positional.rend());
    DISPPARAMS parameters{arguments.data(), ids.data(), static_cast<UINT>(arguments.size()),
                          static_cast<UINT>(ids.size())};
    return object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, result, nullptr, nullptr);
}

/// Each of the interfaces leads to each, and to one identity.
inline void ExpectOneIdentity(IUnknown* object, const std::vector<IID>& answered)
{
    ComPtr<IUnknown> identity;
    ASSERT_EQ(object->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(identity.Put())), S_OK);
    for (const IID& from : answered) {
        ComPtr<IUnknown> face;
        ASSERT_EQ(object->QueryInterface(from, reinterpret_cast<void**>(face.Put())), S_OK);
        EXPECT_EQ(face.As<IUnknown>().Get(), identity.Get());
        for (const IID& to : answered) {
            ComPtr<IUnknown> other;
            EXPECT_EQ(face->QueryInterface(to, reinterpret_cast<void**>(other.Put())), S_OK);
        }
    }
}

/// A text cell of the result table.
inline std::wstring Cell(IMeasure* measure, long field, short parameter, long channel)
{
    Bstr text;
    const HRESULT result = measure->get_Result(field, parameter, channel, text.Put());
    return FAILED(result) ? L"<error>" : std::wstring(text.View());
}

/// What a property is, a text as std::wstring; a failed call fails the test.
template <class Interface, class Value>
auto Get(const ComPtr<Interface>& object, HRESULT (STDMETHODCALLTYPE Interface::*property)(Value*))
{
    if constexpr (std::is_same_v<Value, BSTR>) {
        Bstr text;
        EXPECT_EQ((object.Get()->*property)(text.Put()), S_OK);
        return std::wstring(text.View());
    } else {
        Value value{};
        EXPECT_EQ((object.Get()->*property)(&value), S_OK);
        return value;
    }
}

/// Invalid operations, denormal operands, divisions by zero and overflows are on, as some languages have them.
constexpr FloatingPointWords unmasked{0x0370, 0x1800};

/// A call out of a host that computes in that state, which the call must leave as it was.
inline HRESULT FromUnmaskedHost(const std::function<HRESULT()>& call)
{
    const FloatingPointWords before = FloatingPointWords::Now();
    unmasked.Load();
    const HRESULT result = call();
    const FloatingPointWords after = FloatingPointWords::Now();
    before.Load();
    EXPECT_EQ(after.x87, unmasked.x87);
    EXPECT_EQ(after.sse, unmasked.sse);
    return result;
}

/// A parent object that does what a test wants at every notice. Lives on the stack of the test.
class Parent final : public EarlyBound<IMeasureParent>
{
public:
    std::function<HRESULT(const std::wstring& notice)> onNotice = [](const std::wstring&) { return S_OK; };
    std::vector<std::wstring> statuses;
    std::atomic<ULONG> references{0};

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** out) noexcept override
    {
        const bool known = id == IID_IUnknown || id == IID_IDispatch || id == __uuidof(IMeasureParent);
        *out = known ? this : nullptr;
        if (known) {
            AddRef();
        }
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() noexcept override { return --references; }
    HRESULT STDMETHODCALLTYPE Status(BSTR text) noexcept override
    {
        statuses.emplace_back(com::ViewOf(text));
        return onNotice(L"status");
    }
    HRESULT STDMETHODCALLTYPE Progress(double, VARIANT) noexcept override { return onNotice(L"progress"); }
    HRESULT STDMETHODCALLTYPE CellChanged(LONG, SHORT) noexcept override { return onNotice(L"cell"); }
    HRESULT STDMETHODCALLTYPE ChannelStart(double, VARIANT) noexcept override { return onNotice(L"channel"); }
};

/// The plug-in with the simulated receiver, which works a hundred times as fast as in life, without the long BER count.
class PlugIn : public Apartment
{
protected:
    PlugIn()
    {
        const auto settings = ComPtr<IDispatch>::Attach(Get(setup.As<IDriver>(), &IDriver::get_Settings));
        settings.As<ISimulatorSettings>()->put_TimeScale(0.01);
        setup->put_MaxSettlingTime(1);
        setup->put_Parameter(0, ::MP_BER, VARIANT_FALSE);
        Create<IRunControl>(L"XKTR2x.clsRunControl")->put_StopFlag(VARIANT_FALSE);
    }

    ComPtr<_clsSetup> setup = Create<_clsSetup>(L"TVN2x.clsSetup");
    ComPtr<IMeasure> measure = setup.As<IMeasure>();
    Parent parent;  // outlives the plug-in's reference, which the body of a test gives up
};

}  // namespace tvn2x::client
