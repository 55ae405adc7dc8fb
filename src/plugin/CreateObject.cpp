#include "plugin/CreateObject.h"

#include <cwchar>

namespace tvn2x {
namespace {

constexpr const wchar_t* ownPrograms = sizeof(void*) == 8 ? L"64-bit" : L"32-bit";

std::wstring Reason(HRESULT result)
{
    if (result == REGDB_E_CLASSNOTREG) {
        return std::wstring(L"is not registered for ") + ownPrograms + L" programs";
    }
    if (SUCCEEDED(result)) {
        return L"was created without an object";
    }
    // Only what the library's own factory has left: the call began with the thread's error information cleared.
    RaisedError reported(result, {}, com::SystemText(result));
    com::TakeErrorInfo(reported);
    wchar_t number[16];
    std::swprintf(number, 16, L" (0x%08X)", static_cast<unsigned>(result));
    return L"was refused: " + reported.description + number;
}

}  // namespace

void RaiseCannotCreate(HRESULT result, const wchar_t* className, const wchar_t* source)
{
    const OwnFloatingPointAfterwards after;
    throw RaisedError(error::cannotCreateObject, source,
                      std::wstring(L"ActiveX component can't create object: ") + className + L" " + Reason(result));
}

}  // namespace tvn2x
