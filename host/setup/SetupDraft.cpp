#include "host/setup/SetupDraft.h"

#include <algorithm>
#include <map>

#include "util/modFormat.h"

namespace tvn2x {
namespace {

std::wstring Number(double value)
{
    return FormatNumber(value, false, SystemLocale());
}

std::wstring BeforeExtension(const std::wstring& path, const std::wstring& suffix)
{
    const size_t name = path.find_last_of(L"\\/") + 1;
    const size_t dot = path.find_last_of(L'.');
    const size_t at = dot == std::wstring::npos || dot <= name ? path.size() : dot;
    return path.substr(0, at) + suffix + path.substr(at);
}

double MostFrequentSymbolRate(const std::vector<PlanChannel>& channels)
{
    std::map<double, int> uses;
    for (const PlanChannel& channel : channels) {
        ++uses[channel.symbolRate];
    }
    return std::ranges::max_element(uses, {}, [](const auto& entry) { return entry.second; })->first;
}

/// Drops what comes twice. The first one in the file stays. Services that share a channel are no fault of the plan:
/// they have one notice in all.
void DropDuplicates(std::vector<PlanChannel>& channels, std::vector<PlanRemark>& notices)
{
    std::vector<PlanChannel> kept;
    int32_t firstShared = 0;
    for (const PlanChannel& channel : channels) {
        if (kept.empty() || kept.back().frequency != channel.frequency) {
            kept.push_back(channel);
            continue;
        }
        const PlanChannel& first = kept.back();
        if (!channel.label.empty() && channel.label != first.label && channel.symbolRate == first.symbolRate) {
            firstShared = firstShared == 0 ? channel.line : std::min(firstShared, channel.line);
            continue;
        }
        std::wstring text =
            Number(channel.frequency) + L" MHz is in the plan already (line " + std::to_wstring(first.line) + L")";
        if (channel.symbolRate != first.symbolRate) {
            text += L", there with " + Number(first.symbolRate) + L" instead of " + Number(channel.symbolRate) +
                    L" MSymb/s";
        }
        notices.push_back({channel.line, text + L"; dropped"});
    }
    if (firstShared != 0) {
        notices.push_back({firstShared,
                           L"here and below are names of channels that the plan has already; a channel keeps "
                           L"its first one"});
    }
    channels = std::move(kept);
}

/// A frequency in two setups is no error (a plan may be unsure), but the user should know why it is measured twice.
void NoteSharedFrequencies(const std::vector<SetupDraft>& setups, std::vector<PlanRemark>& notices)
{
    std::map<double, int32_t> orderByFrequency;
    for (const SetupDraft& setup : setups) {
        for (const PlanChannel& channel : setup.channels) {
            const auto [entry, isNew] = orderByFrequency.emplace(channel.frequency, channel.orderOfQam);
            if (!isNew) {
                notices.push_back({channel.line, Number(channel.frequency) + L" MHz is in the plan as " +
                                                     std::to_wstring(entry->second) + L"-QAM and as " +
                                                     std::to_wstring(channel.orderOfQam) +
                                                     L"-QAM; it is in both setups"});
            }
        }
    }
}

}  // namespace

SetupDrafts DraftSetups(const ChannelPlan& plan, const std::wstring& target)
{
    std::map<int32_t, std::vector<PlanChannel>> byOrder;
    for (const PlanChannel& channel : plan.channels) {
        byOrder[channel.orderOfQam].push_back(channel);
    }
    SetupDrafts drafts;
    for (auto& [order, channels] : byOrder) {
        std::ranges::stable_sort(channels, {}, &PlanChannel::frequency);
        DropDuplicates(channels, drafts.notices);
        const std::wstring path =
            byOrder.size() == 1 ? target : BeforeExtension(target, L"-" + std::to_wstring(order) + L"qam");
        const double symbolRate = MostFrequentSymbolRate(channels);
        drafts.setups.push_back({path, order, symbolRate, std::move(channels)});
    }
    NoteSharedFrequencies(drafts.setups, drafts.notices);
    std::ranges::stable_sort(drafts.notices, {}, &PlanRemark::line);
    return drafts;
}

}  // namespace tvn2x
