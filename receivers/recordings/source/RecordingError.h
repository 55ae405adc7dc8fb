#pragma once

#include <string>

#include "util/RaisedError.h"

namespace tvn2x::recordings {

/// Number of every error that a recording causes.
constexpr int32_t unusableRecording = static_cast<int32_t>(0x80040000u + 2007);

/// Refuses a recording. The description is shown as it stands: it names file, place, limit and remedy.
[[noreturn]] inline void RaiseRecording(std::wstring description)
{
    throw RaisedError(unusableRecording, L"XKIQ2x", std::move(description));
}

}  // namespace tvn2x::recordings
