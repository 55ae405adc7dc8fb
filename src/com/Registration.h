#pragma once

#include <windows.h>

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
/// classes and its own library from whatever file had them; removing takes what belongs to this module or to nobody.
class Registration
{
public:
    /// `typeLibrary` is the one that describes the classes.
    Registration(REFGUID typeLibrary, RegisteredFor whom);

    void Add(const ServedClass& served);
    void Remove(const ServedClass& served);
    /// After the classes, which tell whose place this module takes.
    void AddTypeLibraries();
    void RemoveTypeLibraries();
    void Keep() { classes_.Keep(); }

private:
    ClassesKey classes_;
    const std::wstring moduleName_;
    const EntryFile module_;
    const std::wstring library_;       ///< the type library's identity as text
    std::vector<EntryFile> replaced_;  ///< files that had a class before
};

}  // namespace tvn2x::com
