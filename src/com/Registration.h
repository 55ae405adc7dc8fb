#pragma once

#include <windows.h>

#include <span>
#include <string>
#include <vector>

#include "com/ClassesKey.h"
#include "com/EntryFile.h"
#include "com/Server.h"

namespace tvn2x::com {

/// What this module writes below the machine's or the user's classes in the registry, and takes back again. Failures
/// throw; without Keep nothing of it stays.
///
/// An entry belongs to the file that its path names, one whose file is gone to nobody. Adding takes over the module's
/// own classes and its own library from whatever file had them, and what it has only where that is vacant from nobody
/// but an earlier copy of the module; removing takes what belongs to this module or to nobody.
class Registration
{
public:
    /// `typeLibrary` is the one that describes the classes.
    Registration(REFGUID typeLibrary, RegisteredFor whom);

    void Add(std::span<const ServedClass> classes);
    void Remove(const ServedClass& served);
    /// After the classes, which tell whose place this module takes.
    void AddTypeLibraries(Claim own);
    void RemoveTypeLibraries(Claim own);
    void Keep() { classes_.Keep(); }

private:
    void Take(const ServedClass& served);
    bool IsVacant(const ServedClass& served, const std::vector<EntryFile>& copies) const;

    ClassesKey classes_;
    const RegisteredFor whom_;
    const std::wstring moduleName_;
    const EntryFile module_;
    const std::wstring library_;       ///< the type library's identity as text
    std::vector<EntryFile> replaced_;  ///< files that had a class before
};

}  // namespace tvn2x::com
