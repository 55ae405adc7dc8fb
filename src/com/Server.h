#pragma once

#include <windows.h>

#include <unknwn.h>

#include <span>

#include "com/Claim.h"
#include "com/ClassesKey.h"

namespace tvn2x::com {

/// A creatable class of a component server.
struct ServedClass
{
    const CLSID& id;
    const wchar_t* name;         ///< "TVN2x.clsSetup"
    const wchar_t* description;  ///< what the registry shows
    /// Makes an object and answers `interfaceId` of it. May throw.
    HRESULT (*create)(REFIID interfaceId, void** out);
    /// Classes ifVacant belong together: the module has all of them, or none.
    Claim claim = Claim::own;
};

/// What a component server's exports do, over its table of classes and its first embedded type library.
class Server
{
public:
    /// `libraryClaim` is that on the type library.
    Server(std::span<const ServedClass> classes, REFGUID typeLibrary, Claim libraryClaim = Claim::own)
        : classes_(classes), typeLibrary_(typeLibrary), libraryClaim_(libraryClaim)
    {
    }

    HRESULT ClassObject(REFCLSID classId, REFIID interfaceId, void** out) const noexcept;
    /// A registration that fails half-way is taken back: what was there before stays.
    HRESULT Register(RegisteredFor whom = RegisteredFor::machine) const noexcept;
    /// Takes back what belongs to this module alone; the other libraries that it needed go to whoever needs them, too.
    HRESULT Unregister(RegisteredFor whom = RegisteredFor::machine) const noexcept;
    /// What DllInstall does: `words` "user" for the present user, nothing (or null) for the machine; E_INVALIDARG for
    /// anything else.
    HRESULT Install(bool isInstalled, const wchar_t* words) const noexcept;

private:
    std::span<const ServedClass> classes_;
    const GUID& typeLibrary_;
    const Claim libraryClaim_;
};

/// The usual `create` of a class: a new Class, its `interfaceId` answered.
template <class Class>
HRESULT Create(REFIID interfaceId, void** out)
{
    Class* object = new Class;
    object->AddRef();
    const HRESULT result = object->QueryInterface(interfaceId, out);
    object->Release();
    return result;
}

}  // namespace tvn2x::com
