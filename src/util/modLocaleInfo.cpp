#include "util/modLocaleInfo.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

#include "util/RaisedError.h"

namespace tvn2x {
namespace {

constexpr std::wstring_view blanks = L" \t\r\n\v\f\u00A0";

std::wstring_view SkipBlanks(std::wstring_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    return text;
}

std::wstring_view Trim(std::wstring_view text)
{
    return SkipBlanks(text.substr(0, text.find_last_not_of(blanks) + 1));
}

/// Takes a sign, and the blanks behind it, from the front.
bool TakeSign(std::wstring_view& text)
{
    if (text.empty() || (text[0] != L'-' && text[0] != L'+')) {
        return false;
    }
    const bool negative = text[0] == L'-';
    text = SkipBlanks(text.substr(1));
    return negative;
}

/// Whether a number that is no double is too small rather than too large: where its first digit stands decides.
bool IsTiny(std::string_view number)
{
    const size_t exponentMark = number.find_first_of("eE");
    const std::string_view mantissa = number.substr(0, exponentMark);
    const auto first = static_cast<long long>(mantissa.find_first_of("123456789"));
    const auto point = static_cast<long long>(std::min(mantissa.find('.'), mantissa.size()));
    long long exponent = 0;
    if (exponentMark != std::string_view::npos) {
        std::string_view power = number.substr(exponentMark + 1);
        if (power.front() == '+') {
            power.remove_prefix(1);
        }
        if (std::from_chars(power.data(), power.data() + power.size(), exponent).ec != std::errc()) {
            return power.front() == '-';
        }
    }
    return exponent < first - point;
}

/// A number at the head of a text, and how long it is there.
struct Prefix
{
    double value;
    size_t length;
};

/// The unsigned number that a text begins with; nothing where it begins with none, infinity where it is too large.
std::optional<Prefix> ReadPrefix(std::wstring_view text, wchar_t decimalMark)
{
    std::string number;
    for (const wchar_t c : text) {
        const bool digit = c >= L'0' && c <= L'9';
        const bool exponent = (c == L'e' || c == L'E' || c == L'+' || c == L'-') && !number.empty();
        if (c == L'.' || c == decimalMark) {
            number += '.';
        } else if (digit || exponent) {
            number += static_cast<char>(c);
        } else {
            break;
        }
    }
    double value = 0;
    const char* const begin = number.data();
    const auto [end, fault] = std::from_chars(begin, begin + number.size(), value);
    if (fault == std::errc::invalid_argument) {
        return std::nullopt;
    }
    const auto length = static_cast<size_t>(end - begin);
    if (fault == std::errc::result_out_of_range) {
        value = IsTiny({begin, length}) ? 0 : std::numeric_limits<double>::infinity();
    }
    return Prefix{value, length};
}

}  // namespace

wchar_t Locale::DecimalMark() const
{
    const std::wstring separator = GetLocaleString(locale_constant::decimalSeparator);
    return separator.empty() ? L'.' : separator.front();
}

std::wstring DecimalSeparator(const Locale& locale)
{
    return std::wstring(1, locale.DecimalMark());
}

double ParseNumber(std::wstring_view text, const Locale& locale)
{
    return ParseNumber(text, locale.DecimalMark());
}

double ParseNumber(std::wstring_view text, wchar_t decimalMark)
{
    std::wstring_view rest = Trim(text);
    const bool negative = TakeSign(rest);
    const std::optional<Prefix> number = ReadPrefix(rest, decimalMark);
    if (!number || number->length != rest.size() || std::isinf(number->value)) {
        throw RaisedError(error::typeMismatch, L"modLocaleInfo.ParseNumber", L"Type mismatch");
    }
    return negative ? -number->value : number->value;
}

double LeadingNumber(std::wstring_view text)
{
    std::wstring_view rest = SkipBlanks(text);
    const bool negative = TakeSign(rest);
    const std::optional<Prefix> number = ReadPrefix(rest, L'.');
    if (!number) {
        return 0;
    }
    return negative ? -number->value : number->value;
}

}  // namespace tvn2x
