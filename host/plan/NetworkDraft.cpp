#include "host/plan/NetworkDraft.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "dvbc/Impairments.h"
#include "dvbc/Qam.h"
#include "dvbc/Tilt.h"
#include "host/plan/SeededRandom.h"

namespace tvn2x {
namespace {

constexpr double pi = std::numbers::pi;

/// What a network model can hold.
constexpr double lowestModelFrequency = 30;    // MHz
constexpr double lowestModelSymbolRate = 0.5;  // MSymb/s

/// MER in dB below which packets are lost.
double FailureThreshold(int32_t order)
{
    return dvbc::RequiredEsN0(order, dvbc::failureBer);
}

/// The share of the network's tilt that a frequency has.
double TiltShare(double frequency)
{
    constexpr double bandStart = 47;  // MHz
    constexpr double bandEnd = 862;
    return dvbc::TiltPosition(frequency, bandStart, bandEnd);
}

NetworkChannel GoodChannel(const PlanChannel& planned, double ripplePhase, uint64_t seed)
{
    // Seeded by the frequency: a channel keeps its values whatever else is in the plan.
    SeededRandom random(seed ^ static_cast<uint64_t>(planned.frequency * 1e6));
    // Networks run the dense constellations 6 dB above the others.
    const double base = planned.orderOfQam > 64 ? 66 : 60;
    const double ripple = std::sin(2 * pi * planned.frequency / 130 + ripplePhase);
    return {.frequency = planned.frequency,
            .symbolRate = planned.symbolRate,
            .orderOfQam = planned.orderOfQam,
            .level = base + ripple + 0.4 * random.Normal(),
            .carrierToInterference = 52 + 1.5 * random.Normal(),
            .carrierSuppression = 48 + 1.5 * random.Normal(),
            .phaseJitter = random.Between(0.15, 0.35),
            .iqImbalance = random.Between(0.1, 0.5),
            .quadratureError = random.Between(-0.3, 0.3),
            .frequencyOffset = 1500 * random.Normal(),
            .symbolRateOffset = 2 * random.Normal(),
            .label = planned.Label()};
}

/// A radio service that leaks into cables.
struct IngressSource
{
    double low;  // MHz
    double high;
    const wchar_t* name;
};

constexpr IngressSource ingressSources[] = {
    {787, 825, L"ingress from an LTE base station (band 20, 791 to 821 MHz)"},
    {828, 866, L"ingress from LTE handsets (band 20, 832 to 862 MHz)"},
    {754, 787, L"ingress from a mobile base station (band 28, 758 to 788 MHz)"},
    {171, 220, L"second harmonic of FM broadcast, made by an overdriven house amplifier"},
    {386, 404, L"ingress from a TETRA base station (390 to 395 MHz)"},
};

bool Reaches(const IngressSource& source, const NetworkChannel& channel)
{
    return channel.frequency > source.low && channel.frequency < source.high;
}

/// The faults, each on a channel that is good so far. They are put right beside the point where packets are lost, so
/// that readings, bit errors and locks differ from fault to fault.
void AddIngress(NetworkChannel& channel, const NetworkDraft&, SeededRandom&)
{
    const auto source =
        std::ranges::find_if(ingressSources, [&](const IngressSource& each) { return Reaches(each, channel); });
    channel.fault = source == std::end(ingressSources) ? L"ingress from a radio microphone through a loose connector"
                                                       : source->name;
    channel.carrierToInterference = FailureThreshold(channel.orderOfQam) + 0.5;
}

void RemoveCarrier(NetworkChannel& channel, const NetworkDraft&, SeededRandom&)
{
    channel.fault = L"the carrier is missing: its modulator is off";
    channel.isMissing = true;
}

void LowerLevel(NetworkChannel& channel, const NetworkDraft& network, SeededRandom&)
{
    channel.fault = L"low level: a corroded splitter on the way to the outlet has a notch here";
    channel.level = dvbc::NoiseFloor(channel.symbolRate * 1e6, network.noiseFigure) +
                    FailureThreshold(channel.orderOfQam) + 2.5 + network.tilt * TiltShare(channel.frequency);
}

void AddPhaseNoise(NetworkChannel& channel, const NetworkDraft&, SeededRandom&)
{
    channel.fault = L"phase noise of a failing converter at the head end";
    channel.phaseJitter = dvbc::JitterOfRatio(FailureThreshold(channel.orderOfQam) + 1.5);
}

void UnbalanceModulator(NetworkChannel& channel, const NetworkDraft&, SeededRandom& random)
{
    channel.fault = L"I/Q imbalance and poor carrier suppression of a modulator out of adjustment";
    const double threshold = FailureThreshold(channel.orderOfQam);
    channel.iqImbalance = dvbc::ImbalanceOfRatio(threshold + 6);
    channel.quadratureError = random.Between(1.5, 2.5);
    channel.carrierSuppression = threshold + 7;
}

void DropOut(NetworkChannel& channel, const NetworkDraft&, SeededRandom&)
{
    channel.fault = L"the stream drops in and out: a loose plug at the multiplexer";
    channel.dropsOut = true;
}

/// A receiver that is told another order never locks.
void ChangeOrder(NetworkChannel& channel, const NetworkDraft&, SeededRandom&)
{
    const int32_t planned = channel.orderOfQam;
    channel.orderOfQam = planned == 64 ? 256 : planned > 64 ? 64 : 4 * planned;
    channel.fault = L"the head end sends " + std::to_wstring(channel.orderOfQam) + L"-QAM, the plan says " +
                    std::to_wstring(planned) + L"-QAM";
}

void AddEcho(NetworkChannel& channel, const NetworkDraft&, SeededRandom& random)
{
    channel.fault = L"a long echo between two badly matched taps, beyond the equaliser's reach";
    channel.echo = {.ratio = FailureThreshold(channel.orderOfQam) + 2, .length = std::floor(random.Between(380, 460))};
}

void ShiftFrequency(NetworkChannel& channel, const NetworkDraft&, SeededRandom& random)
{
    channel.fault = L"the converter at the head end has drifted; receivers still lock";
    channel.frequencyOffset = random.Between(60e3, 110e3);
}

using Fault = void (*)(NetworkChannel&, const NetworkDraft&, SeededRandom&);

/// In the order in which a small network gets them; ingress comes first, on a channel where it occurs.
constexpr Fault faults[] = {RemoveCarrier, LowerLevel, AddPhaseNoise,      DropOut,
                            ChangeOrder,   AddEcho,    UnbalanceModulator, ShiftFrequency};

/// A channel where one of the known sources transmits, else the last.
size_t IngressChannel(const std::vector<NetworkChannel>& channels)
{
    for (const IngressSource& source : ingressSources) {
        const auto found =
            std::ranges::find_if(channels, [&](const NetworkChannel& channel) { return Reaches(source, channel); });
        if (found != channels.end()) {
            return static_cast<size_t>(found - channels.begin());
        }
    }
    return channels.size() - 1;
}

void AddFaults(NetworkDraft& network, SeededRandom& random)
{
    constexpr size_t channelsPerFault = 3;
    size_t left = network.channels.size() / channelsPerFault;
    if (left == 0) {
        return;
    }
    AddIngress(network.channels[IngressChannel(network.channels)], network, random);
    for (const Fault fault : faults) {
        if (--left == 0) {
            return;
        }
        size_t index = 0;
        do {
            index = random.Below(network.channels.size());
        } while (!network.channels[index].fault.empty());
        fault(network.channels[index], network, random);
    }
}

}  // namespace

NetworkDraft DraftNetwork(const ChannelPlan& plan, uint64_t seed, bool hasFaults)
{
    NetworkDraft network{.seed = seed, .channels{}, .leftOut{}};
    SeededRandom random(seed);
    const double ripplePhase = random.Between(0, 2 * pi);
    std::vector<PlanChannel> planned = plan.channels;
    std::ranges::stable_sort(planned, {}, &PlanChannel::frequency);
    for (const PlanChannel& channel : planned) {
        if (channel.frequency < lowestModelFrequency || channel.symbolRate < lowestModelSymbolRate) {
            network.leftOut.push_back({channel.line, L"a network model begins at 30 MHz and 0.5 MSymb/s"});
        } else if (network.channels.empty() || network.channels.back().frequency != channel.frequency) {
            network.channels.push_back(GoodChannel(channel, ripplePhase, seed));
        }
    }
    if (hasFaults) {
        AddFaults(network, random);
    }
    return network;
}

}  // namespace tvn2x
