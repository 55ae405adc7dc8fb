#pragma once

#include <windows.h>

#include <oaidl.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "com/Claim.h"
#include "com/ClassesKey.h"
#include "com/EntryFile.h"

namespace tvn2x::com {

/// One type library that is embedded in this module, and its interfaces, as the registry knows them. Failures throw.
///
/// Of its resources the first may be the module's own library, which it then always serves. All others are other
/// people's, which the module needs for its own work: it serves them only as long as nobody else does. Under the key of
/// the platform, which holds the path of the file that serves the library, each module that needs it leaves a value
/// named by its own path; when the one that serves the library goes, another one takes its place.
///
/// Only the library's key is common to programs of 32 and 64 bits; within it each has a platform key of its own, and
/// each has interface keys of its own. They go with the last module of that word length.
class LibraryRegistration
{
public:
    /// `resource` counts from 1; `own` is the module's claim on the first.
    LibraryRegistration(ClassesKey& classes, int resource, ITypeLib* library, Claim own);

    /// `replaced` are files whose place this module takes: what they serve is nobody's.
    void Add(const std::vector<EntryFile>& replaced);
    /// Takes back what Add wrote where it still belongs to this module, or to nobody.
    void Remove();

private:
    bool IsFree(const std::wstring& path, const std::vector<EntryFile>& replaced) const;
    bool IsServedByAnother(const std::wstring& interfaceKey, const std::vector<EntryFile>& replaced) const;
    void ForgetNeeds(const std::vector<EntryFile>& replaced);
    std::optional<std::wstring> Heir() const;
    bool IsThisLibrary(const std::wstring& path) const;
    void Serve(const std::wstring& path);
    void AddInterface(const std::wstring& key, const std::wstring& name);
    void RemoveInterfaces();
    void RemoveUnneededKeys();

    ClassesKey& classes_;
    const EntryFile module_;
    GUID libraryId_ = GUID_NULL;
    std::wstring id_;       ///< of the library, as text
    std::wstring version_;  ///< as in the registry: two hexadecimal numbers
    std::wstring path_;     ///< of this module's copy of the library
    std::wstring description_;
    std::wstring key_;
    std::wstring platformKey_;
    std::wstring otherPlatformKey_;
    bool own_;
    std::vector<std::pair<std::wstring, std::wstring>> interfaces_;  ///< key and name of each
};

}  // namespace tvn2x::com
