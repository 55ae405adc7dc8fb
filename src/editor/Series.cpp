#include "editor/Series.h"

#include <algorithm>

namespace tvn2x {

std::wstring CountOn(std::wstring_view label, int64_t by)
{
    constexpr std::wstring_view digits = L"0123456789";
    constexpr size_t mostDigits = 15;
    const size_t last = label.find_last_of(digits);
    if (last == label.npos) {
        return std::wstring(label);
    }
    const size_t before = label.find_last_not_of(digits, last);
    const size_t first = before == label.npos ? 0 : before + 1;
    const size_t length = last + 1 - first;
    if (length > mostDigits) {
        return std::wstring(label);
    }
    const int64_t number = std::stoll(std::wstring(label.substr(first, length)));
    std::wstring counted = std::to_wstring(std::max<int64_t>(number + by, 0));
    counted.insert(0, length > counted.size() ? length - counted.size() : 0, L'0');
    return std::wstring(label.substr(0, first)) + counted + std::wstring(label.substr(last + 1));
}

}  // namespace tvn2x
