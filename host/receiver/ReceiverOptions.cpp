#include "host/receiver/ReceiverOptions.h"

#include <algorithm>

namespace tvn2x {

namespace {

struct Known
{
    std::wstring_view code;
    std::wstring_view words;
    std::wstring_view sharesPlaceWith = {};  ///< the entry that stands for both
};

constexpr std::wstring_view bothFilters = L"KTR-H8 (or KTR-H9)";

constexpr Known known[] = {
    {L"KTR-H2", L"DVB-C demodulator (operating mode 4)"},
    {L"KTR-H4", L"SAW filter of 8 MHz"},
    {L"KTR-H5", L"receiver input of 50 or 75 ohm"},
    {L"KTR-H6", L"SAW filter of 2 MHz"},
    {bothFilters, L"SAW filters of 6 and 7 MHz, which share one place"},
    {L"KTR-H8", L"SAW filter of 6 MHz", bothFilters},
    {L"KTR-H9", L"SAW filter of 7 MHz", bothFilters},
    {L"KTR-H7", L"operating mode 13"},
    {L"KTR-S31", L"operating modes 6 and 8"},
    {L"KTR-S32", L"operating mode 14"},
    {L"KTR-S33", L"operating mode 7"},
    {L"EXTREF", L"input for an external 10 MHz reference"},
    {L"EAMOD", L"receiver input"},
    {L"RB", L"demodulator input"},
};

std::wstring_view Trimmed(std::wstring_view text)
{
    const size_t first = text.find_first_not_of(L" \t");
    return first == text.npos ? std::wstring_view() : text.substr(first, text.find_last_not_of(L" \t") - first + 1);
}

}  // namespace

std::vector<ReceiverOption> ReadOptions(std::wstring_view installed)
{
    std::vector<ReceiverOption> options;
    for (size_t begin = 0; begin <= installed.size();) {
        const size_t end = std::min(installed.find(L',', begin), installed.size());
        if (const std::wstring_view code = Trimmed(installed.substr(begin, end - begin)); !code.empty()) {
            options.push_back({std::wstring(code), OptionWords(code)});
        }
        begin = end + 1;
    }
    return options;
}

std::vector<ReceiverOption> MissingOptions(std::wstring_view installed)
{
    const std::vector<ReceiverOption> options = ReadOptions(installed);
    const auto isFitted = [&](const Known& wanted) {
        return std::ranges::any_of(options, [&](const ReceiverOption& option) {
            const auto* row = std::ranges::find(known, std::wstring_view(option.code), &Known::code);
            return option.code == wanted.code || (row != std::end(known) && row->sharesPlaceWith == wanted.code);
        });
    };
    std::vector<ReceiverOption> missing;
    for (const Known& option : known) {
        if (option.sharesPlaceWith.empty() && !isFitted(option)) {
            missing.push_back({std::wstring(option.code), std::wstring(option.words)});
        }
    }
    return missing;
}

std::wstring OptionWords(std::wstring_view code)
{
    const auto* found = std::ranges::find(known, code, &Known::code);
    return std::wstring(found == std::end(known) ? std::wstring_view() : found->words);
}

std::wstring ModeText(int32_t mode)
{
    constexpr int32_t dvbC = 4;
    return std::to_wstring(mode) + (mode == dvbC ? L" (DVB-C demodulator)" : L"");
}

}  // namespace tvn2x
