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
    int32_t line = 0;      ///< of the plan, where the channel begins
    std::wstring label{};  ///< of the channel or of a service in it, "" where the plan has none

    /// The label, or what the raster calls the frequency.
    std::wstring Label() const;
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
    std::vector<PlanRemark> leftOut;  ///< channels that cannot be measured, with the reason
};

/// What holds for channels of which a plan does not say it; 0 leaves them out.
struct PlanDefaults
{
    int32_t orderOfQam = 0;
    double symbolRate = 0;  ///< MSymb/s
};

/// Reads a plan of either kind, told apart by its first line:
/// - A channel file of the DVBv5 kind: [CHANNEL] blocks with DELIVERY_SYSTEM, FREQUENCY (Hz), SYMBOL_RATE (symbols/s)
///   and MODULATION ("QAM/64"); "#" begins a comment, other keys are passed over. A block with another name than
///   CHANNEL is a service of that name.
/// - A table with a row for each channel and "," or ";" between the cells: label, frequency, symbol rate, QAM. A
///   heading may name the columns, in any order. Frequencies may be in MHz, kHz or Hz, symbol rates in MSymb/s, kSymb/s
///   or symbols/s; their size tells which.
///
/// Raises unusableInput where the file is no such plan, is in the older format with one line a channel, or has no
/// channel that can be measured.
ChannelPlan ReadChannelPlan(std::string_view content, const std::wstring& path, const PlanDefaults& defaults = {});

/// The channels from one frequency to another, in MHz, one every `step`. The defaults say what they are like. Raises
/// unusableInput where that makes no channels, or none that a receiver can measure.
ChannelPlan RasterPlan(double from, double to, double step, const PlanDefaults& defaults);

}  // namespace tvn2x
