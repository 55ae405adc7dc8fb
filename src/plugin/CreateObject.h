#pragma once

#include <windows.h>

#include "com/ComPtr.h"
#include "util/RaisedError.h"

namespace tvn2x {

/// A new object of the driver library. Raises 429 where the library is not registered.
template <class Interface>
com::ComPtr<Interface> CreateObject(REFCLSID classId, const wchar_t* source)
{
    com::ComPtr<Interface> object;
    if (FAILED(CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface),
                                reinterpret_cast<void**>(object.Put()))))
        throw RaisedError(error::cannotCreateObject, source, L"ActiveX component can't create object");
    return object;
}

}  // namespace tvn2x
