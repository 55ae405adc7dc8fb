#pragma once

#include "com/Module.h"
#include "com/Server.h"

/// The entry points that every component library has alike, for the file that has its com::Server. What its DllMain
/// does is the library's own.
#define TVN_COMPONENT_ENTRY_POINTS(server)                                     \
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
