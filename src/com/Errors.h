#pragma once

#include <windows.h>

#include <oaidl.h>

#include <utility>

#include "util/RaisedError.h"

namespace tvn2x::com {

/// The HRESULT that carries an error number: 0x800A0000 | number for 1..65535, the number itself otherwise.
HRESULT HresultOf(int32_t number);
/// The reverse: the number that an HRESULT carries.
int32_t NumberOf(HRESULT result);

/// Hands an error to the caller of the running COM method: sets the thread's error information, returns the HRESULT.
HRESULT Report(const RaisedError& error, REFIID interfaceId) noexcept;

/// A failure that has nothing to tell beside its HRESULT: what an earlier call left behind must not be taken for its
/// error information.
HRESULT Refuse(HRESULT result) noexcept;

/// Translates the exception in flight. For catch (...) only.
HRESULT ReportCurrentException(REFIID interfaceId) noexcept;

/// The body of every COM method: no exception leaves it.
template <class Body>
HRESULT Guard(REFIID interfaceId, Body&& body) noexcept
{
    try {
        body();
        return S_OK;
    } catch (...) {
        return ReportCurrentException(interfaceId);
    }
}

/// Throws what a failed call into another object reported: its error information where that object vouches for it,
/// else the system's own words for the HRESULT.
[[noreturn]] void ThrowFailure(HRESULT result, IUnknown* callee, REFIID interfaceId);

/// Throws what a late-bound call reported; frees the texts of `info`.
[[noreturn]] void ThrowInvokeFailure(HRESULT result, EXCEPINFO& info);

template <class Interface>
void Check(HRESULT result, Interface* callee)
{
    if (FAILED(result))
        ThrowFailure(result, callee, __uuidof(Interface));
}

}  // namespace tvn2x::com
