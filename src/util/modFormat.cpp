#include "util/modFormat.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace tvn2x {
namespace {

constexpr int significantDigits = 15;
constexpr int digitsToSettleTies = 40;

/// 0.d1d2d3... * 10^point, without trailing zeros. Zero has no digits. The digits are those of "d.ddde-xx" as to_chars
/// wrote it, its first digit moved over its point.
struct Decimal
{
    std::array<char, 64> text;
    int count = 0;
    int point = 0;
    bool negative = false;

    char* Digits() { return text.data() + 1; }
    const char* Digits() const { return text.data() + 1; }
};

void DropTrailingZeros(Decimal& decimal)
{
    while (decimal.count > 0 && decimal.Digits()[decimal.count - 1] == '0') {
        --decimal.count;
    }
    if (decimal.count == 0) {
        decimal.point = 0;
    }
}

/// Keeps the first `keep` digits, rounded half away from zero.
void Round(Decimal& decimal, int keep)
{
    if (keep >= decimal.count) {
        return;
    }
    const bool up = keep >= 0 && decimal.Digits()[keep] >= '5';
    decimal.count = std::max(keep, 0);
    if (up) {
        while (decimal.count > 0 && decimal.Digits()[decimal.count - 1] == '9') {
            --decimal.count;
        }
        if (decimal.count > 0) {
            ++decimal.Digits()[decimal.count - 1];
        } else {
            decimal.Digits()[0] = '1';
            decimal.count = 1;
            ++decimal.point;
        }
    }
    DropTrailingZeros(decimal);
}

/// Takes over the "d.ddde-xx" or "de-xxx" that ends at `end`.
void TakeScientific(Decimal& decimal, const char* end)
{
    const char* const mark = end[-4] == 'e' ? end - 4 : end - 5;
    int exponent = 0;
    for (const char* digit = mark + 2; digit != end; ++digit) {
        exponent = exponent * 10 + (*digit - '0');
    }
    decimal.point = (mark[1] == '-' ? -exponent : exponent) + 1;
    decimal.text[1] = decimal.text[0];
    decimal.count = std::max(static_cast<int>(mark - decimal.Digits()), 1);
}

/// The 15 significant digits of a finite value. The shortest form that reads back as the value settles nearly all of
/// them: it lies so close to the value that rounding it is rounding the value, unless it ends in a 5 just behind the
/// 15 digits, where only the value itself tells a tie from a near miss. Below the normal range it is too short.
Decimal SignificantDigits(double value)
{
    Decimal decimal;
    const double magnitude = std::fabs(value);
    if (magnitude == 0) {
        return decimal;
    }
    decimal.negative = value < 0;

    char* const begin = decimal.text.data();
    char* const limit = begin + decimal.text.size();
    bool settled = false;
    if (magnitude >= std::numeric_limits<double>::min()) {
        TakeScientific(decimal, std::to_chars(begin, limit, magnitude, std::chars_format::scientific).ptr);
        settled = decimal.count != significantDigits + 1 || decimal.Digits()[significantDigits] != '5';
    }
    if (!settled) {
        TakeScientific(decimal,
                       std::to_chars(begin, limit, magnitude, std::chars_format::scientific, digitsToSettleTies).ptr);
    }
    Round(decimal, significantDigits);
    DropTrailingZeros(decimal);
    return decimal;
}

/// A numeric pattern, taken apart.
struct Picture
{
    int minWhole = 0;
    int minDecimals = 0;
    int maxDecimals = 0;
    bool point = false;
};

Picture ParsePicture(std::wstring_view pattern)
{
    Picture picture;
    bool zeroSeen = false;
    for (const wchar_t c : pattern) {
        if (c == L'.') {
            picture.point = true;
        } else if (c == L'0' || c == L'#') {
            if (picture.point) {
                ++picture.maxDecimals;
                if (c == L'0') {
                    picture.minDecimals = picture.maxDecimals;
                }
            } else {
                zeroSeen = zeroSeen || c == L'0';
                picture.minWhole += zeroSeen ? 1 : 0;
            }
        }
    }
    return picture;
}

void AppendFixed(std::wstring& text, const Decimal& decimal, const Picture& picture, wchar_t mark)
{
    const int whole = std::max(decimal.point, picture.minWhole);
    const int decimals = std::max(decimal.count - decimal.point, picture.minDecimals);
    const size_t start = text.size();
    text.append(static_cast<size_t>(decimal.negative) + whole + (picture.point ? 1 + decimals : 0), L'0');

    wchar_t* begin = text.data() + start;
    if (decimal.negative) {
        *begin++ = L'-';
    }
    int digit = 0;
    for (; digit < decimal.count && digit < decimal.point; ++digit) {
        begin[whole - decimal.point + digit] = static_cast<wchar_t>(decimal.Digits()[digit]);
    }
    if (picture.point) {
        begin[whole] = mark;
        for (; digit < decimal.count; ++digit) {
            begin[whole + 1 + digit - decimal.point] = static_cast<wchar_t>(decimal.Digits()[digit]);
        }
    }
}

void AppendScientific(std::wstring& text, const Decimal& decimal, wchar_t mark)
{
    std::array<wchar_t, significantDigits + 8> buffer;
    wchar_t* out = buffer.data();
    if (decimal.negative) {
        *out++ = L'-';
    }
    *out++ = static_cast<wchar_t>(decimal.Digits()[0]);
    if (decimal.count > 1) {
        *out++ = mark;
    }
    out = std::copy(decimal.Digits() + 1, decimal.Digits() + decimal.count, out);

    const int exponent = decimal.point - 1;
    const int size = std::abs(exponent);
    *out++ = L'E';
    *out++ = exponent < 0 ? L'-' : L'+';
    if (size >= 100) {
        *out++ = static_cast<wchar_t>(L'0' + size / 100);
    }
    *out++ = static_cast<wchar_t>(L'0' + size / 10 % 10);
    *out++ = static_cast<wchar_t>(L'0' + size % 10);
    text.append(buffer.data(), out);
}

void AppendGeneral(std::wstring& text, const Decimal& decimal, wchar_t mark)
{
    constexpr int smallestFixedPoint = -3;  // 0.0001
    if (decimal.point > significantDigits || decimal.point < smallestFixedPoint) {
        AppendScientific(text, decimal, mark);
    } else {
        AppendFixed(text, decimal, {.minWhole = 1, .point = decimal.count > decimal.point}, mark);
    }
}

/// What no pattern can show. True where the value was one.
bool AppendInWords(std::wstring& text, double value)
{
    if (std::isfinite(value)) {
        return false;
    }
    text += std::isnan(value) ? L"NaN" : value < 0 ? L"-Infinity" : L"Infinity";
    return true;
}

}  // namespace

void AppendNumber(std::wstring& text, double value, std::wstring_view pattern, bool useLocale, const Locale& locale)
{
    if (AppendInWords(text, value)) {
        return;
    }
    const wchar_t mark = useLocale ? locale.DecimalMark() : L'.';
    Decimal decimal = SignificantDigits(value);
    if (pattern.empty()) {
        AppendGeneral(text, decimal, mark);
        return;
    }
    const Picture picture = ParsePicture(pattern);
    Round(decimal, decimal.point + picture.maxDecimals);
    AppendFixed(text, decimal, picture, mark);
}

std::wstring FormatNumber(double value, std::wstring_view pattern, bool useLocale, const Locale& locale)
{
    std::wstring text;
    AppendNumber(text, value, pattern, useLocale, locale);
    return text;
}

std::wstring FormatSignificant(double value, int32_t digits, bool useLocale, const Locale& locale)
{
    std::wstring text;
    if (AppendInWords(text, value)) {
        return text;
    }
    constexpr int mostDecimals = significantDigits;
    Decimal decimal = SignificantDigits(value);
    Round(decimal, std::min<int>(digits, decimal.point + mostDecimals));
    const int beforePoint = decimal.count == 0 ? 1 : decimal.point;  // the 0 of a zero is a digit
    const int decimals = std::clamp(digits - beforePoint, 0, mostDecimals);
    AppendFixed(text, decimal, {.minWhole = 1, .minDecimals = decimals, .point = decimals > 0},
                useLocale ? locale.DecimalMark() : L'.');
    return text;
}

}  // namespace tvn2x
