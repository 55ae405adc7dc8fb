#include "simulator/model/BitErrorCount.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace tvn2x {
namespace {

constexpr uint64_t errorStream = 0x626572;

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

std::wstring BitErrorCount::Progress::State() const
{
    return Done() ? L"Done" : std::to_wstring(blocks) + L" of " + std::to_wstring(wanted);
}

std::wstring BitErrorCount::Progress::Result() const
{
    return errors > 0 ? Scientific(Ratio()) : L"<" + Scientific(1 / std::max(bits, 1.0));
}

BitErrorCount::Progress BitErrorCount::At(double seconds)
{
    const double bits = std::clamp((seconds - startedAt_ + buffered) * bitRate_, 0.0, wanted_ * blockBits);
    const auto complete = static_cast<int32_t>(bits / blockBits);
    if (complete < summedBlocks_) {
        summedBlocks_ = 0;
        summedErrors_ = 0;
    }
    for (; summedBlocks_ < complete; ++summedBlocks_) {
        summedErrors_ += ErrorsOf(summedBlocks_);
    }
    Progress progress{bits, static_cast<double>(summedErrors_), complete, wanted_};
    if (!progress.Done()) {
        const double begun = (bits - complete * blockBits) / blockBits;
        progress.errors += std::floor(begun * static_cast<double>(ErrorsOf(complete)));
    }
    return progress;
}

uint64_t BitErrorCount::ErrorsOf(int32_t block) const
{
    return noise_.Poisson(ber_ * blockBits, errorStream, static_cast<uint64_t>(block));
}

}  // namespace tvn2x
