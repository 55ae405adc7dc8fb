#pragma once

#include <windows.h>

#include <string>

#include "com/Call.h"

namespace tvn2x {

/// Raises 429 for a class that could not be created, and says why.
[[noreturn]] void RaiseCannotCreate(HRESULT result, const wchar_t* className, const wchar_t* source);

/// A new object of the driver library, className for the user to read. Raises 429 where there is none to be had: the
/// description names the class, and the reason that the system or the library's own factory gives.
template <class Interface>
com::ComPtr<Interface> CreateObject(REFCLSID classId, const wchar_t* className, const wchar_t* source)
{
    void* object = nullptr;
    const HRESULT result = com::Outside(
        [&] { return CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface), &object); });
    if (FAILED(result) || !object) {
        RaiseCannotCreate(result, className, source);
    }
    return com::ComPtr<Interface>::Attach(static_cast<Interface*>(object));
}

}  // namespace tvn2x
