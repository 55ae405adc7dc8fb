#pragma once

#include <windows.h>

#include "XKTR2x.h"
#include "com/Object.h"

namespace tvn2x {

class clsReceiver;

/// IIdentification of the receiver: who it is.
class clsReceiver_IIdentification final : public com::Member<IIdentification, clsReceiver>
{
public:
    using Member::Member;

    HRESULT STDMETHODCALLTYPE get_InstrumentName(BSTR* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_BusAddress(BSTR* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Model(BSTR* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Manufacturer(BSTR* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Hardware(BSTR* value) noexcept override;
};

}  // namespace tvn2x
