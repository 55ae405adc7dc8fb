#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "util/modLocaleInfo.h"

namespace tvn2x {

/// Formats a number from its 15 significant decimal digits, rounded half away from zero on those digits.
///
/// pattern: an optional run of "#" and "0" before an optional "." and a run of "0" or "#" after it ("###.0000000",
/// "#0.000", "0.0", "#0", "00"), anything else in it is left out; empty is the general format ("6.9", "1E+15"). With
/// useLocale the decimal separator is the locale's; without it ".", whatever the locale. What is no finite number is
/// "NaN", "Infinity" or "-Infinity".
std::wstring FormatNumber(double value, std::wstring_view pattern, bool useLocale, const Locale& locale);

/// The same behind a text that the caller keeps, so that a long run of numbers costs no memory of its own.
void AppendNumber(std::wstring& text, double value, std::wstring_view pattern, bool useLocale, const Locale& locale);

/// Formats a number with so many significant digits, rounded as FormatNumber does; trailing zeros stay and there is no
/// exponent: 0.04467, 1.000, 31.62, 12350. Zero is 0.000, and what lies behind the 15th decimal is left out.
std::wstring FormatSignificant(double value, int32_t digits, bool useLocale, const Locale& locale);

/// FormatNumber with the general format.
inline std::wstring FormatNumber(double value, bool useLocale, const Locale& locale)
{
    return FormatNumber(value, {}, useLocale, locale);
}

}  // namespace tvn2x
