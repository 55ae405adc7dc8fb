#include <sys/socket.h>

#include "host/serve/ListeningPort.h"

namespace tvn2x {

void KeepPortToOneself(uintptr_t socket)
{
    const int yes = 1;
    setsockopt(static_cast<int>(socket), SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
}

}  // namespace tvn2x
