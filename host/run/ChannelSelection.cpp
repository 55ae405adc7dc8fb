#include "host/run/ChannelSelection.h"

#include <numeric>
#include <set>
#include <string>

#include "text/InputError.h"

namespace tvn2x {
namespace {

/// Takes the digits at the front of a text. -1 where there are none, or more than a channel number has.
int32_t TakeNumber(std::wstring_view& text)
{
    constexpr size_t mostDigits = 6;
    int32_t number = 0;
    size_t digits = 0;
    while (digits < text.size() && text[digits] >= L'0' && text[digits] <= L'9' && digits <= mostDigits) {
        number = number * 10 + (text[digits++] - L'0');
    }
    text.remove_prefix(digits);
    return digits == 0 || digits > mostDigits ? -1 : number;
}

void Refuse(std::wstring_view part, const std::wstring& why)
{
    RaiseInput(L"--channels: \"" + std::wstring(part) + L"\" " + why + L". Write channels like 3-7,12,30-.");
}

}  // namespace

std::vector<int32_t> SelectChannels(std::wstring_view selection, int32_t channels)
{
    if (selection.empty()) {
        std::vector<int32_t> all(static_cast<size_t>(channels));
        std::iota(all.begin(), all.end(), 1);
        return all;
    }
    std::set<int32_t> chosen;
    for (size_t begin = 0; begin <= selection.size();) {
        const size_t end = std::min(selection.find(L',', begin), selection.size());
        const std::wstring_view part = selection.substr(begin, end - begin);
        std::wstring_view rest = part;
        const int32_t first = TakeNumber(rest);
        int32_t last = first;
        if (rest.starts_with(L'-')) {
            rest.remove_prefix(1);
            last = rest.empty() ? channels : TakeNumber(rest);
        }
        if (first < 0 || last < 0 || !rest.empty()) {
            Refuse(part, L"is no channel and no range of channels");
        }
        if (first < 1 || first > channels || last > channels) {
            Refuse(part, L"is outside the setup's channels 1 to " + std::to_wstring(channels));
        }
        if (last < first) {
            Refuse(part, L"ends before it begins");
        }
        for (int32_t channel = first; channel <= last; ++channel) {
            chosen.insert(channel);
        }
        begin = end + 1;
    }
    return {chosen.begin(), chosen.end()};
}

}  // namespace tvn2x
