#include "host/plan/ChannelPlan.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

#include "dvbc/Qam.h"
#include "setup/catalogue/Patterns.h"
#include "text/Blanks.h"
#include "text/InputError.h"
#include "text/TextInput.h"
#include "util/Encoding.h"
#include "util/modFormat.h"

namespace tvn2x {
namespace {

const std::wstring planRemedy =
    L"A plan has a [CHANNEL] block per channel, with DELIVERY_SYSTEM, FREQUENCY, SYMBOL_RATE and MODULATION.";

/// The keys of one block as they stand; an empty view is a key that the block lacks.
struct Block
{
    int32_t line = 0;
    std::string_view deliverySystem;
    std::string_view frequency;
    std::string_view symbolRate;
    std::string_view modulation;
};

std::string_view WithoutComment(std::string_view line)
{
    return TrimBlanks(line.substr(0, line.find('#')));
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

/// The older format has one line a channel, which begins with the letter of its delivery system: "C 314000000 6900000".
bool IsOlderFormat(std::string_view line)
{
    return line.size() > 2 && std::string_view("CTSA").find(line[0]) != std::string_view::npos && line[1] == ' ' &&
           line.find_first_of("0123456789") == line.find_first_not_of(' ', 1);
}

void Assign(Block& block, std::string_view key, std::string_view value)
{
    if (key == "DELIVERY_SYSTEM") {
        block.deliverySystem = value;
    } else if (key == "FREQUENCY") {
        block.frequency = value;
    } else if (key == "SYMBOL_RATE") {
        block.symbolRate = value;
    } else if (key == "MODULATION") {
        block.modulation = value;
    }
}

/// Reads hertz or symbols per second as millions. A reason where the text is no whole number or outside the limits.
std::optional<std::wstring> ReadMillions(std::string_view text, const wchar_t* key, double lowest, double highest,
                                         const wchar_t* unit, double& value)
{
    if (text.empty()) {
        return std::wstring(key) + L" is missing";
    }
    uint64_t units = 0;
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), units);
    if (fault != std::errc() || end != text.data() + text.size()) {
        return std::wstring(key) + L" " + Excerpt(text) + L" is not a whole number";
    }
    value = static_cast<double>(units) / 1e6;
    if (value < lowest || value > highest) {
        const auto number = [](double x) { return FormatNumber(x, false, SystemLocale()); };
        return number(value) + L" " + unit + L" is outside the receiver's " + number(lowest) + L" to " +
               number(highest) + L" " + unit;
    }
    return std::nullopt;
}

/// "QAM/64", "QAM64" and "64QAM" are the spellings that occur. A reason where the modulation is another one.
std::optional<std::wstring> ReadModulation(std::string_view text, int32_t orderForAuto, int32_t& order)
{
    if (text.empty()) {
        return L"MODULATION is missing";
    }
    if (text == "QAM/AUTO" || text == "AUTO") {
        order = orderForAuto;
        return order != 0 ? std::nullopt
                          : std::optional<std::wstring>(
                                L"the plan does not name the order of QAM (QAM/AUTO); "
                                L"give it with --order");
    }
    std::string_view digits = text;
    if (digits.starts_with("QAM")) {
        digits.remove_prefix(digits.starts_with("QAM/") ? 4 : 3);
    } else if (digits.ends_with("QAM")) {
        digits.remove_suffix(3);
    }
    const auto [end, fault] = std::from_chars(digits.data(), digits.data() + digits.size(), order);
    if (fault != std::errc() || end != digits.data() + digits.size() || digits.size() == text.size() ||
        !dvbc::IsOrderOfQam(order)) {
        return L"modulation " + Excerpt(text) + L" is none of QAM/4, 16, 32, 64, 128, 256";
    }
    return std::nullopt;
}

/// Why a block cannot be measured; nothing where it can, and the channel is filled in.
std::optional<std::wstring> ReadBlock(const Block& block, int32_t orderForAuto, PlanChannel& channel)
{
    if (block.deliverySystem.empty()) {
        return L"DELIVERY_SYSTEM is missing";
    }
    if (block.deliverySystem != "DVBC/ANNEX_A" && block.deliverySystem != "DVBC/ANNEX_C" &&
        block.deliverySystem != "DVBC") {
        return L"delivery system " + Excerpt(block.deliverySystem) + L" is not DVB-C";
    }
    channel.line = block.line;
    if (auto reason = ReadMillions(block.frequency, L"FREQUENCY", channel_limit::lowestFrequency,
                                   channel_limit::highestFrequency, L"MHz", channel.frequency)) {
        return reason;
    }
    if (auto reason = ReadMillions(block.symbolRate, L"SYMBOL_RATE", channel_limit::lowestSymbolRate,
                                   channel_limit::highestSymbolRate, L"MSymb/s", channel.symbolRate)) {
        return reason;
    }
    return ReadModulation(block.modulation, orderForAuto, channel.orderOfQam);
}

/// The text of a comment line behind its "#" signs, "" where it is no title.
std::wstring TitleOf(std::string_view line)
{
    const size_t begin = std::min(line.find_first_not_of('#'), line.size());
    const std::string_view comment = TrimBlanks(line.substr(begin));
    return IsTitle(comment) ? FromUtf8(comment) : std::wstring();
}

[[noreturn]] void RefuseLine(std::string_view line, const std::wstring& place)
{
    if (IsOlderFormat(line)) {
        RaiseInput(place + Excerpt(line) +
                   L" is the older plan format with one line a channel. Convert it (dvb-format-convert -I CHANNEL -O "
                   L"DVBV5 OLD NEW), or take the plan of the same name from the dvb-c folder.");
    }
    RaiseInput(place + Excerpt(line) + L" is no line of a channel plan. " + planRemedy);
}

/// The blocks of a plan, and its title. Raises on the first line that belongs to no plan.
std::vector<Block> ReadBlocks(std::string_view content, const std::wstring& path, std::wstring& title)
{
    std::vector<Block> blocks;
    LineReader reader(content);
    std::string_view line;
    while (reader.Next(line)) {
        if (line.starts_with('#') && blocks.empty() && title.empty()) {
            title = TitleOf(line);
        }
        line = WithoutComment(line);
        if (line.empty()) {
            continue;
        }
        const size_t equals = line.find('=');
        if (line.starts_with('[') && line.ends_with(']')) {
            blocks.push_back({.line = reader.Number(), .deliverySystem{}, .frequency{}, .symbolRate{}, .modulation{}});
        } else if (equals == std::string_view::npos || blocks.empty()) {
            RefuseLine(line, AtLine(path, reader.Number()));
        } else {
            Assign(blocks.back(), TrimBlanks(line.substr(0, equals)), TrimBlanks(line.substr(equals + 1)));
        }
    }
    return blocks;
}

}  // namespace

ChannelPlan ReadChannelPlan(std::string_view content, const std::wstring& path, int32_t orderForAuto)
{
    RequireText(content, path, L"channel plan", planRemedy);
    ChannelPlan plan;
    const std::vector<Block> blocks = ReadBlocks(content, path, plan.title);
    for (const Block& block : blocks) {
        PlanChannel channel;
        if (auto reason = ReadBlock(block, orderForAuto, channel)) {
            plan.leftOut.push_back({block.line, *reason});
        } else {
            plan.channels.push_back(channel);
        }
    }
    if (plan.leftOut.empty() && plan.channels.empty()) {
        RaiseInput(path + L" has no channels. " + planRemedy);
    }
    if (plan.channels.empty()) {
        const PlanRemark& first = plan.leftOut.front();
        RaiseInput(AtLine(path, first.line) + first.text + L"; no channel of the plan can be measured. " +
                   L"Take the plan of a DVB-C network.");
    }
    return plan;
}

}  // namespace tvn2x
