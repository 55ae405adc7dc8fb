#include <winsock2.h>

#include "host/serve/ListeningPort.h"

namespace tvn2x {

void KeepPortToOneself(uintptr_t socket)
{
    const BOOL yes = TRUE;
    setsockopt(static_cast<SOCKET>(socket), SOL_SOCKET, SO_EXCLUSIVEADDRUSE, reinterpret_cast<const char*>(&yes),
               sizeof yes);
}

}  // namespace tvn2x
