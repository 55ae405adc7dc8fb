#pragma once

#include <windows.h>

#include <oaidl.h>

#include <optional>

#include "com/Errors.h"
#include "com/Text.h"

namespace tvn2x::com {

/// IDispatch of one dual interface, from the type library.
HRESULT DispatchTypeInfo(REFIID interfaceId, UINT index, ITypeInfo** out) noexcept;
HRESULT DispatchNames(REFIID interfaceId, REFIID reserved, LPOLESTR* names, UINT count, DISPID* ids) noexcept;
/// What a type library cannot say for itself:
/// - Script languages pass every variable as a reference to a VARIANT; where a member takes a typed reference, the
///   value is converted there and back, whether the argument stands at its position or is named.
/// - A reference to an argument that was left out, which a procedure passes on, is left out.
/// - A property that is only ever set by reference takes the plain assignment, too: not every language has both.
///   It takes null for no object.
HRESULT DispatchInvoke(REFIID interfaceId, IDispatch* object, DISPID member, REFIID reserved, WORD flags,
                       DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception, UINT* argument) noexcept;

/// Whether an optional argument is left out, by the caller itself or by whoever called the caller.
bool IsLeftOut(const VARIANT& argument) noexcept;

/// Hands a value of the core out through an out argument.
inline void Hand(VARIANT_BOOL* out, bool value)
{
    *out = value ? VARIANT_TRUE : VARIANT_FALSE;
}
inline void Hand(short* out, int16_t value)
{
    *out = value;
}
inline void Hand(long* out, int32_t value)
{
    *out = value;
}
inline void Hand(float* out, float value)
{
    *out = value;
}
inline void Hand(double* out, double value)
{
    *out = value;
}
inline void Hand(BSTR* out, std::wstring_view value)
{
    *out = NewBstr(value);
}
inline void Hand(VARIANT* out, std::wstring_view value)
{
    out->bstrVal = NewBstr(value);
    out->vt = VT_BSTR;
}
/// Empty without a number.
inline void Hand(VARIANT* out, std::optional<double> value)
{
    if (value) {
        out->dblVal = *value;
    }
    out->vt = value ? VT_R8 : VT_EMPTY;
}
inline void Hand(IDispatch** out, IDispatch* counted)
{
    *out = counted;
}

/// Implements the IDispatch part of a dual interface, and the frame of its members.
template <class Interface>
class Dispatch : public Interface
{
public:
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept final
    {
        if (!count) {
            return Refuse(E_POINTER);
        }
        *count = 1;
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** out) noexcept final
    {
        return DispatchTypeInfo(__uuidof(Interface), index, out);
    }

    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID,
                                            DISPID* ids) noexcept final
    {
        return DispatchNames(__uuidof(Interface), reserved, names, count, ids);
    }

    HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID reserved, LCID, WORD flags, DISPPARAMS* parameters,
                                     VARIANT* result, EXCEPINFO* exception, UINT* argument) noexcept final
    {
        return DispatchInvoke(__uuidof(Interface), this, member, reserved, flags, parameters, result, exception,
                              argument);
    }

protected:
    /// A member that hands out what `read` returns.
    template <class Out, class Read>
    static HRESULT Get(Out* out, Read&& read) noexcept
    {
        if (!out) {
            return Refuse(E_POINTER);
        }
        *out = Out{};
        return Guard(__uuidof(Interface), [&] { Hand(out, read()); });
    }

    /// A member without a result.
    template <class Body>
    static HRESULT Do(Body&& body) noexcept
    {
        return Guard(__uuidof(Interface), std::forward<Body>(body));
    }
};

}  // namespace tvn2x::com
