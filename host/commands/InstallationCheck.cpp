#include "host/commands/InstallationCheck.h"

#include <map>

#include "Version.h"
#include "com/EntryFile.h"
#include "com/Module.h"
#include "driver/DriverLibrary.h"
#include "driver/DriverSetting.h"
#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/link/Plugin.h"
#include "host/link/RegistryView.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

constexpr int ownBits = 8 * sizeof(void*);

/// What belongs together: classes of one file, and the type library that describes them.
struct Part
{
    const wchar_t* name;
    const wchar_t* file;  ///< as the packages name it
    std::vector<DriverClass> classes;
    const GUID& library;
    const wchar_t* libraryName;
};

const std::vector<Part>& Parts()
{
    static const std::vector<Part> parts{
        {L"plug-in",
         L"TVN2x.dll",
         {{__uuidof(clsSetup), L"TVN2x.clsSetup"},
          {__uuidof(clsSupport), L"TVN2x.clsSupport"},
          {__uuidof(clsTimeout), L"TVN2x.clsTimeout"}},
         LIBID_TVN2x,
         L"TVN2x"},
        {L"instrument driver",
         L"XKTR2x.dll",
         {RegisteredDriver().classes.begin(), RegisteredDriver().classes.end()},
         LIBID_XKTR2x,
         L"XKTR2x"},
        {L"simulated receiver",
         L"XKTR2x.dll",
         {SimulatedDriver().classes.begin(), SimulatedDriver().classes.end()},
         LIBID_XKTR2x,
         nullptr},
        {L"receiver of recordings",
         L"XKIQ2x.dll",
         {RecordingsDriver().classes.begin(), RecordingsDriver().classes.end()},
         LIBID_XKIQ2x,
         L"XKIQ2x"},
        {L"host's interfaces", L"tvnhost.exe", {}, LIBID_TVNINT, L"TVNINT"},
    };
    return parts;
}

std::wstring Audience(const RegistryView& view)
{
    return fmt::format(L"{}-bit programs of {}", view.bits, view.isUsers ? L"this user" : L"the machine");
}

std::wstring Again(const Part& part)
{
    if (part.classes.empty()) {
        return L"Register it again: tvnhost register";
    }
    return fmt::format(L"Repair the installation, or register the library again: regsvr32 {}", part.file);
}

/// One part in one view.
class PartCheck
{
public:
    PartCheck(const Part& part, const RegistryView& view, Diagnosis& diagnosis)
        : part_(part), view_(view), diagnosis_(diagnosis)
    {
    }

    /// The file that serves the part's classes; empty where none of them is registered.
    std::wstring Classes()
    {
        std::map<std::wstring, std::wstring> files;  // by class
        for (const DriverClass& known : part_.classes) {
            const std::wstring key = L"CLSID\\" + com::TextOf(known.id);
            if (const auto file = view_.Read(key + L"\\InprocServer32")) {
                files[known.name] = *file;
                Item(known.name, *file, true);
                Name(known);
            }
        }
        if (!files.empty()) {
            Whole(files);
        }
        return files.empty() ? L"" : files.begin()->second;
    }

    void Library(bool isNeeded)
    {
        const std::wstring key =
            L"TypeLib\\" + com::TextOf(part_.library) + L"\\1.0\\0\\win" + std::to_wstring(view_.bits);
        const auto file = view_.Read(key);
        if (file) {
            Item(std::wstring(part_.libraryName) + L" (type library)", *file, false);
            Interfaces(*file);
        } else if (isNeeded) {
            Complain(fmt::format(L"The type library {} is not registered for {}", part_.libraryName, Audience(view_)),
                     Again(part_));
        }
    }

private:
    void Complain(const std::wstring& what, const std::wstring& remedy)
    {
        diagnosis_.complaints.push_back({what, remedy});
    }

    void Item(const std::wstring& name, const std::wstring& path, bool hasClasses)
    {
        const FileState state = StateOfLibrary(path, view_.bits, hasClasses);
        diagnosis_.items.push_back({name, view_.bits, view_.isUsers, path, state.version, state.fault});
        if (!state.fault.empty()) {
            Complain(fmt::format(L"{} for {}: {} {}", name, Audience(view_), path, state.fault), Again(part_));
        }
    }

    void Name(const DriverClass& known)
    {
        const std::wstring id = com::TextOf(known.id);
        const std::wstring named = view_.Read(known.name + L"\\CLSID").value_or(L"nothing");
        if (named != id) {
            Complain(fmt::format(L"The name {} leads {} to {} instead of {}", known.name, Audience(view_), named, id),
                     Again(part_));
        }
    }

    void Whole(const std::map<std::wstring, std::wstring>& files)
    {
        const auto& [first, file] = *files.begin();
        for (const DriverClass& known : part_.classes) {
            const auto other = files.find(known.name);
            if (other == files.end()) {
                Complain(fmt::format(L"{} is registered for {}, and {} is not", first, Audience(view_), known.name),
                         Again(part_));
            } else if (!com::EntryFile(file).Is(com::EntryFile(other->second))) {
                Complain(fmt::format(L"{} and {} come from two files for {}: {} and {}", first, known.name,
                                     Audience(view_), file, other->second),
                         Again(part_));
            }
        }
    }

    /// The interfaces that the library defines: clients of another apartment find the library by these entries.
    void Interfaces(const std::wstring& path)
    {
        com::ComPtr<ITypeLib> library;
        if (FAILED(LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.Put()))) {
            return;
        }
        std::wstring missing;
        for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
            com::ComPtr<ITypeInfo> info;
            TYPEATTR* attributes = nullptr;
            if (FAILED(library->GetTypeInfo(i, info.Put())) || FAILED(info->GetTypeAttr(&attributes))) {
                continue;
            }
            const bool isInterface = attributes->typekind == TKIND_DISPATCH;
            const std::wstring key = L"Interface\\" + com::TextOf(attributes->guid) + L"\\TypeLib";
            info->ReleaseTypeAttr(attributes);
            com::Bstr name;
            if (isInterface && view_.Read(key) != com::TextOf(part_.library) &&
                SUCCEEDED(info->GetDocumentation(MEMBERID_NIL, name.Put(), nullptr, nullptr, nullptr))) {
                missing += (missing.empty() ? L"" : L", ") + std::wstring(name.View());
            }
        }
        if (!missing.empty()) {
            Complain(
                fmt::format(L"Interfaces of {} do not lead {} to it: {}", part_.libraryName, Audience(view_), missing),
                Again(part_));
        }
    }

    const Part& part_;
    const RegistryView& view_;
    Diagnosis& diagnosis_;
};

/// A file that serves the classes of a part, and who sees it.
struct Serving
{
    const Part* part;
    const RegistryView* view;
    std::wstring file;
};

void CompareInstallations(const std::vector<Serving>& all, Diagnosis& diagnosis)
{
    for (const Serving& one : all) {
        for (const Serving& other : all) {
            if (one.part != other.part || one.view >= other.view) {
                continue;
            }
            const bool isHidden = one.view->bits == other.view->bits;
            if (isHidden && !com::EntryFile(one.file).Is(com::EntryFile(other.file))) {
                diagnosis.complaints.push_back(
                    {fmt::format(
                         L"Two installations: the {} of this user, {}, hides the machine's, {}, from {}-bit programs",
                         one.part->name, one.file, other.file, one.view->bits),
                     fmt::format(L"Uninstall one of them, or take the user's back: regsvr32 /u /n /i:user \"{}\"",
                                 one.file)});
            }
        }
        const std::wstring version = StateOfLibrary(one.file, one.view->bits, true).version;
        if (one.part == &Parts().front() && !version.empty() && version != FromUtf8(TVN_VERSION)) {
            diagnosis.complaints.push_back(
                {fmt::format(L"Two versions: this program is {}, and the plug-in for {}, {}, is {}",
                             FromUtf8(TVN_VERSION), Audience(*one.view), one.file, version),
                 L"Install the newer version for both word lengths, or start the program that lies beside the "
                 L"plug-in"});
        }
    }
}

void RequirePart(const Part& part, const std::vector<Serving>& all, Diagnosis& diagnosis)
{
    const bool isThere =
        std::ranges::any_of(all, [&](const Serving& one) { return one.part == &part && one.view->bits == ownBits; });
    if (!isThere) {
        diagnosis.complaints.push_back(
            {fmt::format(L"The {} is not registered for {}-bit programs, such as this one", part.name, ownBits),
             fmt::format(L"Install the package of {} bits, or register the library: regsvr32 {}", ownBits, part.file)});
    }
}

void CheckChoices(Diagnosis& diagnosis)
{
    for (const DriverSetting& setting : AllSettings(receiverKey)) {
        try {
            RequireOneFile(FindDriver(setting.words, setting.place));
        } catch (const RaisedError& error) {
            diagnosis.complaints.push_back(
                {error.description, L"Change the value, or delete it for the registered one"});
        }
    }
    for (const DriverSetting& setting : AllSettings(signalsKey)) {
        const DWORD attributes = GetFileAttributesW(setting.words.c_str());
        if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
            diagnosis.complaints.push_back(
                {fmt::format(L"{} names the folder of recorded signals \"{}\", and there is none", setting.place,
                             setting.words),
                 L"Change the value to the full path of the folder, or delete it"});
        }
    }
}

}  // namespace

void CheckRegistration(Diagnosis& diagnosis)
{
    const std::vector<RegistryView> views = RegistryViews();
    std::vector<Serving> serving;
    for (const RegistryView& view : views) {
        bool isAny = false;
        for (const Part& part : Parts()) {
            PartCheck check(part, view, diagnosis);
            const std::wstring file = check.Classes();
            if (!file.empty()) {
                serving.push_back({&part, &view, file});
                isAny = true;
            }
            if (part.libraryName) {
                // Another vendor's driver may do without.
                check.Library(part.classes.empty() ? isAny : !file.empty() && &part == &Parts().front());
            }
        }
    }
    RequirePart(Parts()[0], serving, diagnosis);
    RequirePart(Parts()[1], serving, diagnosis);
    CompareInstallations(serving, diagnosis);
    CheckChoices(diagnosis);
}

}  // namespace tvn2x
