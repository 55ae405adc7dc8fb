#include "com/Registration.h"

#include <algorithm>
#include <ranges>

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
    : classes_(whom), whom_(whom), moduleName_(Module::FileName()), module_(moduleName_), library_(TextOf(typeLibrary))
{
}

void Registration::Add(std::span<const ServedClass> classes)
{
    std::vector<EntryFile> copies{module_};
    for (const ServedClass& served : classes) {
        if (served.claim == Claim::own) {
            // Whoever has a class of the module's own, for the user or the machine, is a copy of it.
            const std::wstring server = L"CLSID\\" + TextOf(served.id) + L"\\InprocServer32";
            for (const auto& file : {classes_.Read(server), classes_.ReadMachine(server)}) {
                if (file) {
                    copies.emplace_back(*file);
                }
            }
            Take(served);
        }
    }
    const auto isLent = [](const ServedClass& served) { return served.claim == Claim::ifVacant; };
    const auto isTaken = [&](const ServedClass& served) { return isLent(served) && !IsVacant(served, copies); };
    if (std::ranges::none_of(classes, isTaken)) {
        for (const ServedClass& served : classes | std::views::filter(isLent)) {
            Take(served);
        }
    }
}

/// A user's entry is seen instead of the machine's, so that both have to be vacant for it.
bool Registration::IsVacant(const ServedClass& served, const std::vector<EntryFile>& copies) const
{
    const std::wstring id = TextOf(served.id);
    const std::wstring key = L"CLSID\\" + id;
    const auto isVacant = [&](auto read) {
        const auto file = read(key + L"\\InprocServer32");
        const auto isOf = [&](const EntryFile& copy) { return EntryFile(*file).Is(copy); };
        return (!file || EntryFile(*file).IsGone() || std::ranges::any_of(copies, isOf)) &&
               !read(key + L"\\LocalServer32") && read(std::wstring(served.name) + L"\\CLSID").value_or(id) == id;
    };
    return isVacant([&](const std::wstring& name) { return classes_.Read(name); }) &&
           (whom_ == RegisteredFor::machine ||
            isVacant([&](const std::wstring& name) { return classes_.ReadMachine(name); }));
}

void Registration::Take(const ServedClass& served)
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

void Registration::AddTypeLibraries(Claim own)
{
    for (int resource = 1; const auto library = EmbeddedLibrary(resource); ++resource) {
        LibraryRegistration(classes_, resource, library.Get(), own).Add(replaced_);
    }
}

void Registration::RemoveTypeLibraries(Claim own)
{
    for (int resource = 1; const auto library = EmbeddedLibrary(resource); ++resource) {
        LibraryRegistration(classes_, resource, library.Get(), own).Remove();
    }
}

}  // namespace tvn2x::com
