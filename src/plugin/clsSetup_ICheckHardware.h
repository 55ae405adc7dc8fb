#pragma once

#include <windows.h>

#include "TVNINT.h"
#include "com/Object.h"

namespace tvn2x {

class clsSetup;

/// ICheckHardware of clsSetup: whether the connected receiver can do what the setup asks.
class clsSetup_ICheckHardware : public com::Member<ICheckHardware, clsSetup>
{
public:
    using Member::Member;

    HRESULT STDMETHODCALLTYPE ActivateMode(VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE ExtRef(VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE InputPort(VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE Mode(LONG* result) noexcept override;
    HRESULT STDMETHODCALLTYPE SawFilterBw(VARIANT_BOOL* result) noexcept override;
};

}  // namespace tvn2x
