#pragma once

#include "TVN2x.h"
#include "com/Object.h"
#include "com/View.h"
#include "plugin/SetupCore.h"
#include "plugin/clsSetup_ICheckHardware.h"
#include "plugin/clsSetup_IDriver.h"
#include "plugin/clsSetup_IMeasure.h"
#include "plugin/clsSetup_IResults.h"
#include "plugin/clsSetup_ISetup.h"

namespace tvn2x {

/// The plug-in's main object: setup document, instrument facade and measurement process. This file is its default
/// interface, the document's own properties; each of the host's interfaces is a member object with a file of its own.
class clsSetup final : public com::Object<_clsSetup, ::clsSetup>
{
public:
    SetupCore core;

    HRESULT STDMETHODCALLTYPE get_BerSamples(LONG* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_BerSamples(LONG value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Caption(::MP_TYPES eType, BSTR* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Caption(::MP_TYPES eType, BSTR value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Count(LONG* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Count(LONG value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_DefaultSymbolRate(DOUBLE* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_DefaultSymbolRate(DOUBLE value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Frequency(LONG lIndex, DOUBLE* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Frequency(LONG lIndex, DOUBLE value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ListSize(LONG* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_ListSize(LONG value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_MaxSettlingTime(LONG* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_MaxSettlingTime(LONG value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Notes(BSTR* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Notes(BSTR value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Order(::MP_TYPES eType, SHORT* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Order(::MP_TYPES eType, SHORT value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_OrderOfQam(LONG* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_OrderOfQam(LONG value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Parameter(LONG eAction, ::MP_TYPES eType, VARIANT_BOOL* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Parameter(LONG eAction, ::MP_TYPES eType, VARIANT_BOOL value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_LevelUnit(BSTR* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_LevelUnit(BSTR value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ReferenceSource(LONG* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_ReferenceSource(LONG value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_RollOffFactor(LONG* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_RollOffFactor(LONG value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_SawBw(LONG* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_SawBw(LONG value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ShowNotesAfter(VARIANT_BOOL* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_ShowNotesAfter(VARIANT_BOOL value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ShowNotesBefore(VARIANT_BOOL* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_ShowNotesBefore(VARIANT_BOOL value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_SymbolRate(LONG lIndex, DOUBLE* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_SymbolRate(LONG lIndex, DOUBLE value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_UserField(LONG lIndex, BSTR* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_UserField(LONG lIndex, BSTR value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_XAxis(LONG eDest, LONG* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_XAxis(LONG eDest, LONG value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Zin(LONG* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Zin(LONG value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_CoupleDisplayAndSave(VARIANT_BOOL* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_CoupleDisplayAndSave(VARIANT_BOOL value) noexcept override;

    // The host's interfaces, for clients that see only the default one: each an object of its own, always the same.
    HRESULT STDMETHODCALLTYPE get_Setup(IDispatch** value) noexcept override { return Share(value, setupView_); }
    HRESULT STDMETHODCALLTYPE get_Measurement(IDispatch** value) noexcept override
    {
        return Share(value, measureView_);
    }
    HRESULT STDMETHODCALLTYPE get_Driver(IDispatch** value) noexcept override { return Share(value, driverView_); }
    HRESULT STDMETHODCALLTYPE get_CheckHardware(IDispatch** value) noexcept override
    {
        return Share(value, checkView_);
    }
    HRESULT STDMETHODCALLTYPE get_Results(IDispatch** value) noexcept override { return Share(value, resultsView_); }

private:
    void* FindInterface(REFIID id) noexcept override;
    static HRESULT Share(IDispatch** out, IDispatch& view) noexcept;

    clsSetup_ISetup setup_{*this};
    clsSetup_IMeasure measure_{*this};
    clsSetup_IDriver driver_{*this};
    clsSetup_ICheckHardware check_{*this};
    clsSetup_IResults results_{*this};

    com::View<clsSetup_ISetup> setupView_{*this};
    com::View<clsSetup_IMeasure> measureView_{*this};
    com::View<clsSetup_IDriver> driverView_{*this};
    com::View<clsSetup_ICheckHardware> checkView_{*this};
    com::View<clsSetup_IResults> resultsView_{*this};
};

}  // namespace tvn2x
