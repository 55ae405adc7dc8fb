#pragma once

#include <oleauto.h>

#include <type_traits>

namespace tvn2x {

/// An object whose members nobody calls by name.
template <class Interface>
class EarlyBound : public Interface
{
public:
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) noexcept override { return E_NOTIMPL; }
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
};

/// An object that stays, whoever counts it.
template <class Interface, class Base = Interface>
class Lasting : public Base
{
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** out) noexcept override
    {
        const bool isDispatch = std::is_base_of_v<IDispatch, Interface> && id == IID_IDispatch;
        const bool known = id == IID_IUnknown || isDispatch || id == __uuidof(Interface);
        *out = known ? this : nullptr;
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return 2; }
    ULONG STDMETHODCALLTYPE Release() noexcept override { return 1; }
};

}  // namespace tvn2x
