#include "driver/DriverLibrary.h"

#include <objbase.h>

#include "XKIQ2x.h"
#include "XKTR2x.h"
#include "com/EntryFile.h"
#include "com/Text.h"
#include "util/RaisedError.h"

namespace tvn2x {
namespace {

constexpr const wchar_t* ownPrograms = sizeof(void*) == 8 ? L"64-bit" : L"32-bit";
constexpr std::wstring_view receiverClass = L".clsReceiver";

[[noreturn]] void Refuse(const std::wstring& chooser, const std::wstring& words, const std::wstring& reason)
{
    throw RaisedError(error::cannotCreateObject, L"clsSetup.Driver",
                      chooser + L" chooses the receiver \"" + words + L"\": " + reason);
}

std::wstring NameOf(REFCLSID id)
{
    wchar_t* name = nullptr;
    if (FAILED(ProgIDFromCLSID(id, &name)) || !name) {
        return {};
    }
    std::wstring result(name);
    CoTaskMemFree(name);
    return result;
}

/// The library that a receiver class belongs to, by the name that all of its classes begin with.
DriverLibrary LibraryOf(const CLSID& receiver, const std::wstring& words, const std::wstring& chooser)
{
    for (const DriverLibrary* known : {&RegisteredDriver(), &SimulatedDriver(), &RecordingsDriver()}) {
        if (receiver == known->classes[0].id) {
            return *known;
        }
    }
    if (ServerOf(receiver).empty()) {
        Refuse(chooser, words,
               std::wstring(L"no such class is registered for ") + ownPrograms +
                   L" programs. Register its library, or choose \"simulated\" or \"registered\"");
    }
    const std::wstring name = NameOf(receiver);
    if (!name.ends_with(receiverClass)) {
        Refuse(chooser, words,
               L"the class is named \"" + name + L"\", and a driver's receiver is named NAME" +
                   std::wstring(receiverClass) + L", beside NAME.clsRunControl and NAME.clsErrorReport");
    }
    const std::wstring library = name.substr(0, name.size() - receiverClass.size());
    DriverLibrary found{
        {{{receiver, name}, {CLSID_NULL, library + L".clsRunControl"}, {CLSID_NULL, library + L".clsErrorReport"}}}};
    for (DriverClass& member : found.classes) {
        if (member.id == CLSID_NULL && FAILED(CLSIDFromProgID(member.name.c_str(), &member.id))) {
            Refuse(chooser, words,
                   L"its library has no " + member.name +
                       L". Driver, run control and error reporting have to come "
                       L"from one library");
        }
    }
    return found;
}

}  // namespace

const DriverLibrary& RegisteredDriver()
{
    static const DriverLibrary library{{{{__uuidof(clsReceiver), L"XKTR2x.clsReceiver"},
                                         {__uuidof(clsRunControl), L"XKTR2x.clsRunControl"},
                                         {__uuidof(clsErrorReport), L"XKTR2x.clsErrorReport"}}}};
    return library;
}

const DriverLibrary& SimulatedDriver()
{
    static const DriverLibrary library{{{{__uuidof(simReceiver), L"XKTR2xSim.clsReceiver"},
                                         {__uuidof(simRunControl), L"XKTR2xSim.clsRunControl"},
                                         {__uuidof(simErrorReport), L"XKTR2xSim.clsErrorReport"}}}};
    return library;
}

const DriverLibrary& RecordingsDriver()
{
    static const DriverLibrary library{{{{__uuidof(recReceiver), L"XKIQ2x.clsReceiver"},
                                         {__uuidof(recRunControl), L"XKIQ2x.clsRunControl"},
                                         {__uuidof(recErrorReport), L"XKIQ2x.clsErrorReport"}}}};
    return library;
}

DriverLibrary FindDriver(const std::wstring& words, const std::wstring& chooser)
{
    if (words == L"registered") {
        return RegisteredDriver();
    }
    if (words == L"simulated") {
        return SimulatedDriver();
    }
    if (words == L"recordings") {
        return RecordingsDriver();
    }
    CLSID id;
    if (!words.starts_with(L'{') || FAILED(CLSIDFromString(words.c_str(), &id))) {
        Refuse(chooser, words,
               L"that names none. Choose \"simulated\", \"recordings\", \"registered\" or the identity of a driver's "
               L"receiver class in "
               L"braces, such as " +
                   com::TextOf(RegisteredDriver().classes[0].id));
    }
    return LibraryOf(id, words, chooser);
}

std::wstring ServerOf(REFCLSID id)
{
    const std::wstring key = L"CLSID\\" + com::TextOf(id) + L"\\InprocServer32";
    wchar_t file[MAX_PATH * 4];
    DWORD size = sizeof file;
    const LSTATUS status = RegGetValueW(HKEY_CLASSES_ROOT, key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, file, &size);
    return status == ERROR_SUCCESS ? file : L"";
}

void RequireOneFile(const DriverLibrary& library)
{
    const DriverClass& receiver = library.classes[0];
    const std::wstring file = ServerOf(receiver.id);
    for (const DriverClass& other : library.classes) {
        const std::wstring otherFile = ServerOf(other.id);
        if (!file.empty() && !otherFile.empty() && !com::EntryFile(file).Is(com::EntryFile(otherFile))) {
            std::wstring what = receiver.name;
            what.append(L" comes from ").append(file).append(L" and ").append(other.name).append(L" from ");
            what.append(otherFile).append(L". Driver, run control and error reporting have to come from one library. ");
            throw RaisedError(error::cannotCreateObject, L"clsSetup.Driver",
                              what.append(L"Register the receiver's library again"));
        }
    }
}

}  // namespace tvn2x
