// The driver library of another vendor, who makes receivers that always have a good signal. Beside the identities that
// every driver has it has some of its own: A0000000-0000-0000-0000-000000000001 to 3. While the host's current folder
// has a file "unplugged" the receiver cannot be reached.

#include <initguid.h>

#include "WrongDriver.h"

STDAPI DllGetClassObject(REFCLSID classId, REFIID interfaceId, void** out)
{
    tvn2x::wrong::isLost = [] { return GetFileAttributesW(L"unplugged") != INVALID_FILE_ATTRIBUTES; };
    unsigned char place = 0;
    for (const auto& [id, factory] : tvn2x::wrong::factories) {
        const CLSID own{0xA0000000, 0, 0, {0, 0, 0, 0, 0, 0, 0, ++place}};
        if (classId == id || classId == own) {
            return factory->QueryInterface(interfaceId, out);
        }
    }
    return CLASS_E_CLASSNOTAVAILABLE;
}
