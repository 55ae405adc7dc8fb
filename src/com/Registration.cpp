#include "com/Registration.h"

#include <oleauto.h>

#include "com/ComPtr.h"
#include "com/Errors.h"
#include "com/Module.h"
#include "com/Text.h"

namespace tvn2x::com {
namespace {

constexpr wchar_t version[] = L"1.0";
constexpr const wchar_t* platform = sizeof(void*) == 8 ? L"win64" : L"win32";
// The system's own marshaller for interfaces that a type library describes.
constexpr wchar_t automationMarshaller[] = L"{00020424-0000-0000-C000-000000000046}";

void CheckStatus(LSTATUS status)
{
    if (status != ERROR_SUCCESS)
        ThrowFailure(HRESULT_FROM_WIN32(static_cast<DWORD>(status)), nullptr, IID_NULL);
}

std::wstring TextOf(REFGUID id)
{
    wchar_t text[40];
    StringFromGUID2(id, text, 40);
    return text;
}

ComPtr<ITypeLib> EmbeddedLibrary(int resource)
{
    ComPtr<ITypeLib> library;
    LoadTypeLibEx((Module::FileName() + L"\\" + std::to_wstring(resource)).c_str(), REGKIND_NONE, library.Put());
    return library;
}

std::wstring NameOf(ITypeInfo* info)
{
    Bstr name;
    info->GetDocumentation(MEMBERID_NIL, name.Put(), nullptr, nullptr, nullptr);
    return std::wstring(name.View());
}

bool DescribedByAnotherLibrary(REFGUID id)
{
    for (int resource = 2;; ++resource) {
        const auto library = EmbeddedLibrary(resource);
        ComPtr<ITypeInfo> info;
        if (!library)
            return false;
        if (SUCCEEDED(library->GetTypeInfoOfGuid(id, info.Put())))
            return true;
    }
}

}  // namespace

Registration::Registration(REFGUID typeLibrary) : module_(Module::FileName()), library_(TextOf(typeLibrary))
{
    CheckStatus(RegCreateKeyExW(HKEY_LOCAL_MACHINE, L"Software\\Classes", 0, nullptr, 0, KEY_READ | KEY_WRITE, nullptr,
                                &root_, nullptr));
}

Registration::~Registration()
{
    RegCloseKey(root_);
}

void Registration::Add(const ServedClass& served) const
{
    const std::wstring id = TextOf(served.id);
    const std::wstring key = L"CLSID\\" + id;
    Write(key, nullptr, served.description);
    Write(key + L"\\InprocServer32", nullptr, module_);
    Write(key + L"\\InprocServer32", L"ThreadingModel", L"Apartment");
    Write(key + L"\\ProgID", nullptr, served.name);
    Write(key + L"\\TypeLib", nullptr, library_);
    Write(key + L"\\Version", nullptr, version);
    Write(key + L"\\Programmable", nullptr, L"");
    Write(served.name, nullptr, served.description);
    Write(std::wstring(served.name) + L"\\CLSID", nullptr, id);
}

void Registration::Remove(const ServedClass& served) const
{
    RemoveTree(L"CLSID\\" + TextOf(served.id));
    RemoveTree(served.name);
}

void Registration::AddTypeLibrary() const
{
    const auto library = EmbeddedLibrary(1);
    Bstr description;
    if (library)
        library->GetDocumentation(-1, nullptr, description.Put(), nullptr, nullptr);
    const std::wstring key = L"TypeLib\\" + library_ + L"\\" + version;
    Write(key, nullptr, std::wstring(description.View()));
    Write(key + L"\\0\\" + platform, nullptr, module_);
    Write(key + L"\\FLAGS", nullptr, L"0");
    Write(key + L"\\HELPDIR", nullptr, Module::Folder());
    ForOwnInterfaces([&](const std::wstring& id, const std::wstring& name) {
        Write(L"Interface\\" + id, nullptr, name);
        Write(L"Interface\\" + id + L"\\ProxyStubClsid32", nullptr, automationMarshaller);
        Write(L"Interface\\" + id + L"\\TypeLib", nullptr, library_);
        Write(L"Interface\\" + id + L"\\TypeLib", L"Version", version);
    });
}

void Registration::RemoveTypeLibrary() const
{
    ForOwnInterfaces([&](const std::wstring& id, const std::wstring&) { RemoveTree(L"Interface\\" + id); });
    // The same library may be registered for the other word length.
    const std::wstring key = L"TypeLib\\" + library_;
    RemoveTree(key + L"\\" + version + L"\\0\\" + platform);
    if (!HasSubkeys(key + L"\\" + version + L"\\0"))
        RemoveTree(key + L"\\" + version);
    if (!HasSubkeys(key))
        RemoveTree(key);
}

void Registration::Write(const std::wstring& key, const wchar_t* name, const std::wstring& value) const
{
    HKEY handle;
    CheckStatus(RegCreateKeyExW(root_, key.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &handle, nullptr));
    const LSTATUS status = RegSetValueExW(handle, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                                          static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
    RegCloseKey(handle);
    CheckStatus(status);
}

void Registration::RemoveTree(const std::wstring& key) const
{
    const LSTATUS status = RegDeleteTreeW(root_, key.c_str());
    if (status != ERROR_FILE_NOT_FOUND)
        CheckStatus(status);
}

bool Registration::HasSubkeys(const std::wstring& key) const
{
    HKEY handle;
    if (RegOpenKeyExW(root_, key.c_str(), 0, KEY_READ, &handle) != ERROR_SUCCESS)
        return false;
    DWORD count = 0;
    const LSTATUS status = RegQueryInfoKeyW(handle, nullptr, nullptr, nullptr, &count, nullptr, nullptr, nullptr,
                                            nullptr, nullptr, nullptr, nullptr);
    RegCloseKey(handle);
    return status != ERROR_SUCCESS || count > 0;
}

void Registration::ForOwnInterfaces(const std::function<void(const std::wstring& id, const std::wstring& name)>& visit)
{
    const auto library = EmbeddedLibrary(1);
    const UINT count = library ? library->GetTypeInfoCount() : 0;
    for (UINT i = 0; i < count; ++i) {
        ComPtr<ITypeInfo> info;
        TYPEATTR* attributes = nullptr;
        if (FAILED(library->GetTypeInfo(i, info.Put())) || FAILED(info->GetTypeAttr(&attributes)))
            continue;
        const bool isInterface = attributes->typekind == TKIND_DISPATCH || attributes->typekind == TKIND_INTERFACE;
        const GUID id = attributes->guid;
        info->ReleaseTypeAttr(attributes);
        if (isInterface && !DescribedByAnotherLibrary(id))
            visit(TextOf(id), NameOf(info.Get()));
    }
}

}  // namespace tvn2x::com
