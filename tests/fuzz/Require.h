#pragma once

#include <cstdio>
#include <cstdlib>

namespace tvn2x::fuzz {

/// Ends the process where something that has to hold does not, so that the fuzzer keeps the input.
inline void Require(bool holds, const char* what)
{
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", what);
        std::abort();
    }
}

}  // namespace tvn2x::fuzz
