#pragma once

#include <windows.h>

#include "TVNINT.h"
#include "com/Object.h"
#include "setup/SetupDocument.h"

namespace tvn2x {

class clsSetup;

/// ISetup of clsSetup: the setup document as the host sees it.
class clsSetup_ISetup : public com::Member<ISetup, clsSetup>
{
public:
    using Member::Member;

    HRESULT STDMETHODCALLTYPE get_AppVersion(VARIANT* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ProductName(VARIANT* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Dirty(VARIANT_BOOL* value) noexcept override;
    HRESULT STDMETHODCALLTYPE IsBackup(VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE ClearBackupFlag() noexcept override;
    HRESULT STDMETHODCALLTYPE get_Mode(LONG* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Mode(LONG value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Last(SHORT* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_LastFixed(SHORT* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_LastStatic(SHORT* value) noexcept override;

    HRESULT STDMETHODCALLTYPE ClearFilename() noexcept override;
    HRESULT STDMETHODCALLTYPE get_FilePath(BSTR* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_FileTitle(BSTR* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_FullPath(BSTR* value) noexcept override;
    HRESULT STDMETHODCALLTYPE Load(BSTR sProductName, BSTR sFullPath, BSTR* strModel, LONG* udtMode,
                                   VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE Save(BSTR sProductName, BSTR sAppVersion, VARIANT sFullPath,
                                   VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE Backup(BSTR sProductName, BSTR sAppVersion, BSTR sFullPath,
                                     VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE Edit(VARIANT_BOOL* result) noexcept override;

    HRESULT STDMETHODCALLTYPE get_Caption(LONG eType, BSTR* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Caption(LONG eType, BSTR value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Count(LONG* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Count(LONG value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ListSize(LONG* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_ListSize(LONG value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Notes(BSTR* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Notes(BSTR value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Order(LONG eType, SHORT* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Order(LONG eType, SHORT value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Parameter(LONG eAction, LONG eType, VARIANT_BOOL* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Parameter(LONG eAction, LONG eType, VARIANT_BOOL value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ShowNotesAfter(VARIANT_BOOL* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_ShowNotesAfter(VARIANT_BOOL value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ShowNotesBefore(VARIANT_BOOL* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_ShowNotesBefore(VARIANT_BOOL value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_XAxis(LONG eDest, LONG* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_XAxis(LONG eDest, LONG value) noexcept override;

private:
    SetupDocument& Document() const;
};

}  // namespace tvn2x
