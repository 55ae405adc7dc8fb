#include "host/receiver/ReceiverOptions.h"

#include <algorithm>

#include "setup/catalogue/Options.h"
#include "text/Blanks.h"

namespace tvn2x {
namespace {

const OptionFact* Find(std::wstring_view code)
{
    const auto found = std::ranges::find(Options(), code, &OptionFact::code);
    return found == Options().end() ? nullptr : &*found;
}

}  // namespace

std::vector<ReceiverOption> ReadOptions(std::wstring_view installed)
{
    std::vector<ReceiverOption> options;
    for (size_t begin = 0; begin <= installed.size();) {
        const size_t end = std::min(installed.find(L',', begin), installed.size());
        if (const std::wstring_view code = TrimBlanks(installed.substr(begin, end - begin)); !code.empty()) {
            options.push_back({std::wstring(code), OptionWords(code)});
        }
        begin = end + 1;
    }
    return options;
}

std::vector<ReceiverOption> MissingOptions(std::wstring_view installed)
{
    const std::vector<ReceiverOption> options = ReadOptions(installed);
    const auto isFitted = [&](const OptionFact& wanted) {
        return std::ranges::any_of(options, [&](const ReceiverOption& option) {
            const OptionFact* const row = Find(option.code);
            return option.code == wanted.code || (row && row->sharesPlaceWith == wanted.code);
        });
    };
    std::vector<ReceiverOption> missing;
    for (const OptionFact& option : Options()) {
        if (option.sharesPlaceWith.empty() && !isFitted(option)) {
            missing.push_back({std::wstring(option.code), std::wstring(option.words)});
        }
    }
    return missing;
}

std::wstring OptionWords(std::wstring_view code)
{
    const OptionFact* const found = Find(code);
    return std::wstring(found ? found->words : std::wstring_view());
}

std::wstring ModeText(int32_t mode)
{
    return std::to_wstring(mode) + (mode == dvbCDemodulator ? L" (DVB-C demodulator)" : L"");
}

}  // namespace tvn2x
