#pragma once

#include <cstdio>
#include <cstdlib>

#include "support/ShiftedCodePage.h"
#include "util/CodePage.h"

namespace tvn2x::fuzz {

/// Ends the process where something that has to hold does not, so that the fuzzer keeps the input.
inline void Require(bool holds, const char* what)
{
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", what);
        std::abort();
    }
}

/// One of three code pages, by any number.
inline const CodePage& PageFor(size_t number)
{
    static const ShiftedCodePage shifted;
    return number % 3 == 0 ? SystemCodePage() : number % 3 == 1 ? Utf8CodePage() : shifted;
}

}  // namespace tvn2x::fuzz
