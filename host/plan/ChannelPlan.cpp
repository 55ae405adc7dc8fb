#include "host/plan/ChannelPlan.h"

#include <charconv>
#include <cmath>
#include <optional>

#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/plan/ChannelRaster.h"
#include "host/plan/PlanFields.h"
#include "host/plan/TablePlan.h"
#include "text/Blanks.h"
#include "text/InputError.h"
#include "text/TextInput.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

const std::wstring planRemedy =
    L"A plan has a [CHANNEL] block per channel, with DELIVERY_SYSTEM, FREQUENCY, SYMBOL_RATE and MODULATION, or a row "
    L"per channel: label, frequency, symbol rate, QAM.";

/// The keys of one block as they stand; an empty view is a key that the block lacks.
struct Block
{
    int32_t line = 0;
    std::string_view name;
    std::string_view deliverySystem;
    std::string_view frequency;
    std::string_view symbolRate;
    std::string_view modulation;
};

/// The name of a block's first line; nothing for any other line. A name may hold "#" and "]": it ends where the line
/// does, or a comment begins behind it.
std::optional<std::string_view> NameIn(std::string_view line)
{
    if (!line.starts_with('[')) {
        return std::nullopt;
    }
    for (size_t end = line.find(']'); end != std::string_view::npos; end = line.find(']', end + 1)) {
        const std::string_view behind = TrimBlanks(line.substr(end + 1));
        if (behind.empty() || behind.starts_with('#')) {
            return TrimBlanks(line.substr(1, end - 1));
        }
    }
    return std::nullopt;
}

std::string_view WithoutComment(std::string_view line)
{
    return TrimBlanks(line.substr(0, line.find('#')));
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

/// Reads hertz or symbols per second as millions; 0 where there are none. A reason where the text is no whole number.
std::optional<std::wstring> ReadMillions(std::string_view text, const wchar_t* key, double& value)
{
    uint64_t units = 0;
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), units);
    if (!text.empty() && (fault != std::errc() || end != text.data() + text.size())) {
        return std::wstring(key) + L" " + Excerpt(text) + L" is not a whole number";
    }
    value = static_cast<double>(units) / 1e6;
    return std::nullopt;
}

/// Why a block cannot be measured; nothing where it can, and the channel is filled in.
std::optional<std::wstring> ReadBlock(const Block& block, const PlanDefaults& defaults, PlanChannel& channel)
{
    if (block.deliverySystem.empty()) {
        return L"DELIVERY_SYSTEM is missing";
    }
    if (block.deliverySystem != "DVBC/ANNEX_A" && block.deliverySystem != "DVBC/ANNEX_C" &&
        block.deliverySystem != "DVBC") {
        return L"delivery system " + Excerpt(block.deliverySystem) + L" is not DVB-C";
    }
    channel.line = block.line;
    channel.label = block.name == "CHANNEL" ? L"" : FromUtf8(block.name);
    if (block.frequency.empty()) {
        return L"FREQUENCY is missing";
    }
    double frequency = 0, symbolRate = 0;
    if (auto reason = ReadMillions(block.frequency, L"FREQUENCY", frequency)) {
        return reason;
    }
    if (auto reason = ReadMillions(block.symbolRate, L"SYMBOL_RATE", symbolRate)) {
        return reason;
    }
    if (auto reason = TakeFrequency(frequency, channel)) {
        return reason;
    }
    if (auto reason = TakeSymbolRate(symbolRate, defaults, channel)) {
        return reason;
    }
    return TakeModulation(block.modulation, defaults, channel);
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
        if (const auto name = NameIn(line)) {
            blocks.push_back({.line = reader.Number(),
                              .name = *name,
                              .deliverySystem{},
                              .frequency{},
                              .symbolRate{},
                              .modulation{}});
            continue;
        }
        line = WithoutComment(line);
        if (line.empty()) {
            continue;
        }
        const size_t equals = line.find('=');
        if (equals == std::string_view::npos || blocks.empty()) {
            RefuseLine(line, AtLine(path, reader.Number()));
        } else {
            Assign(blocks.back(), TrimBlanks(line.substr(0, equals)), TrimBlanks(line.substr(equals + 1)));
        }
    }
    return blocks;
}

ChannelPlan ReadBlockPlan(std::string_view content, const std::wstring& path, const PlanDefaults& defaults)
{
    ChannelPlan plan;
    const std::vector<Block> blocks = ReadBlocks(content, path, plan.title);
    for (const Block& block : blocks) {
        PlanChannel channel;
        if (auto reason = ReadBlock(block, defaults, channel)) {
            plan.leftOut.push_back({block.line, *reason});
        } else {
            plan.channels.push_back(std::move(channel));
        }
    }
    return plan;
}

/// The first line that is neither empty nor a comment.
std::string_view FirstLine(std::string_view content)
{
    LineReader reader(content);
    std::string_view line;
    while (reader.Next(line)) {
        if (!line.empty() && !line.starts_with('#')) {
            return line;
        }
    }
    return {};
}

}  // namespace

std::wstring PlanChannel::Label() const
{
    return label.empty() ? ChannelLabel(frequency) : label;
}

ChannelPlan ReadChannelPlan(std::string_view content, const std::wstring& path, const PlanDefaults& defaults)
{
    RequireText(content, path, L"channel plan", planRemedy);
    ChannelPlan plan = IsTableRow(FirstLine(content)) ? ReadTablePlan(content, path, defaults)
                                                      : ReadBlockPlan(content, path, defaults);
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

ChannelPlan RasterPlan(double from, double to, double step, const PlanDefaults& defaults)
{
    constexpr double mostChannels = 1000, rounding = 1e-6;
    const double steps = std::floor((to - from) / step + rounding);
    if (!(step > 0 && steps >= 0 && steps < mostChannels)) {
        RaiseInput(
            fmt::format(L"{:g} to {:g} MHz in steps of {:g} MHz are not 1 to {:g} channels. Write --from 306 --to "
                        L"858 --step 8.",
                        from, to, step, mostChannels));
    }
    ChannelPlan plan;
    for (int i = 0; i <= static_cast<int>(steps); ++i) {
        PlanChannel channel;
        const auto kilohertz = std::round((from + i * step) * 1000);
        for (const auto& reason : {TakeFrequency(kilohertz / 1000, channel), TakeSymbolRate(0, defaults, channel),
                                   TakeModulation("", defaults, channel)}) {
            if (reason) {
                RaiseInput(*reason);
            }
        }
        plan.channels.push_back(std::move(channel));
    }
    return plan;
}

}  // namespace tvn2x
