#pragma once

#include <windows.h>

#include <oaidl.h>

#include "com/Errors.h"

namespace tvn2x::com {

/// One interface of an object as an object of its own: what a script language, which sees an object's default interface
/// alone, holds to call another one. A member object of the same owner as MemberInterface, of which it is a second one.
///
/// An object has one IDispatch only, so the view has its own identity: it answers IUnknown, IDispatch, the interface
/// that its type information names and ISupportErrorInfo, each leading back to all of them and none to the owner. It
/// has no count of its own: every reference to it is one to the owner. So it is the same view for as long as the owner
/// lives, and neither keeps the other alive once nobody holds either.
template <class MemberObject>
class View final : public MemberObject, public ISupportErrorInfo
{
public:
    using Interface = typename MemberObject::Interface;
    using MemberObject::MemberObject;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** out) noexcept override
    {
        if (!out) {
            return Refuse(E_POINTER);
        }
        *out = nullptr;
        if (id == IID_IUnknown || id == IID_IDispatch || id == __uuidof(Interface)) {
            *out = static_cast<Interface*>(this);
        } else if (id == IID_ISupportErrorInfo) {
            *out = static_cast<ISupportErrorInfo*>(this);
        } else {
            return E_NOINTERFACE;
        }
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return MemberObject::AddRef(); }
    ULONG STDMETHODCALLTYPE Release() noexcept override { return MemberObject::Release(); }

    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID id) noexcept override
    {
        return id == IID_IDispatch || id == __uuidof(Interface) ? S_OK : S_FALSE;
    }
};

}  // namespace tvn2x::com
