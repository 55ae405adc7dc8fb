#include <windows.h>

#include "TVNINT.h"
#include "com/Errors.h"
#include "com/Module.h"
#include "com/Server.h"
#include "com/Text.h"
#include "host/commands/Commands.h"

namespace tvn2x {
namespace {

/// The type library TVNINT that is embedded in this program; the host has no classes of its own.
com::Server Library()
{
    return com::Server({}, LIBID_TVNINT);
}

com::RegisteredFor Whom(bool forUser)
{
    return forUser ? com::RegisteredFor::user : com::RegisteredFor::machine;
}

/// Where the system finds the type library now; empty where nobody serves it.
std::wstring ServingFile()
{
    com::Bstr path;
    if (FAILED(QueryPathOfRegTypeLib(LIBID_TVNINT, 1, 0, LOCALE_NEUTRAL, path.Put()))) {
        return {};
    }
    return std::wstring(path.View().substr(0, path.View().find(L'\0')));
}

void Require(HRESULT result, const wchar_t* what)
{
    if (FAILED(result)) {
        try {
            com::ThrowFailure(result, nullptr, IID_NULL);
        } catch (RaisedError& error) {
            error.description = what + (L": " + error.description) +
                                L". Run the command as administrator, once for the machine, or with --user";
            throw;
        }
    }
}

}  // namespace

int Register(bool forUser, Console& console)
{
    Require(Library().Register(Whom(forUser)), L"the type library TVNINT cannot be registered");
    console.Result(L"The type library TVNINT is registered: " + com::Module::FileName() + L"\n");
    return exitDone;
}

int Unregister(bool forUser, Console& console)
{
    Require(Library().Unregister(Whom(forUser)), L"the type library TVNINT cannot be unregistered");
    const std::wstring file = ServingFile();
    console.Result(file.empty() ? L"The type library TVNINT is no longer registered.\n"
                                : L"The type library TVNINT stays registered for others that need it: " + file + L"\n");
    return exitDone;
}

}  // namespace tvn2x
