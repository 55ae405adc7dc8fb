#pragma once

#include <string>
#include <string_view>

#include "util/modLocaleInfo.h"

namespace tvn2x {

/// A number with the locale's decimal mark, whichever it was written with: "61.1", "<1,7E-8". Any other text as it is.
std::wstring WithUserMark(std::wstring_view number, const Locale& locale = SystemLocale());

/// A number as sentences have it, with the user's decimal mark: three significant digits, an exponent for the small
/// ones only ("0.3", "105940", "2E-4").
std::wstring NumberText(double number);

/// A frequency in MHz with its unit: "474.25 MHz".
std::wstring MegahertzText(double frequency);

}  // namespace tvn2x
