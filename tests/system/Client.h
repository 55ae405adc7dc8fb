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
#include "com/Text.h"

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

struct ErrorText
{
    std::wstring source;
    std::wstring description;
};

/// The error information that the last failed call left behind.
inline ErrorText LastError()
{
    ErrorText text;
    ComPtr<IErrorInfo> info;
    if (GetErrorInfo(0, info.Put()) == S_OK) {
        Bstr source, description;
        info->GetSource(source.Put());
        info->GetDescription(description.Put());
        text = {std::wstring(source.View()), std::wstring(description.View())};
    }
    return text;
}

/// A text cell of the result table.
inline std::wstring Cell(IMeasure* measure, long field, short parameter, long channel)
{
    Bstr text;
    const HRESULT result = measure->get_Result(field, parameter, channel, text.Put());
    return FAILED(result) ? L"<error>" : std::wstring(text.View());
}

/// A parent object that does what a test wants at every notice. Lives on the stack of the test.
class Parent final : public IMeasureParent
{
public:
    std::function<HRESULT(const std::wstring& notice)> onNotice = [](const std::wstring&) { return S_OK; };
    std::vector<std::wstring> statuses;
    int cells = 0;
    std::atomic<ULONG> references{0};

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** out) noexcept override
    {
        const bool known = id == IID_IUnknown || id == IID_IDispatch || id == __uuidof(IMeasureParent);
        *out = known ? this : nullptr;
        if (known)
            AddRef();
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() noexcept override { return --references; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override
    {
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) noexcept override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) noexcept override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Status(BSTR text) noexcept override
    {
        statuses.emplace_back(com::ViewOf(text));
        return onNotice(L"status");
    }
    HRESULT STDMETHODCALLTYPE Progress(double, VARIANT) noexcept override { return onNotice(L"progress"); }
    HRESULT STDMETHODCALLTYPE CellChanged(LONG, SHORT) noexcept override
    {
        ++cells;
        return onNotice(L"cell");
    }
    HRESULT STDMETHODCALLTYPE ChannelStart(double, VARIANT) noexcept override { return onNotice(L"channel"); }
};

}  // namespace tvn2x::client
