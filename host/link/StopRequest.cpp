#include "host/link/StopRequest.h"

#include <cguid.h>
#include <objbase.h>

#include <atomic>

#include "host/link/Plugin.h"

namespace tvn2x {
namespace {

std::atomic<bool> isRequested;
std::atomic<DWORD> sharedRunControl;  ///< its cookie in the global interface table, 0 for none

com::ComPtr<IGlobalInterfaceTable> GlobalInterfaceTable()
{
    com::ComPtr<IGlobalInterfaceTable> table;
    CoCreateInstance(CLSID_StdGlobalInterfaceTable, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IGlobalInterfaceTable),
                     reinterpret_cast<void**>(table.Put()));
    return table;
}

/// The class that takes the object into another apartment, CLSID_NULL where that is the system's own business.
CLSID UnmarshalClass(const com::ComPtr<IMarshal>& marshal)
{
    CLSID result = CLSID_NULL;
    if (marshal) {
        marshal->GetUnmarshalClass(__uuidof(IRunControl), nullptr, MSHCTX_INPROC, nullptr, MSHLFLAGS_NORMAL, &result);
    }
    return result;
}

/// Whether every thread calls the object directly, which the system's free-threaded marshaler stands for. A call that
/// has to be carried to the object's own thread would wait for that thread, and with it the process's whole handling
/// of Ctrl+C.
bool IsFreeThreaded(const com::ComPtr<IRunControl>& runControl)
{
    com::ComPtr<IUnknown> freeThreaded;
    CoCreateFreeThreadedMarshaler(nullptr, freeThreaded.Put());
    const CLSID direct = UnmarshalClass(freeThreaded.As<IMarshal>());
    return direct != CLSID_NULL && UnmarshalClass(runControl.As<IMarshal>()) == direct;
}

void SetSharedStopFlag()
{
    const DWORD cookie = sharedRunControl;
    if (cookie == 0 || FAILED(CoInitializeEx(nullptr, COINIT_MULTITHREADED))) {
        return;
    }
    {
        const auto table = GlobalInterfaceTable();
        com::ComPtr<IRunControl> runControl;
        if (table && SUCCEEDED(table->GetInterfaceFromGlobal(cookie, __uuidof(IRunControl),
                                                             reinterpret_cast<void**>(runControl.Put())))) {
            runControl->put_StopFlag(VARIANT_TRUE);
        }
    }
    CoUninitialize();
}

BOOL WINAPI OnControl(DWORD event)
{
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) {
        return FALSE;
    }
    // Known as asked for before the flag ends the running channel: so the scan takes its end for a stop.
    if (isRequested.exchange(true)) {
        return FALSE;
    }
    SetSharedStopFlag();
    return TRUE;
}

}  // namespace

StopRequest::StopRequest(com::ComPtr<IRunControl> runControl) : runControl_(std::move(runControl))
{
    Call(runControl_, &IRunControl::put_StopFlag, VARIANT_FALSE);
    isRequested = false;
    Share();
    SetConsoleCtrlHandler(OnControl, TRUE);
}

StopRequest::~StopRequest()
{
    SetConsoleCtrlHandler(OnControl, FALSE);
    if (const DWORD cookie = sharedRunControl.exchange(0)) {
        table_->RevokeInterfaceFromGlobal(cookie);
    }
    runControl_->put_StopFlag(VARIANT_FALSE);
}

/// Without success the stop waits for the next notice.
void StopRequest::Share()
{
    table_ = GlobalInterfaceTable();
    DWORD cookie = 0;
    if (table_ && IsFreeThreaded(runControl_) &&
        SUCCEEDED(table_->RegisterInterfaceInGlobal(runControl_.Get(), __uuidof(IRunControl), &cookie))) {
        sharedRunControl = cookie;
    }
}

bool StopRequest::Poll()
{
    if (!isSet_ && isRequested) {
        Call(runControl_, &IRunControl::put_StopFlag, VARIANT_TRUE);
        isSet_ = true;
    }
    return isSet_;
}

}  // namespace tvn2x
