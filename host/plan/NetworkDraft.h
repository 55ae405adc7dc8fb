#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/plan/ChannelPlan.h"

namespace tvn2x {

/// What comes a second time, from two places that are badly matched.
struct NetworkEcho
{
    double ratio;   ///< dB below the signal
    double length;  ///< m of cable
};

/// One carrier as it leaves the head end and reaches the outlet.
struct NetworkChannel
{
    double frequency;   ///< MHz
    double symbolRate;  ///< MSymb/s
    int32_t orderOfQam;
    double level;  ///< dBµV at the low end of the band; the tilt comes off
    double carrierToInterference;
    double carrierSuppression;          ///< dB
    double phaseJitter;                 ///< degrees RMS
    double iqImbalance;                 ///< %
    double quadratureError;             ///< degrees
    double frequencyOffset;             ///< Hz
    double symbolRateOffset;            ///< ppm
    std::wstring label;                 ///< as in the plan
    std::optional<NetworkEcho> echo{};  ///< nothing for none
    bool dropsOut = false;              ///< the transport stream comes and goes
    bool isMissing = false;             ///< no carrier at all
    std::wstring fault{};               ///< what a cable engineer would call it, "" for a good channel
};

/// An invented network, as its model file is written.
struct NetworkDraft
{
    uint64_t seed = 0;
    double noiseFigure = 8;                ///< dB
    double tilt = 8;                       ///< dB at 862 MHz
    double headEndMer = 43;                ///< dB
    std::vector<NetworkChannel> channels;  ///< by ascending frequency
    std::vector<PlanRemark> leftOut;       ///< what a network model cannot hold
};

/// Invents the network that a plan could belong to: levels with tilt and ripple, small differences from channel to
/// channel and, with hasFaults, at most one channel in three with a fault. The same seed gives the same network.
NetworkDraft DraftNetwork(const ChannelPlan& plan, uint64_t seed, bool hasFaults);

}  // namespace tvn2x
