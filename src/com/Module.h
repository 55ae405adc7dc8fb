#pragma once

#include <windows.h>

#include <string>

namespace tvn2x::com {

/// The library that this code is linked into: its handle, and what still needs it.
class Module
{
public:
    static void Instance(HINSTANCE instance);
    static HINSTANCE Instance();
    static std::wstring FileName();
    static std::wstring Folder();  ///< without a trailing backslash, except for a drive's root

    /// One lock for every living object and every lock of a class factory.
    static void Lock();
    static void Unlock();
    static bool CanUnload();
};

/// Holds the module while it lives; a member of every COM object.
class ModuleLock
{
public:
    ModuleLock() { Module::Lock(); }
    ModuleLock(const ModuleLock&) = delete;
    ModuleLock& operator=(const ModuleLock&) = delete;
    ~ModuleLock() { Module::Unlock(); }
};

}  // namespace tvn2x::com
