#include "plugin/clsSetup_IMeasure.h"

#include "plugin/clsSetup.h"

namespace tvn2x {

HRESULT clsSetup_IMeasure::get_Abort(VARIANT_BOOL* value) noexcept
{
    return Get(value, [] { return false; });
}

HRESULT clsSetup_IMeasure::put_Abort(VARIANT_BOOL) noexcept
{
    // A running measurement learns of a stop through the run-control object alone.
    return S_OK;
}

HRESULT clsSetup_IMeasure::GetConfiguration() noexcept
{
    const com::ComPtr<IMeasure> alive(this);
    return Do([&] { owner_.core.GetConfiguration(); });
}

HRESULT clsSetup_IMeasure::Measure(LONG lIndex, VARIANT, VARIANT_BOOL* result) noexcept
{
    // The host may let go of the object while its notices are being answered.
    const com::ComPtr<IMeasure> alive(this);
    return Get(result, [&] { return owner_.core.Measure(lIndex); });
}

HRESULT clsSetup_IMeasure::get_Measured(LONG lngIndex, VARIANT_BOOL* value) noexcept
{
    return Get(value, [&] { return owner_.core.results.Measured(lngIndex); });
}

HRESULT clsSetup_IMeasure::get_Notes(BSTR* value) noexcept
{
    return Get(value, [&]() -> std::wstring_view { return owner_.core.document.measurementNotes; });
}

HRESULT clsSetup_IMeasure::put_Notes(BSTR vNewValue) noexcept
{
    return Do([&] { owner_.core.document.measurementNotes = com::ViewOf(vNewValue); });
}

HRESULT clsSetup_IMeasure::putref_Parent(IDispatch* objNewValue) noexcept
{
    return Do([&] { owner_.core.Parent(objNewValue); });
}

HRESULT clsSetup_IMeasure::ResetMeasurement(LONG lngItem) noexcept
{
    return Do([&] { owner_.core.ResetMeasurement(lngItem); });
}

HRESULT clsSetup_IMeasure::get_Result(LONG udtField, SHORT intType, LONG lngIndex, BSTR* value) noexcept
{
    return Get(value, [&] { return owner_.core.results.Result(udtField, intType, lngIndex); });
}

HRESULT clsSetup_IMeasure::Save(BSTR sFullPath, VARIANT_BOOL* result) noexcept
{
    // The host may let go of the object while the user reads why the file could not be written.
    const com::ComPtr<IMeasure> alive(this);
    return Get(result, [&] { return owner_.core.SaveResults(std::wstring(com::ViewOf(sFullPath))); });
}

HRESULT clsSetup_IMeasure::SetConfiguration() noexcept
{
    const com::ComPtr<IMeasure> alive(this);
    return Do([&] { owner_.core.SetConfiguration(); });
}

HRESULT clsSetup_IMeasure::get_ShowNotesAfter(VARIANT_BOOL* value) noexcept
{
    return Get(value, [&] { return owner_.core.document.measurementShowNotesAfter; });
}

HRESULT clsSetup_IMeasure::put_ShowNotesAfter(VARIANT_BOOL blnShowNotesAfter) noexcept
{
    return Do([&] { owner_.core.document.measurementShowNotesAfter = blnShowNotesAfter != VARIANT_FALSE; });
}

}  // namespace tvn2x
