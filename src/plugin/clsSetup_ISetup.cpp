#include "plugin/clsSetup_ISetup.h"

#include "plugin/clsSetup.h"

namespace tvn2x {
namespace {

std::wstring Text(BSTR text)
{
    return std::wstring(com::ViewOf(text));
}

/// The text of an optional path: "" where it is left out.
std::wstring OptionalPath(const VARIANT& path)
{
    if (path.vt == VT_EMPTY || path.vt == VT_NULL || com::IsLeftOut(path)) {
        return {};
    }
    VARIANT text;
    VariantInit(&text);
    const HRESULT result = VariantChangeType(&text, const_cast<VARIANT*>(&path), 0, VT_BSTR);
    if (FAILED(result)) {
        throw RaisedError(error::typeMismatch, L"clsSetup.Save", L"The path is not a text");
    }
    const com::Bstr held = com::Bstr::Attach(text.bstrVal);
    return std::wstring(held.View());
}

}  // namespace

SetupDocument& clsSetup_ISetup::Document() const
{
    return owner_.core.document;
}

HRESULT clsSetup_ISetup::get_AppVersion(VARIANT* value) noexcept
{
    return Get(value, [&]() -> std::wstring_view { return Document().appVersion; });
}

HRESULT clsSetup_ISetup::get_ProductName(VARIANT* value) noexcept
{
    return Get(value, [&]() -> std::wstring_view { return Document().productName; });
}

HRESULT clsSetup_ISetup::get_Dirty(VARIANT_BOOL* value) noexcept
{
    return Get(value, [&] { return Document().dirty; });
}

HRESULT clsSetup_ISetup::IsBackup(VARIANT_BOOL* result) noexcept
{
    return Get(result, [&] { return Document().isBackup; });
}

HRESULT clsSetup_ISetup::ClearBackupFlag() noexcept
{
    return Do([&] { Document().isBackup = false; });
}

HRESULT clsSetup_ISetup::get_Mode(LONG* value) noexcept
{
    return Get(value, [&] { return Document().mode; });
}

HRESULT clsSetup_ISetup::put_Mode(LONG value) noexcept
{
    return Do([&] { Document().mode = value; });
}

HRESULT clsSetup_ISetup::get_Last(SHORT* value) noexcept
{
    return Get(value, [] { return int16_t{MP_LAST}; });
}

HRESULT clsSetup_ISetup::get_LastFixed(SHORT* value) noexcept
{
    return Get(value, [] { return int16_t{MP_LASTFIXED}; });
}

HRESULT clsSetup_ISetup::get_LastStatic(SHORT* value) noexcept
{
    return Get(value, [] { return int16_t{MP_LASTSTATIC}; });
}

HRESULT clsSetup_ISetup::ClearFilename() noexcept
{
    return Do([&] { Document().fullPath.clear(); });
}

HRESULT clsSetup_ISetup::get_FilePath(BSTR* value) noexcept
{
    return Get(value, [&] { return owner_.core.FilePath(); });
}

HRESULT clsSetup_ISetup::get_FileTitle(BSTR* value) noexcept
{
    return Get(value, [&] { return Document().FileTitle(); });
}

HRESULT clsSetup_ISetup::get_FullPath(BSTR* value) noexcept
{
    return Get(value, [&]() -> std::wstring_view { return Document().fullPath; });
}

HRESULT clsSetup_ISetup::Load(BSTR sProductName, BSTR sFullPath, BSTR* strModel, LONG* udtMode,
                              VARIANT_BOOL* result) noexcept
{
    if (!strModel || !udtMode) {
        return com::Refuse(E_POINTER);
    }
    return Get(result, [&] {
        std::wstring model = Text(*strModel);
        auto mode = static_cast<int32_t>(*udtMode);
        const bool loaded = owner_.core.Load(Text(sProductName), Text(sFullPath), model, mode);
        com::Bstr answer(model);
        SysFreeString(*strModel);
        *strModel = answer.Detach();
        *udtMode = mode;
        return loaded;
    });
}

HRESULT clsSetup_ISetup::Save(BSTR sProductName, BSTR sAppVersion, VARIANT sFullPath, VARIANT_BOOL* result) noexcept
{
    return Get(result,
               [&] { return owner_.core.Save(Text(sProductName), Text(sAppVersion), OptionalPath(sFullPath)); });
}

HRESULT clsSetup_ISetup::Backup(BSTR sProductName, BSTR sAppVersion, BSTR sFullPath, VARIANT_BOOL* result) noexcept
{
    return Get(result, [&] { return owner_.core.Backup(Text(sProductName), Text(sAppVersion), Text(sFullPath)); });
}

HRESULT clsSetup_ISetup::Edit(VARIANT_BOOL* result) noexcept
{
    // The host may let go of the object while the dialog is open.
    const com::ComPtr<ISetup> alive(this);
    return Get(result, [&] { return owner_.core.Edit(); });
}

HRESULT clsSetup_ISetup::get_Caption(LONG eType, BSTR* value) noexcept
{
    return Get(value, [&] { return Document().Caption(eType); });
}

HRESULT clsSetup_ISetup::put_Caption(LONG eType, BSTR value) noexcept
{
    return Do([&] { Document().Caption(eType, Text(value)); });
}

HRESULT clsSetup_ISetup::get_Count(LONG* value) noexcept
{
    return Get(value, [&] { return Document().Count(); });
}

HRESULT clsSetup_ISetup::put_Count(LONG value) noexcept
{
    return Do([&] { Document().Count(value); });
}

HRESULT clsSetup_ISetup::get_ListSize(LONG* value) noexcept
{
    return Get(value, [&] { return Document().ListSize(); });
}

HRESULT clsSetup_ISetup::put_ListSize(LONG value) noexcept
{
    return Do([&] { Document().ListSize(value); });
}

HRESULT clsSetup_ISetup::get_Notes(BSTR* value) noexcept
{
    return Get(value, [&] { return Document().Notes(); });
}

HRESULT clsSetup_ISetup::put_Notes(BSTR value) noexcept
{
    return Do([&] { Document().Notes(Text(value)); });
}

HRESULT clsSetup_ISetup::get_Order(LONG eType, SHORT* value) noexcept
{
    return Get(value, [&] { return Document().Order(eType); });
}

HRESULT clsSetup_ISetup::put_Order(LONG eType, SHORT value) noexcept
{
    return Do([&] { Document().Order(eType, value); });
}

HRESULT clsSetup_ISetup::get_Parameter(LONG eAction, LONG eType, VARIANT_BOOL* value) noexcept
{
    return Get(value, [&] { return Document().Parameter(eAction, eType); });
}

HRESULT clsSetup_ISetup::put_Parameter(LONG eAction, LONG eType, VARIANT_BOOL value) noexcept
{
    return Do([&] { Document().Parameter(eAction, eType, value != VARIANT_FALSE); });
}

HRESULT clsSetup_ISetup::get_ShowNotesAfter(VARIANT_BOOL* value) noexcept
{
    return Get(value, [&] { return Document().ShowNotesAfter(); });
}

HRESULT clsSetup_ISetup::put_ShowNotesAfter(VARIANT_BOOL value) noexcept
{
    return Do([&] { Document().ShowNotesAfter(value != VARIANT_FALSE); });
}

HRESULT clsSetup_ISetup::get_ShowNotesBefore(VARIANT_BOOL* value) noexcept
{
    return Get(value, [&] { return Document().ShowNotesBefore(); });
}

HRESULT clsSetup_ISetup::put_ShowNotesBefore(VARIANT_BOOL value) noexcept
{
    return Do([&] { Document().ShowNotesBefore(value != VARIANT_FALSE); });
}

HRESULT clsSetup_ISetup::get_XAxis(LONG eDest, LONG* value) noexcept
{
    return Get(value, [&] { return Document().XAxis(eDest); });
}

HRESULT clsSetup_ISetup::put_XAxis(LONG eDest, LONG value) noexcept
{
    return Do([&] { Document().XAxis(eDest, value); });
}

}  // namespace tvn2x
