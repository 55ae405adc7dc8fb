#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tvn2x {

/// One channel of a plan.
struct PlanChannel
{
    double frequency = 0;   ///< centre frequency in MHz
    double symbolRate = 0;  ///< in MSymb/s
    int32_t orderOfQam = 0;
    int32_t line = 0;  ///< of the plan, where its block begins
};

/// Something the user should know about one line of a plan.
struct PlanRemark
{
    int32_t line = 0;
    std::wstring text;
};

/// The DVB-C channels of a network, in the order of its file.
struct ChannelPlan
{
    std::wstring title;  ///< first comment that says something, "" where none does
    std::vector<PlanChannel> channels;
    std::vector<PlanRemark> leftOut;  ///< blocks that cannot be measured, with the reason
};

/// Reads a channel file of the DVBv5 kind: [CHANNEL] blocks with DELIVERY_SYSTEM, FREQUENCY (Hz), SYMBOL_RATE
/// (symbols/s) and MODULATION ("QAM/64"); "#" begins a comment, other keys are passed over.
///
/// orderForAuto is the order of QAM of channels whose plan says QAM/AUTO; with 0 they are left out. Raises
/// unusableInput where the file is no such plan, is in the older format with one line a channel, or has no channel that
/// can be measured.
ChannelPlan ReadChannelPlan(std::string_view content, const std::wstring& path, int32_t orderForAuto = 0);

}  // namespace tvn2x
