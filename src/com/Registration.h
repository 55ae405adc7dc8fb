#pragma once

#include <windows.h>

#include <functional>
#include <string>

#include "com/Server.h"

namespace tvn2x::com {

/// What this module writes below the machine's classes in the registry, and removes again. Failures throw.
///
/// The module's type library (resource 1) describes interfaces of its own and repeats those of the libraries that it
/// refers to (resources 2, 3, ...). Only the former are registered: the others belong to whoever ships their library,
/// and must outlive this module's registration.
class Registration
{
public:
    explicit Registration(REFGUID typeLibrary);
    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;
    ~Registration();

    void Add(const ServedClass& served) const;
    void Remove(const ServedClass& served) const;
    void AddTypeLibrary() const;
    void RemoveTypeLibrary() const;

private:
    void Write(const std::wstring& key, const wchar_t* name, const std::wstring& value) const;
    void RemoveTree(const std::wstring& key) const;
    bool HasSubkeys(const std::wstring& key) const;
    static void ForOwnInterfaces(const std::function<void(const std::wstring& id, const std::wstring& name)>& visit);

    HKEY root_ = nullptr;
    std::wstring module_;
    std::wstring library_;  ///< the type library's identity as text
};

}  // namespace tvn2x::com
