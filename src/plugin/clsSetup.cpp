#include "plugin/clsSetup.h"

namespace tvn2x {

HRESULT clsSetup::get_BerSamples(LONG* value) noexcept
{
    return Get(value, [&] { return core.document.BerSamples(); });
}

HRESULT clsSetup::put_BerSamples(LONG value) noexcept
{
    return Do([&] { core.document.BerSamples(value); });
}

HRESULT clsSetup::get_Caption(::MP_TYPES eType, BSTR* value) noexcept
{
    return Get(value, [&] { return core.document.Caption(eType); });
}

HRESULT clsSetup::put_Caption(::MP_TYPES eType, BSTR value) noexcept
{
    return Do([&] { core.document.Caption(eType, std::wstring(com::ViewOf(value))); });
}

HRESULT clsSetup::get_Count(LONG* value) noexcept
{
    return Get(value, [&] { return core.document.Count(); });
}

HRESULT clsSetup::put_Count(LONG value) noexcept
{
    return Do([&] { core.document.Count(value); });
}

HRESULT clsSetup::get_DefaultSymbolRate(DOUBLE* value) noexcept
{
    return Get(value, [&] { return core.document.DefaultSymbolRate(); });
}

HRESULT clsSetup::put_DefaultSymbolRate(DOUBLE value) noexcept
{
    return Do([&] { core.document.DefaultSymbolRate(value); });
}

HRESULT clsSetup::get_Frequency(LONG lIndex, DOUBLE* value) noexcept
{
    return Get(value, [&] { return core.document.Frequency(lIndex); });
}

HRESULT clsSetup::put_Frequency(LONG lIndex, DOUBLE value) noexcept
{
    return Do([&] { core.document.Frequency(lIndex, value); });
}

HRESULT clsSetup::get_ListSize(LONG* value) noexcept
{
    return Get(value, [&] { return core.document.ListSize(); });
}

HRESULT clsSetup::put_ListSize(LONG value) noexcept
{
    return Do([&] { core.document.ListSize(value); });
}

HRESULT clsSetup::get_MaxSettlingTime(LONG* value) noexcept
{
    return Get(value, [&] { return core.document.MaxSettlingTime(); });
}

HRESULT clsSetup::put_MaxSettlingTime(LONG value) noexcept
{
    return Do([&] { core.document.MaxSettlingTime(value); });
}

HRESULT clsSetup::get_Notes(BSTR* value) noexcept
{
    return Get(value, [&] { return core.document.Notes(); });
}

HRESULT clsSetup::put_Notes(BSTR value) noexcept
{
    return Do([&] { core.document.Notes(std::wstring(com::ViewOf(value))); });
}

HRESULT clsSetup::get_Order(::MP_TYPES eType, SHORT* value) noexcept
{
    return Get(value, [&] { return core.document.Order(eType); });
}

HRESULT clsSetup::put_Order(::MP_TYPES eType, SHORT value) noexcept
{
    return Do([&] { core.document.Order(eType, value); });
}

HRESULT clsSetup::get_OrderOfQam(LONG* value) noexcept
{
    return Get(value, [&] { return core.document.OrderOfQam(); });
}

HRESULT clsSetup::put_OrderOfQam(LONG value) noexcept
{
    return Do([&] { core.document.OrderOfQam(value); });
}

HRESULT clsSetup::get_Parameter(LONG eAction, ::MP_TYPES eType, VARIANT_BOOL* value) noexcept
{
    return Get(value, [&] { return core.document.Parameter(eAction, eType); });
}

HRESULT clsSetup::put_Parameter(LONG eAction, ::MP_TYPES eType, VARIANT_BOOL value) noexcept
{
    return Do([&] { core.document.Parameter(eAction, eType, value != VARIANT_FALSE); });
}

HRESULT clsSetup::get_LevelUnit(BSTR* value) noexcept
{
    return Get(value, [&] { return core.document.LevelUnit(); });
}

HRESULT clsSetup::put_LevelUnit(BSTR value) noexcept
{
    return Do([&] { core.document.LevelUnit(std::wstring(com::ViewOf(value))); });
}

HRESULT clsSetup::get_ReferenceSource(LONG* value) noexcept
{
    return Get(value, [&] { return core.document.ReferenceSource(); });
}

HRESULT clsSetup::put_ReferenceSource(LONG value) noexcept
{
    return Do([&] { core.document.ReferenceSource(value); });
}

HRESULT clsSetup::get_RollOffFactor(LONG* value) noexcept
{
    return Get(value, [&] { return core.document.RollOffFactor(); });
}

HRESULT clsSetup::put_RollOffFactor(LONG value) noexcept
{
    return Do([&] { core.document.RollOffFactor(value); });
}

HRESULT clsSetup::get_SawBw(LONG* value) noexcept
{
    return Get(value, [&] { return core.document.SawBw(); });
}

HRESULT clsSetup::put_SawBw(LONG value) noexcept
{
    return Do([&] { core.document.SawBw(value); });
}

HRESULT clsSetup::get_ShowNotesAfter(VARIANT_BOOL* value) noexcept
{
    return Get(value, [&] { return core.document.ShowNotesAfter(); });
}

HRESULT clsSetup::put_ShowNotesAfter(VARIANT_BOOL value) noexcept
{
    return Do([&] { core.document.ShowNotesAfter(value != VARIANT_FALSE); });
}

HRESULT clsSetup::get_ShowNotesBefore(VARIANT_BOOL* value) noexcept
{
    return Get(value, [&] { return core.document.ShowNotesBefore(); });
}

HRESULT clsSetup::put_ShowNotesBefore(VARIANT_BOOL value) noexcept
{
    return Do([&] { core.document.ShowNotesBefore(value != VARIANT_FALSE); });
}

HRESULT clsSetup::get_SymbolRate(LONG lIndex, DOUBLE* value) noexcept
{
    return Get(value, [&] { return core.document.SymbolRate(lIndex); });
}

HRESULT clsSetup::put_SymbolRate(LONG lIndex, DOUBLE value) noexcept
{
    return Do([&] { core.document.SymbolRate(lIndex, value); });
}

HRESULT clsSetup::get_UserField(LONG lIndex, BSTR* value) noexcept
{
    return Get(value, [&] { return core.document.UserField(lIndex); });
}

HRESULT clsSetup::put_UserField(LONG lIndex, BSTR value) noexcept
{
    return Do([&] { core.document.UserField(lIndex, std::wstring(com::ViewOf(value))); });
}

HRESULT clsSetup::get_XAxis(LONG eDest, LONG* value) noexcept
{
    return Get(value, [&] { return core.document.XAxis(eDest); });
}

HRESULT clsSetup::put_XAxis(LONG eDest, LONG value) noexcept
{
    return Do([&] { core.document.XAxis(eDest, value); });
}

HRESULT clsSetup::get_Zin(LONG* value) noexcept
{
    return Get(value, [&] { return core.document.Zin(); });
}

HRESULT clsSetup::put_Zin(LONG value) noexcept
{
    return Do([&] { core.document.Zin(value); });
}

HRESULT clsSetup::get_CoupleDisplayAndSave(VARIANT_BOOL* value) noexcept
{
    return Get(value, [&] { return core.document.CoupleDisplayAndSave(); });
}

HRESULT clsSetup::put_CoupleDisplayAndSave(VARIANT_BOOL value) noexcept
{
    return Do([&] { core.document.CoupleDisplayAndSave(value != VARIANT_FALSE); });
}

void* clsSetup::FindInterface(REFIID id) noexcept
{
    if (id == __uuidof(ISetup)) {
        return static_cast<ISetup*>(&setup_);
    }
    if (id == __uuidof(IMeasure)) {
        return static_cast<IMeasure*>(&measure_);
    }
    if (id == __uuidof(IDriver)) {
        return static_cast<IDriver*>(&driver_);
    }
    if (id == __uuidof(ICheckHardware)) {
        return static_cast<ICheckHardware*>(&check_);
    }
    if (id == __uuidof(IResults)) {
        return static_cast<IResults*>(&results_);
    }
    return nullptr;
}

HRESULT clsSetup::Share(IDispatch** out, IDispatch& view) noexcept
{
    return Get(out, [&] { return com::ComPtr<IDispatch>(&view).Detach(); });
}

}  // namespace tvn2x
