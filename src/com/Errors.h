#pragma once

#include <windows.h>

#include <oaidl.h>

#include <utility>

#include "com/Entry.h"
#include "util/RaisedError.h"

namespace tvn2x::com {

/// The HRESULT that carries an error number: 0x800A0000 | number for 1..65535, a negative number itself, and E_FAIL for
/// what no HRESULT can carry.
HRESULT HresultOf(int32_t number);
/// The reverse: the number that an HRESULT carries.
int32_t NumberOf(HRESULT result);

/// Hands an error to the caller of the running COM method: sets the thread's error information, returns the HRESULT. A
/// number that the HRESULT cannot carry leads the description: "70000: no answer".
HRESULT Report(const RaisedError& error, REFIID interfaceId) noexcept;

/// A failure that has nothing to tell beside its HRESULT: what an earlier call left behind must not be taken for its
/// error information.
HRESULT Refuse(HRESULT result) noexcept;

/// Translates the exception in flight. For catch (...) only.
HRESULT ReportCurrentException(REFIID interfaceId) noexcept;

/// The body of every COM method: no exception leaves it, neither of the language nor of the floating-point units.
template <class Body>
HRESULT Guard(REFIID interfaceId, Body&& body) noexcept
{
    const Entry entry;
    try {
        body();
        return S_OK;
    } catch (...) {
        return ReportCurrentException(interfaceId);
    }
}

/// The system's own words for an HRESULT.
std::wstring SystemText(HRESULT result);

/// Takes the thread's error information over into `error`: source, description and help, each where there is one.
void TakeErrorInfo(RaisedError& error);

/// Throws what a failed call into another object reported: its error information where that object vouches for it,
/// else the system's own words for the HRESULT.
[[noreturn]] void ThrowFailure(HRESULT result, IUnknown* callee, REFIID interfaceId);

/// Throws what a late-bound call reported; frees the texts of `info`. The number is wCode where it is given, else that
/// of scode; an object that gives neither has failed with E_FAIL.
[[noreturn]] void ThrowInvokeFailure(HRESULT result, EXCEPINFO& info);

template <class Interface>
void Check(HRESULT result, Interface* callee)
{
    if (FAILED(result)) {
        ThrowFailure(result, callee, __uuidof(Interface));
    }
}

}  // namespace tvn2x::com
