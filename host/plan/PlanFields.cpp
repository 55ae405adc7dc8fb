#include "host/plan/PlanFields.h"

#include <algorithm>
#include <charconv>

#include "dvbc/Qam.h"
#include "setup/catalogue/Patterns.h"
#include "text/Blanks.h"
#include "text/TextInput.h"
#include "util/Encoding.h"
#include "util/modFormat.h"

namespace tvn2x {
namespace {

std::optional<std::wstring> Outside(double value, double lowest, double highest, const std::wstring& unit)
{
    if (value >= lowest && value <= highest) {
        return std::nullopt;
    }
    const auto number = [](double x) { return FormatNumber(x, false, SystemLocale()); };
    return number(value) + L" " + unit + L" is outside the receiver's " + number(lowest) + L" to " + number(highest) +
           L" " + unit;
}

/// Letters and digits, in upper case.
std::string Compact(std::string_view text)
{
    std::string compact;
    for (const char c : text) {
        const bool isLower = c >= 'a' && c <= 'z';
        if (isLower || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')) {
            compact += static_cast<char>(isLower ? c - 0x20 : c);
        }
    }
    return compact;
}

/// A heading such as "freq sr fec mod" or a ruler of dashes is no title.
bool IsTitle(std::string_view comment)
{
    const auto isLetter = [](char c) {
        return static_cast<unsigned char>(c) >= 0x80 || ((c | 0x20) >= 'a' && (c | 0x20) <= 'z');
    };
    return std::count_if(comment.begin(), comment.end(), isLetter) >= 3 && !comment.starts_with("freq") &&
           comment.find("automatically generated") == std::string_view::npos;
}

}  // namespace

std::optional<std::wstring> TakeFrequency(double megahertz, PlanChannel& channel)
{
    channel.frequency = megahertz;
    return Outside(megahertz, channel_limit::lowestFrequency, channel_limit::highestFrequency, L"MHz");
}

std::optional<std::wstring> TakeSymbolRate(double symbolRate, const PlanDefaults& defaults, PlanChannel& channel)
{
    channel.symbolRate = symbolRate == 0 ? defaults.symbolRate : symbolRate;
    if (channel.symbolRate == 0) {
        return L"the plan does not name the symbol rate; give it with --symbol-rate";
    }
    return Outside(channel.symbolRate, channel_limit::lowestSymbolRate, channel_limit::highestSymbolRate, L"MSymb/s");
}

std::optional<std::wstring> TakeModulation(std::string_view text, const PlanDefaults& defaults, PlanChannel& channel)
{
    std::string order = Compact(text);
    if (order.empty() || order == "QAMAUTO" || order == "AUTO") {
        channel.orderOfQam = defaults.orderOfQam;
        return channel.orderOfQam != 0
                   ? std::nullopt
                   : std::optional<std::wstring>(L"the plan does not name the order of QAM" +
                                                 std::wstring(order.empty() ? L"" : L" (QAM/AUTO)") +
                                                 L"; give it with --order");
    }
    if (order.starts_with("QAM")) {
        order.erase(0, 3);
    } else if (order.ends_with("QAM")) {
        order.erase(order.size() - 3);
    }
    const auto [end, fault] = std::from_chars(order.data(), order.data() + order.size(), channel.orderOfQam);
    if (fault != std::errc() || end != order.data() + order.size() || !dvbc::IsOrderOfQam(channel.orderOfQam)) {
        return L"modulation " + Excerpt(text) + L" is none of QAM/4, 16, 32, 64, 128, 256";
    }
    return std::nullopt;
}

std::wstring TitleOf(std::string_view line)
{
    const size_t begin = std::min(line.find_first_not_of('#'), line.size());
    const std::string_view comment = TrimBlanks(line.substr(begin));
    return IsTitle(comment) ? FromUtf8(comment) : std::wstring();
}

}  // namespace tvn2x
