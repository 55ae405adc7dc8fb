#pragma once

#include <string>

#include "util/RaisedError.h"

namespace tvn2x {

/// Number of every error that an unusable file or argument causes in the host.
constexpr int32_t unusableInput = 5;

/// Refuses what the user gave. The description is shown as it stands: it names file, line, limit and remedy.
[[noreturn]] inline void RaiseInput(std::wstring description)
{
    throw RaisedError(unusableInput, L"tvnhost", std::move(description));
}

}  // namespace tvn2x
