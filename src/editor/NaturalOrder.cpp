#include "editor/NaturalOrder.h"

#include <algorithm>
#include <cwctype>
#include <numeric>

namespace tvn2x {
namespace {

bool IsDigit(wchar_t c)
{
    return c >= L'0' && c <= L'9';
}

/// Takes a number from the front of a text, without its leading zeros.
std::wstring_view TakeNumber(std::wstring_view& text)
{
    const auto length = static_cast<size_t>(std::find_if_not(text.begin(), text.end(), IsDigit) - text.begin());
    std::wstring_view number = text.substr(0, length);
    text.remove_prefix(length);
    number.remove_prefix(std::min(number.find_first_not_of(L'0'), number.size()));
    return number;
}

template <class T>
int Order(const T& left, const T& right)
{
    return (left > right) - (left < right);
}

/// How many characters two labels begin with alike, up to where a number begins that may not be the same. Labels of a
/// plan mostly differ behind a long beginning, and the system's tables of letters are slow to ask.
size_t SameBeginning(std::wstring_view left, std::wstring_view right)
{
    auto length = static_cast<size_t>(std::ranges::mismatch(left, right).in1 - left.begin());
    while (length > 0 && IsDigit(left[length - 1])) {
        --length;
    }
    return length;
}

}  // namespace

int CompareNaturally(std::wstring_view left, std::wstring_view right)
{
    const size_t same = SameBeginning(left, right);
    std::wstring_view l = left.substr(same);
    std::wstring_view r = right.substr(same);
    while (!l.empty() && !r.empty()) {
        int order = 0;
        if (IsDigit(l.front()) && IsDigit(r.front())) {
            const std::wstring_view leftNumber = TakeNumber(l);
            const std::wstring_view rightNumber = TakeNumber(r);
            order = Order(leftNumber.size(), rightNumber.size());
            order = order != 0 ? order : leftNumber.compare(rightNumber);
        } else {
            order = Order(std::towlower(static_cast<wint_t>(l.front())), std::towlower(static_cast<wint_t>(r.front())));
            l.remove_prefix(1);
            r.remove_prefix(1);
        }
        if (order != 0) {
            return order;
        }
    }
    const int order = Order(l.size(), r.size());
    return order != 0 ? order : left.compare(right);
}

std::vector<int32_t> NaturalRanks(const std::vector<std::wstring_view>& texts)
{
    std::vector<size_t> order(texts.size());
    std::iota(order.begin(), order.end(), size_t{0});
    std::sort(order.begin(), order.end(),
              [&](size_t left, size_t right) { return CompareNaturally(texts[left], texts[right]) < 0; });
    std::vector<int32_t> ranks(texts.size());
    for (size_t place = 1; place < order.size(); ++place) {
        const bool isSame = texts[order[place]] == texts[order[place - 1]];
        ranks[order[place]] = ranks[order[place - 1]] + (isSame ? 0 : 1);
    }
    return ranks;
}

}  // namespace tvn2x
