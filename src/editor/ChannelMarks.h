#pragma once

#include <cstdint>
#include <vector>

namespace tvn2x {

/// What of a channel's place in the spectrum deserves a second look. It is shown and never refused.
struct ChannelMark
{
    /// How a channel stands to another one.
    enum class Kind
    {
        none,
        equal,       ///< the same frequency
        overlapping  ///< their bandwidths have a part in common
    };

    bool operator==(const ChannelMark&) const = default;

    Kind kind = Kind::none;
    int32_t other = 0;  ///< row of one such channel
    double common = 0;  ///< width of the common part in MHz, for overlapping ones
};

/// Where a channel is, as far as it is known.
struct ChannelPlace
{
    double frequency;   ///< centre in MHz; NaN for none
    double symbolRate;  ///< MSymb/s; NaN for none
};

/// A mark for each channel. rollOff: the share of the symbol rate by which the occupied bandwidth exceeds it, 0.15 for
/// example. Channels without a frequency have none; those without a symbol rate can be equal to others only.
std::vector<ChannelMark> MarkChannels(const std::vector<ChannelPlace>& channels, double rollOff);

}  // namespace tvn2x
