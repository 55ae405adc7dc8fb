#pragma once

#include <string>
#include <vector>

#include "host/plan/ChannelPlan.h"

namespace tvn2x {

/// One setup to be made of a plan. A setup has one order of QAM for all its channels.
struct SetupDraft
{
    std::wstring path;
    int32_t orderOfQam = 0;
    double defaultSymbolRate = 0;       ///< MSymb/s, the one that most channels have
    std::vector<PlanChannel> channels;  ///< by ascending frequency, no frequency twice
};

/// The setups that a plan gives.
struct SetupDrafts
{
    std::vector<SetupDraft> setups;   ///< by ascending order of QAM
    std::vector<PlanRemark> notices;  ///< duplicates dropped, frequencies that have two orders
};

/// Sorts a plan's channels into setups. One order of QAM in the plan: one setup at `target`; several: one each, with
/// "-64qam" and the like before the extension.
SetupDrafts DraftSetups(const ChannelPlan& plan, const std::wstring& target);

}  // namespace tvn2x
