#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/plan/ChannelPlan.h"

namespace tvn2x {

/// One carrier as it leaves the head end and reaches the outlet.
struct NetworkChannel
{
    double frequency = 0;   ///< MHz
    double symbolRate = 0;  ///< MSymb/s
    int32_t orderOfQam = 0;
    double level = 0;  ///< dBµV at the low end of the band; the tilt comes off
    double carrierToInterference = 0;
    double carrierSuppression = 0;  ///< dB
    double phaseJitter = 0;         ///< degrees RMS
    double iqImbalance = 0;         ///< %
    double quadratureError = 0;     ///< degrees
    double echoRatio = 0;           ///< dB that the echo is below the signal
    double echoLength = 0;          ///< m of cable, 0 is no echo
    double frequencyOffset = 0;     ///< Hz
    double symbolRateOffset = 0;    ///< ppm
    bool dropsOut = false;          ///< the transport stream comes and goes
    bool isMissing = false;         ///< no carrier at all
    std::wstring label{};           ///< as in the plan
    std::wstring fault{};           ///< what a cable engineer would call it, "" for a good channel
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
