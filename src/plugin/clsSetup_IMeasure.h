#pragma once

#include <windows.h>

#include "TVNINT.h"
#include "com/Object.h"

namespace tvn2x {

class clsSetup;

/// IMeasure of clsSetup: the measurement process and its results.
class clsSetup_IMeasure : public com::Member<IMeasure, clsSetup>
{
public:
    using Member::Member;

    HRESULT STDMETHODCALLTYPE get_Abort(VARIANT_BOOL* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Abort(VARIANT_BOOL blnValue) noexcept override;
    HRESULT STDMETHODCALLTYPE GetConfiguration() noexcept override;
    HRESULT STDMETHODCALLTYPE Measure(LONG lIndex, VARIANT vReserved, VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Measured(LONG lngIndex, VARIANT_BOOL* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Notes(BSTR* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Notes(BSTR vNewValue) noexcept override;
    HRESULT STDMETHODCALLTYPE putref_Parent(IDispatch* objNewValue) noexcept override;
    HRESULT STDMETHODCALLTYPE ResetMeasurement(LONG lngItem) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Result(LONG udtField, SHORT intType, LONG lngIndex, BSTR* value) noexcept override;
    HRESULT STDMETHODCALLTYPE Save(BSTR sFullPath, VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE SetConfiguration() noexcept override;
    HRESULT STDMETHODCALLTYPE get_ShowNotesAfter(VARIANT_BOOL* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_ShowNotesAfter(VARIANT_BOOL blnShowNotesAfter) noexcept override;
};

}  // namespace tvn2x
