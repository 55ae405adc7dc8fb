#include "receivers/model/BitErrorProgress.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace tvn2x {
namespace {

/// Two significant digits, as receivers show a bit error ratio: "2.3E-5".
std::wstring Scientific(double value)
{
    std::array<char, 32> digits;
    const auto [end, fault] =
        std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::scientific, 1);
    const std::string_view text(digits.data(), static_cast<size_t>(end - digits.data()));
    const size_t exponentAt = text.find('e');
    int exponent = 0;
    const char* exponentText = text.data() + exponentAt + (text[exponentAt + 1] == '+' ? 2 : 1);
    std::from_chars(exponentText, text.data() + text.size(), exponent);
    return std::wstring(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(exponentAt)) + L"E" +
           std::to_wstring(exponent);
}

}  // namespace

int32_t BitErrorProgress::Blocks() const
{
    return static_cast<int32_t>(std::min<double>(wanted, bits / blockBits));
}

std::wstring BitErrorProgress::State() const
{
    return Done() ? L"Done" : std::to_wstring(Blocks()) + L" of " + std::to_wstring(wanted);
}

std::wstring BitErrorProgress::Result() const
{
    return errors > 0 ? Scientific(Ratio()) : L"<" + Scientific(1 / std::max(bits, 1.0));
}

}  // namespace tvn2x
