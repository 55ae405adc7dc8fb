#include "host/run/UserNumber.h"

#include <cmath>

#include "fmt/format.h"
#include "fmt/xchar.h"

namespace tvn2x {
namespace {

constexpr std::wstring_view digits = L"0123456789";

/// Where the digits from `begin` end.
size_t EndOfDigits(std::wstring_view text, size_t begin)
{
    return std::min(text.find_first_not_of(digits, begin), text.size());
}

bool IsExponent(std::wstring_view text)
{
    if (text.empty()) {
        return true;
    }
    const size_t sign = text.size() > 1 && (text[1] == L'+' || text[1] == L'-') ? 2 : 1;
    return (text[0] == L'E' || text[0] == L'e') && text.size() > sign && EndOfDigits(text, sign) == text.size();
}

}  // namespace

std::wstring WithUserMark(std::wstring_view number, const Locale& locale)
{
    const size_t begin = std::min(number.find_first_not_of(L"<>+-"), number.size());
    const size_t mark = EndOfDigits(number, begin);
    std::wstring text(number);
    if (mark > begin && mark + 1 < text.size() && digits.find(text[mark + 1]) != std::wstring_view::npos &&
        IsExponent(number.substr(EndOfDigits(number, mark + 1)))) {
        text[mark] = locale.DecimalMark();
    }
    return text;
}

std::wstring NumberText(double number)
{
    const double size = std::abs(number);
    if (size == 0 || size >= 1e-3) {
        return WithUserMark(size >= 100 ? fmt::format(L"{:.0f}", number) : fmt::format(L"{:.3g}", number));
    }
    const int exponent = static_cast<int>(std::floor(std::log10(size)));
    return WithUserMark(fmt::format(L"{:.3g}E{}", number / std::pow(10, exponent), exponent));
}

std::wstring MegahertzText(double frequency)
{
    return WithUserMark(fmt::format(L"{:g}", frequency)) + L" MHz";
}

}  // namespace tvn2x
