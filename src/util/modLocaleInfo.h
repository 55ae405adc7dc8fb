#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "util/Clock.h"

namespace tvn2x {

namespace locale_constant {

constexpr uint32_t listSeparator = 12;
constexpr uint32_t decimalSeparator = 14;

}  // namespace locale_constant

/// The user's regional settings. SystemLocale is the user's own; tests bring theirs.
class Locale
{
public:
    virtual ~Locale() = default;

    /// The locale string of a platform constant, "" where the platform has none.
    virtual std::wstring GetLocaleString(uint32_t constant) const = 0;
    /// The character between the whole part and the decimals, "." where the locale names none.
    virtual wchar_t DecimalMark() const;
    /// Named format "c": short date, a blank, long time; the date alone at midnight.
    virtual std::wstring FormatGeneralDate(const DateTime& time) const = 0;
};

/// The user's regional settings. One object for the process.
const Locale& SystemLocale();

/// The separator between the whole part and the decimals, "." where the locale names none.
std::wstring DecimalSeparator(const Locale& locale);

/// Reads a number that is written with "." or with the locale's decimal separator, surrounded by any blanks.
/// Raises 13 "Type mismatch" where the whole text is not a number, or one beyond the range of a double.
double ParseNumber(std::wstring_view text, const Locale& locale);

/// The same for a caller with many texts, which asks Locale::DecimalMark once.
double ParseNumber(std::wstring_view text, wchar_t decimalMark);

/// The number that a text begins with ("2.0.1" gives 2.0, "abc" 0), "." as decimal separator whatever the locale.
double LeadingNumber(std::wstring_view text);

}  // namespace tvn2x
