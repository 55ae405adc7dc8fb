#pragma once

#include <windows.h>

#include "TVNINT.h"
#include "com/Object.h"

namespace tvn2x {

class clsReceiver;

/// IDriver of the receiver: what every instrument of the host answers.
class clsReceiver_IDriver final : public com::Member<IDriver, clsReceiver>
{
public:
    using Member::Member;

    HRESULT STDMETHODCALLTYPE get_FirmwareVersion(BSTR* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_InstalledHardware(BSTR* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Online(VARIANT_BOOL blnNewValue) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Online(VARIANT_BOOL* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_SerialNumber(BSTR* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Settings(IDispatch** value) noexcept override;
    HRESULT STDMETHODCALLTYPE Test(BSTR* strIdentity, BSTR* strHardware, LONG* udtMode,
                                   VARIANT_BOOL* result) noexcept override;
};

}  // namespace tvn2x
