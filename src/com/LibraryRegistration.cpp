#include "com/LibraryRegistration.h"

#include <oleauto.h>

#include <algorithm>

#include "com/ComPtr.h"
#include "com/Errors.h"
#include "com/Module.h"
#include "com/Text.h"
#include "com/TypeLibrary.h"

namespace tvn2x::com {
namespace {

constexpr const wchar_t* platform = sizeof(void*) == 8 ? L"win64" : L"win32";
constexpr const wchar_t* otherPlatform = sizeof(void*) == 8 ? L"win32" : L"win64";
// The system's own marshaller for interfaces that a type library describes.
constexpr wchar_t automationMarshaller[] = L"{00020424-0000-0000-C000-000000000046}";

/// Which type library it is, and its version as keys are named.
struct LibraryIdentity
{
    GUID id = GUID_NULL;
    std::wstring version;
};

LibraryIdentity IdentityOf(ITypeLib* library)
{
    TLIBATTR* attributes = nullptr;
    Check(library->GetLibAttr(&attributes), library);
    wchar_t version[16];
    swprintf(version, std::size(version), L"%x.%x", attributes->wMajorVerNum, attributes->wMinorVerNum);
    LibraryIdentity identity{attributes->guid, version};
    library->ReleaseTLibAttr(attributes);
    return identity;
}

std::wstring NameOf(ITypeInfo* info)
{
    Bstr name;
    Check(info->GetDocumentation(MEMBERID_NIL, name.Put(), nullptr, nullptr, nullptr), info);
    return std::wstring(name.View());
}

/// The key and the name of each interface that the library defines.
std::vector<std::pair<std::wstring, std::wstring>> InterfacesOf(ITypeLib* library)
{
    std::vector<std::pair<std::wstring, std::wstring>> interfaces;
    for (UINT i = 0, count = library->GetTypeInfoCount(); i < count; ++i) {
        ComPtr<ITypeInfo> info;
        TYPEATTR* attributes = nullptr;
        Check(library->GetTypeInfo(i, info.Put()), library);
        Check(info->GetTypeAttr(&attributes), info.Get());
        const bool isInterface = attributes->typekind == TKIND_DISPATCH || attributes->typekind == TKIND_INTERFACE;
        const GUID id = attributes->guid;
        info->ReleaseTypeAttr(attributes);
        if (isInterface) {
            interfaces.emplace_back(L"Interface\\" + TextOf(id), NameOf(info.Get()));
        }
    }
    return interfaces;
}

}  // namespace

LibraryRegistration::LibraryRegistration(ClassesKey& classes, int resource, ITypeLib* library, Claim own)
    : classes_(classes),
      module_(Module::FileName()),
      own_(resource == 1 && own == Claim::own),
      interfaces_(InterfacesOf(library))
{
    const LibraryIdentity identity = IdentityOf(library);
    Bstr description;
    Check(library->GetDocumentation(-1, nullptr, description.Put(), nullptr, nullptr), library);
    description_ = description.View();
    libraryId_ = identity.id;
    id_ = TextOf(libraryId_);
    version_ = identity.version;
    path_ = Module::FileName();
    if (resource != 1) {
        path_ += L"\\" + std::to_wstring(resource);
    }
    key_ = L"TypeLib\\" + id_ + L"\\" + version_;
    platformKey_ = key_ + L"\\0\\" + platform;
    otherPlatformKey_ = key_ + L"\\0\\" + otherPlatform;
}

void LibraryRegistration::Add(const std::vector<EntryFile>& replaced)
{
    ForgetNeeds(replaced);
    classes_.Write(platformKey_, path_.c_str(), L"");
    const auto serving = classes_.Read(platformKey_);
    if (own_ || !serving || IsFree(*serving, replaced)) {
        Serve(path_);
    }
    for (const auto& [key, name] : interfaces_) {
        if (own_ || !IsServedByAnother(key, replaced)) {
            AddInterface(key, name);
        }
    }
}

void LibraryRegistration::Remove()
{
    ForgetNeeds({});
    const auto serving = classes_.Read(platformKey_);
    if (serving && !IsFree(*serving, {})) {
        return;
    }
    if (const auto heir = Heir()) {
        return Serve(*heir);
    }
    RemoveInterfaces();
    classes_.RemoveTree(platformKey_);
    RemoveUnneededKeys();
}

bool LibraryRegistration::IsFree(const std::wstring& path, const std::vector<EntryFile>& replaced) const
{
    const EntryFile file(path);
    return file.Is(module_) || file.IsGone() ||
           std::any_of(replaced.begin(), replaced.end(), [&](const EntryFile& other) { return file.Is(other); });
}

bool LibraryRegistration::IsServedByAnother(const std::wstring& interfaceKey,
                                            const std::vector<EntryFile>& replaced) const
{
    const auto library = classes_.Read(interfaceKey + L"\\TypeLib");
    if (!library) {
        return classes_.Read(interfaceKey + L"\\ProxyStubClsid32").has_value();
    }
    const auto version = classes_.Read(interfaceKey + L"\\TypeLib", L"Version").value_or(version_);
    const auto path = classes_.Read(L"TypeLib\\" + *library + L"\\" + version + L"\\0\\" + platform);
    return path && !IsFree(*path, replaced);
}

/// Of this module, of those that it replaces and of files that are gone.
void LibraryRegistration::ForgetNeeds(const std::vector<EntryFile>& replaced)
{
    for (const std::wstring& path : classes_.ValueNames(platformKey_)) {
        if (IsFree(path, replaced)) {
            classes_.RemoveValue(platformKey_, path);
        }
    }
}

/// Another module's copy of the library, where one still needs it.
std::optional<std::wstring> LibraryRegistration::Heir() const
{
    for (const std::wstring& path : classes_.ValueNames(platformKey_)) {
        if (IsThisLibrary(path)) {
            return path;
        }
    }
    return std::nullopt;
}

bool LibraryRegistration::IsThisLibrary(const std::wstring& path) const
{
    ComPtr<ITypeLib> library;
    return SUCCEEDED(LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.Put())) &&
           IdentityOf(library.Get()).id == libraryId_;
}

void LibraryRegistration::Serve(const std::wstring& path)
{
    classes_.Write(key_, nullptr, description_);
    classes_.Write(platformKey_, nullptr, path);
    classes_.Write(key_ + L"\\FLAGS", nullptr, L"0");
    classes_.Write(key_ + L"\\HELPDIR", nullptr, EntryFile(path).Folder());
}

void LibraryRegistration::AddInterface(const std::wstring& key, const std::wstring& name)
{
    classes_.Write(key, nullptr, name);
    classes_.Write(key + L"\\ProxyStubClsid32", nullptr, automationMarshaller);
    classes_.Write(key + L"\\TypeLib", nullptr, id_);
    classes_.Write(key + L"\\TypeLib", L"Version", version_);
}

void LibraryRegistration::RemoveInterfaces()
{
    for (const auto& [key, name] : interfaces_) {
        if (classes_.Read(key + L"\\TypeLib") == id_) {
            classes_.RemoveTree(key);
        }
    }
}

/// The library's keys outlive this word length's part as long as the other one's is somebody's.
void LibraryRegistration::RemoveUnneededKeys()
{
    if (const auto other = classes_.Read(otherPlatformKey_); other && !EntryFile(*other).IsGone()) {
        return classes_.Write(key_ + L"\\HELPDIR", nullptr, EntryFile(*other).Folder());
    }
    classes_.RemoveTree(otherPlatformKey_);
    if (!classes_.HasSubkeys(key_ + L"\\0")) {
        classes_.RemoveTree(key_);
    }
    const std::wstring libraryKey = L"TypeLib\\" + id_;
    if (!classes_.HasSubkeys(libraryKey)) {
        classes_.RemoveTree(libraryKey);
    }
}

}  // namespace tvn2x::com
