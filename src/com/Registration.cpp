#include "com/Registration.h"

#include "com/ComPtr.h"
#include "com/LibraryRegistration.h"
#include "com/Module.h"
#include "com/Text.h"
#include "com/TypeLibrary.h"

namespace tvn2x::com {
namespace {

constexpr wchar_t version[] = L"1.0";

}  // namespace

Registration::Registration(REFGUID typeLibrary, RegisteredFor whom)
    : classes_(whom), moduleName_(Module::FileName()), module_(moduleName_), library_(TextOf(typeLibrary))
{
}

void Registration::Add(const ServedClass& served)
{
    const std::wstring id = TextOf(served.id);
    const std::wstring key = L"CLSID\\" + id;
    const std::wstring server = key + L"\\InprocServer32";
    if (const auto before = classes_.Read(server); before && !EntryFile(*before).Is(module_)) {
        replaced_.emplace_back(*before);
    }
    classes_.Write(key, nullptr, served.description);
    classes_.Write(server, nullptr, moduleName_);
    classes_.Write(server, L"ThreadingModel", L"Apartment");
    classes_.Write(key + L"\\ProgID", nullptr, served.name);
    classes_.Write(key + L"\\TypeLib", nullptr, library_);
    classes_.Write(key + L"\\Version", nullptr, version);
    classes_.Write(key + L"\\Programmable", nullptr, L"");
    classes_.Write(served.name, nullptr, served.description);
    classes_.Write(std::wstring(served.name) + L"\\CLSID", nullptr, id);
}

void Registration::Remove(const ServedClass& served)
{
    const std::wstring id = TextOf(served.id);
    const std::wstring key = L"CLSID\\" + id;
    const std::wstring server = key + L"\\InprocServer32";
    if (const auto file = classes_.Read(server); file && !EntryFile(*file).Is(module_) && !EntryFile(*file).IsGone()) {
        return;
    }
    classes_.RemoveTree(key);
    // Programs of 32 and 64 bits have classes of their own under one common name.
    if (const auto other = classes_.ReadOtherView(server); other && !EntryFile(*other).IsGone()) {
        return;
    }
    if (classes_.Read(std::wstring(served.name) + L"\\CLSID").value_or(id) == id) {
        classes_.RemoveTree(served.name);
    }
}

void Registration::AddTypeLibraries()
{
    for (int resource = 1; const auto library = EmbeddedLibrary(resource); ++resource) {
        LibraryRegistration(classes_, resource, library.Get()).Add(replaced_);
    }
}

void Registration::RemoveTypeLibraries()
{
    for (int resource = 1; const auto library = EmbeddedLibrary(resource); ++resource) {
        LibraryRegistration(classes_, resource, library.Get()).Remove();
    }
}

}  // namespace tvn2x::com
