#pragma once

#include <cstdint>

namespace tvn2x {

/// Before a socket is bound to its port: no second program can listen there at the same time, and one that begins anew
/// need not wait until the connections of the one before are forgotten. The systems want to be told the opposite of
/// each other for that.
void KeepPortToOneself(uintptr_t socket);

}  // namespace tvn2x
