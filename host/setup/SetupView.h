#pragma once

#include <cstdint>
#include <string>

#include "host/setup/Setup.h"

namespace tvn2x {

/// The setup as a person reads it: settings in words, channels, parameters in the order of the grid, notes as plain
/// text. Each line ends with LF; tables wider than maxWidth (0: no limit) are folded.
std::wstring DescribeSetup(const Setup& setup, int32_t maxWidth = 0);

}  // namespace tvn2x
