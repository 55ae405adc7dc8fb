#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>
#include <type_traits>
#include <utility>

#include "com/ComPtr.h"
#include "com/Entry.h"
#include "com/Errors.h"
#include "com/Text.h"

namespace tvn2x::com {

/// The way out: every call into another object or library is made in here. No error information of an earlier call is
/// taken for this one's, and what the callee does to the floating-point state stays its own affair.
template <class Invocation>
HRESULT Outside(Invocation&& invocation)
{
    const OwnFloatingPointAfterwards after;
    SetErrorInfo(0, nullptr);
    return invocation();
}

/// The same for the host's parent object, which finds the host's own floating-point state.
template <class Invocation>
HRESULT AtTheHost(Invocation&& invocation)
{
    return Outside([&] {
        const HostsTurn turn;
        return invocation();
    });
}

/// Calls a member; a failure is thrown as what the callee reported.
template <class Interface, class Base, class... Parameters, class... Arguments>
void Call(Interface* callee, HRESULT (STDMETHODCALLTYPE Base::*member)(Parameters...), Arguments&&... arguments)
{
    Check(Outside([&] { return (callee->*member)(std::forward<Arguments>(arguments)...); }), callee);
}

/// Calls a member whose only argument hands something out: a text comes as std::wstring, an object, which may be
/// missing, as ComPtr. What is left untouched is 0, empty or missing; what a failed call hands out is not looked at.
template <class Interface, class Base, class Value>
auto Ask(Interface* callee, HRESULT (STDMETHODCALLTYPE Base::*question)(Value*))
{
    Value value{};
    Call(callee, question, &value);
    if constexpr (std::is_same_v<Value, BSTR>) {
        return std::wstring(Bstr::Attach(value).View());
    } else if constexpr (std::is_pointer_v<Value>) {
        return ComPtr<std::remove_pointer_t<Value>>::Attach(value);
    } else {
        return value;
    }
}

/// Asks an object for another interface. A success without an interface is E_NOINTERFACE.
template <class Interface>
HRESULT Query(IUnknown* object, ComPtr<Interface>& out)
{
    void* found = nullptr;
    const HRESULT result = Outside([&] { return object->QueryInterface(__uuidof(Interface), &found); });
    if (FAILED(result)) {
        return result;
    }
    out = ComPtr<Interface>::Attach(static_cast<Interface*>(found));
    if (found) {
        return S_OK;
    }
    SetErrorInfo(0, nullptr);  // of a call that has succeeded
    return E_NOINTERFACE;
}

}  // namespace tvn2x::com
