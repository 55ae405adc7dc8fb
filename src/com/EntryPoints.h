#pragma once

#include "com/Module.h"
#include "com/Server.h"
#include "com/TypeLibrary.h"

namespace tvn2x::com {

/// What a component library does when it comes and goes. `threadEnds` forgets what the library keeps by thread, null
/// for one that keeps nothing so.
inline void LibraryEvent(HINSTANCE instance, DWORD reason, const void* processEnds, void (*threadEnds)())
{
    if (reason == DLL_PROCESS_ATTACH) {
        Module::Instance(instance);
        if (threadEnds == nullptr) {
            DisableThreadLibraryCalls(instance);
        }
    } else if (reason == DLL_THREAD_DETACH && threadEnds != nullptr) {
        threadEnds();
    } else if (reason == DLL_PROCESS_DETACH && processEnds == nullptr) {
        ForgetTypeInfo();
    }
}

}  // namespace tvn2x::com

/// The entry points that every component library has alike, for the file that has its com::Server; `threadEnds` as
/// LibraryEvent takes it.
#define TVN_COMPONENT_ENTRY_POINTS(server, threadEnds)                         \
    BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void* processEnds)   \
    {                                                                          \
        tvn2x::com::LibraryEvent(instance, reason, processEnds, threadEnds);   \
        return TRUE;                                                           \
    }                                                                          \
    STDAPI DllGetClassObject(REFCLSID classId, REFIID interfaceId, void** out) \
    {                                                                          \
        return (server).ClassObject(classId, interfaceId, out);                \
    }                                                                          \
    STDAPI DllCanUnloadNow()                                                   \
    {                                                                          \
        return tvn2x::com::Module::CanUnload() ? S_OK : S_FALSE;               \
    }                                                                          \
    STDAPI DllRegisterServer()                                                 \
    {                                                                          \
        return (server).Register();                                            \
    }                                                                          \
    STDAPI DllUnregisterServer()                                               \
    {                                                                          \
        return (server).Unregister();                                          \
    }                                                                          \
    STDAPI DllInstall(BOOL isInstalled, const wchar_t* words)                  \
    {                                                                          \
        return (server).Install(isInstalled != FALSE, words);                  \
    }
