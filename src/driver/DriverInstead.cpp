#include "driver/DriverInstead.h"

#include <cguid.h>
#include <objbase.h>

#include <vector>

#include "com/Call.h"

namespace tvn2x {
namespace {

/// A class that nobody can create and everybody can ask for: it is there where a driver was chosen.
constexpr CLSID chosenMark{0x5b8e1a52, 0x7f0c, 0x4c5e, {0x9d, 0x41, 0x2a, 0x6b, 0x90, 0xe3, 0x1f, 0x77}};

com::ComPtr<IUnknown> ClassObjectOf(const DriverClass& wanted)
{
    com::ComPtr<IUnknown> factory;
    const HRESULT result = com::Outside([&] {
        return CoGetClassObject(wanted.id, CLSCTX_INPROC_SERVER, nullptr, IID_IUnknown,
                                reinterpret_cast<void**>(factory.Put()));
    });
    if (FAILED(result) || !factory) {
        wchar_t number[16];
        swprintf(number, std::size(number), L" (0x%08X)", static_cast<unsigned>(result));
        throw RaisedError(
            error::cannotCreateObject, L"clsSetup.Driver",
            L"The chosen receiver's class " + wanted.name + L" cannot be had: " + com::SystemText(result) + number);
    }
    return factory;
}

}  // namespace

DriverInstead::ClassObject::ClassObject(REFCLSID id, IUnknown* object)
{
    com::Check(CoRegisterClassObject(id, object, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie_), object);
}

DriverInstead::DriverInstead(const DriverLibrary& library)
{
    RequireOneFile(library);
    std::vector<com::ComPtr<IUnknown>> factories;
    const auto& places = RegisteredDriver().classes;
    for (size_t i = 0; i < places.size(); ++i) {
        if (library.classes[i].id != places[i].id) {
            factories.push_back(ClassObjectOf(library.classes[i]));
        }
    }
    com::ComPtr<IUnknown> mark;
    com::Check(CoCreateFreeThreadedMarshaler(nullptr, mark.Put()), mark.Get());
    classes_.emplace_back(chosenMark, mark.Get());
    for (size_t i = 0; i < factories.size(); ++i) {
        classes_.emplace_back(places[i].id, factories[i].Get());
    }
}

bool DriverInstead::IsChosen()
{
    com::ComPtr<IUnknown> mark;
    return SUCCEEDED(com::Outside([&] {
        return CoGetClassObject(chosenMark, CLSCTX_INPROC_SERVER, nullptr, IID_IUnknown,
                                reinterpret_cast<void**>(mark.Put()));
    }));
}

}  // namespace tvn2x
