#include "editor/NaturalOrder.h"

#include <algorithm>
#include <cwctype>
#include <numeric>
#include <string>

namespace tvn2x {
namespace {

bool IsDigit(wchar_t c)
{
    return c >= L'0' && c <= L'9';
}

/// What is compared in place of a label: its letters in lower case, which is asked of the system once a label and not
/// once a comparison, and of a number the place of digits among the letters, its length without leading zeros, and its
/// digits.
std::wstring NaturalKey(std::wstring_view label)
{
    std::wstring key;
    key.reserve(label.size() + 8);
    while (!label.empty()) {
        if (!IsDigit(label.front())) {
            key += static_cast<wchar_t>(std::towlower(static_cast<wint_t>(label.front())));
            label.remove_prefix(1);
            continue;
        }
        const auto end = static_cast<size_t>(std::ranges::find_if_not(label, IsDigit) - label.begin());
        const size_t zeros = std::min(label.find_first_not_of(L'0'), end);
        key += L'0';
        key += static_cast<wchar_t>(end - zeros);
        key += label.substr(zeros, end - zeros);
        label.remove_prefix(end);
    }
    return key;
}

}  // namespace

std::vector<int32_t> NaturalRanks(const std::vector<std::wstring_view>& labels)
{
    std::vector<std::wstring> keys(labels.size());
    std::ranges::transform(labels, keys.begin(), NaturalKey);
    std::vector<size_t> order(labels.size());
    std::iota(order.begin(), order.end(), size_t{0});
    std::ranges::sort(order, [&](size_t left, size_t right) {
        const int byKey = keys[left].compare(keys[right]);
        return byKey != 0 ? byKey < 0 : labels[left] < labels[right];
    });
    std::vector<int32_t> ranks(labels.size());
    for (size_t place = 1; place < order.size(); ++place) {
        const bool isSame = labels[order[place]] == labels[order[place - 1]];
        ranks[order[place]] = ranks[order[place - 1]] + (isSame ? 0 : 1);
    }
    return ranks;
}

}  // namespace tvn2x
