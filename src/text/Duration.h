#pragma once

#include <string>

namespace tvn2x {

/// "0:42", "12:05", "1:02:03"; fractions are rounded to whole seconds.
std::wstring DurationText(double seconds);

}  // namespace tvn2x
