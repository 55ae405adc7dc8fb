#include "simulator/model/Reception.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>

#include "dvbc/Decibels.h"
#include "dvbc/Impairments.h"
#include "dvbc/Tilt.h"

namespace tvn2x {
namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();

constexpr double bandStart = 47;  // MHz
constexpr double bandEnd = 862;
constexpr double speedOfLight = 299792458;

constexpr double captureRange = 170e3;      // Hz
constexpr double symbolRateCapture = 100;   // ppm
constexpr double weakestSignal = 30;        // dBµV that gain control can bring up
constexpr double signalAboveNoise = 3;      // dB
constexpr double fixedGainLevel = 60;       // dBµV that the fixed gain is made for
constexpr double fixedGainSpread = 10;      // dB
constexpr double mixerLevel = 80;           // dBµV that the automatic attenuator keeps the mixer below
constexpr double attenuatorStep = 10;       // dB
constexpr double interceptLevel = 115;      // dBµV, third order
constexpr double digitalRejection = 45;     // dB of the receive filter outside the channel
constexpr double preselection = 24e6;       // Hz that reach the demodulator when no SAW filter is in the way
constexpr double equaliserSymbols = 16;     // reach of the equaliser
constexpr double highestCarrierBer = 3e-2;  // beyond it the carrier loop slips
constexpr double highestFrameBer = 1e-2;    // beyond it five synchronisation bytes in a row are not found
constexpr double highestPacketFailures = 0.5;

/// A span of frequencies in Hz.
struct Span
{
    double low;
    double high;

    static Span Around(double centre, double width) { return {centre - width / 2, centre + width / 2}; }
    double Width() const { return high - low; }
    /// The share of this span that lies in another one.
    double ShareIn(const Span& other) const
    {
        return std::max(0.0, std::min(high, other.high) - std::max(low, other.low)) / Width();
    }
};

double CentreOf(const ChannelModel& channel)
{
    return channel.frequency * 1e6 + channel.frequencyOffset;
}

/// The spectrum of a channel, taken as flat over its symbol rate.
Span SpectrumOf(const ChannelModel& channel)
{
    return Span::Around(CentreOf(channel), channel.symbolRate * 1e6);
}

/// Seconds by which the echo of a mismatched cable is late.
double EchoDelay(const ChannelModel& channel, const NetworkSettings& network)
{
    return 2 * channel.echoLength / (speedOfLight * network.velocityFactor);
}

/// The power of the signal and its echo against that of the signal alone, averaged over the channel.
double EchoGain(const ChannelModel& channel, const NetworkSettings& network)
{
    if (channel.echoLength == 0) {
        return 0;
    }
    const double amplitude = dvbc::AmplitudeOfDecibels(-channel.echoRatio);
    const double delay = EchoDelay(channel, network);
    const double halfRipple = std::numbers::pi * channel.symbolRate * 1e6 * delay;
    const double averaging = halfRipple > 0 ? std::sin(halfRipple) / halfRipple : 1;
    const double phase = 2 * std::numbers::pi * CentreOf(channel) * delay;
    return dvbc::DecibelsOfPower(1 + amplitude * amplitude + 2 * amplitude * averaging * std::cos(phase));
}

/// The level at the receiver's input in dBµV.
double LevelOf(const ChannelModel& channel, const NetworkSettings& network, double warming)
{
    return channel.level - (network.tilt + warming) * dvbc::TiltPosition(channel.frequency, bandStart, bandEnd) +
           EchoGain(channel, network);
}

double RouteLoss(int32_t route)
{
    constexpr double mismatch = 0.177;  // dB between 75 and 50 ohm
    switch (route) {
        case input_route::receiver50:
        case input_route::demodulator:
            return mismatch;
        case input_route::intermediate:
            return infinite;
        default:
            return 0;
    }
}

/// All that the receiver's analogue part does to one receiver setting's view of the network. Powers are linear, with
/// 0 dBµV as 1.
class FrontEnd
{
public:
    FrontEnd(const NetworkModel& model, const ReceiverSettings& settings, double warming)
        : network_(model.Network()),
          settings_(settings),
          warming_(warming),
          own_(Span::Around(settings.frequency, settings.symbolRate)),
          filter_(
              Span::Around(settings.frequency, settings.sawBandwidth > 0 ? settings.sawBandwidth * 1e6 : preselection))
    {
        for (const ChannelModel& channel : model.Channels()) {
            Take(channel);
        }
        attenuation_ = Attenuation();
        noise_ = dvbc::PowerOfDecibels(dvbc::NoiseFloor(settings.symbolRate, network_.noiseFigure + attenuation_));
    }

    /// The channel that most of the power comes from; null where the receiver sees none.
    const ChannelModel* Strongest() const { return strongest_; }
    double CarrierToNoise() const { return dvbc::DecibelsOfPower(carrier_ / noise_); }
    double Level() const { return dvbc::DecibelsOfPower(inBand_ + noise_); }
    double NoiseLevel() const { return dvbc::DecibelsOfPower(noise_); }
    double SignalAboveNoise() const { return dvbc::DecibelsOfPower(inBand_ / noise_); }

    double CarrierToNeighbours() const
    {
        const double neighbours = leaking_ - ownLeak_;
        return neighbours > 0 ? dvbc::DecibelsOfPower(carrier_ / neighbours) : infinite;
    }

    /// Third-order products of all channels together.
    double CarrierToIntermodulation() const
    {
        return 2 * (interceptLevel - (dvbc::DecibelsOfPower(total_) - attenuation_));
    }

    /// What the filter cuts off the signal comes back as interference between its symbols.
    double CarrierToFilterLoss() const
    {
        const double kept = SpectrumOf(*strongest_).ShareIn(filter_);
        return kept < 1 ? dvbc::DecibelsOfPower(kept / (1 - kept)) : infinite;
    }

private:
    void Take(const ChannelModel& channel)
    {
        const Span spectrum = SpectrumOf(channel);
        const double power = dvbc::PowerOfDecibels(LevelOf(channel, network_, warming_) - RouteLoss(settings_.route));
        const double inBand = power * spectrum.ShareIn(own_);
        const double besides = power * std::max(0.0, spectrum.ShareIn(filter_) - spectrum.ShareIn(own_));
        const double leak = inBand + besides * dvbc::PowerOfDecibels(-digitalRejection);
        total_ += power;
        inBand_ += inBand;
        leaking_ += leak;
        if (inBand > carrier_) {
            strongest_ = &channel;
            carrier_ = inBand;
            ownLeak_ = leak;
        }
    }

    /// dB in the way of the mixer; the demodulator route has no attenuator.
    double Attenuation() const
    {
        if (settings_.route == input_route::demodulator) {
            return 0;
        }
        if (settings_.attenuation != automaticAttenuation) {
            return settings_.attenuation;
        }
        const double excess = dvbc::DecibelsOfPower(total_) - mixerLevel;
        return excess > 0 ? attenuatorStep * std::ceil(excess / attenuatorStep) : 0;
    }

    const NetworkSettings& network_;
    const ReceiverSettings& settings_;
    const double warming_;  ///< dB at the end of the band
    const Span own_;
    const Span filter_;
    const ChannelModel* strongest_ = nullptr;
    double carrier_ = 0;
    double inBand_ = 0;
    double leaking_ = 0;
    double ownLeak_ = 0;
    double total_ = 0;
    double attenuation_ = 0;
    double noise_ = 0;
};

/// What the equaliser makes of an echo.
struct EchoEffect
{
    double interference = infinite;  ///< dB, where the echo is beyond its reach
    double noiseGain = 0;            ///< dB that flattening the ripple costs
};

EchoEffect EffectOfEcho(const ChannelModel& channel, const NetworkSettings& network, bool adaptive)
{
    EchoEffect effect;
    if (channel.echoLength == 0) {
        return effect;
    }
    const double reach = equaliserSymbols / (channel.symbolRate * 1e6);
    if (adaptive && EchoDelay(channel, network) <= reach) {
        effect.noiseGain = -dvbc::DecibelsOfPower(1 - dvbc::PowerOfDecibels(-channel.echoRatio));
    } else {
        effect.interference = channel.echoRatio;
    }
    return effect;
}

/// Filters with different roll-off at both ends no longer make a Nyquist filter together.
double RollOffRatio(double transmitted, int32_t received)
{
    const double difference = std::abs(transmitted - received) / 100;
    return difference > 0 ? -dvbc::DecibelsOfAmplitude(difference / 2) : infinite;
}

void TakeQuality(Reception& reception, const ChannelModel& channel, const NetworkSettings& network,
                 const ReceiverSettings& settings, const FrontEnd& front)
{
    const double neighbours = front.CarrierToNeighbours();
    const EchoEffect echo = EffectOfEcho(channel, network, settings.adaptiveEqualiser);
    reception.carrierToInterference = dvbc::CombineRatios(std::array{channel.carrierToInterference, neighbours});
    reception.signalToNoise =
        dvbc::CombineRatios(std::array{front.CarrierToNoise() - echo.noiseGain, network.headEndMer,
                                       reception.carrierToInterference, front.CarrierToIntermodulation()});
    reception.mer = dvbc::CombineRatios(
        std::array{reception.signalToNoise, channel.carrierSuppression,
                   dvbc::RatioOfErrorPower(dvbc::JitterPower(channel.phaseJitter)),
                   dvbc::RatioOfErrorPower(dvbc::ImbalancePower(channel.iqImbalance)),
                   dvbc::RatioOfErrorPower(dvbc::QuadraturePower(channel.quadratureError)), echo.interference,
                   front.CarrierToFilterLoss(), RollOffRatio(channel.rollOff, settings.rollOff)});
}

/// Whether gain control has a signal to work on.
bool SignalPresent(const FrontEnd& front, const ReceiverSettings& settings)
{
    if (front.SignalAboveNoise() < signalAboveNoise) {
        return false;
    }
    if (settings.route == input_route::demodulator && !settings.automaticGain) {
        return std::abs(front.Level() - fixedGainLevel) <= fixedGainSpread;
    }
    return front.Level() >= weakestSignal;
}

int StagesReached(const Reception& reception, const ChannelModel& channel, const ReceiverSettings& settings)
{
    const std::array passed{
        settings.mode == dvbCDemodulator && std::abs(reception.symbolRateOffset) <= symbolRateCapture,
        reception.ber <= highestCarrierBer,
        channel.order == settings.order && std::abs(reception.frequencyOffset) <= captureRange,
        reception.ber <= highestFrameBer, reception.packets.failed <= highestPacketFailures};
    const auto failed = std::ranges::find(passed, false);
    return 1 + static_cast<int>(failed - passed.begin());
}

}  // namespace

Reception Receive(const NetworkModel& model, const ReceiverSettings& settings, double warming)
{
    const NetworkSettings& network = model.Network();
    const FrontEnd front(model, settings, warming);
    Reception reception;
    reception.level = front.Level();
    reception.noiseLevel = front.NoiseLevel();
    reception.bitsPerSymbol = dvbc::BitsPerSymbol(settings.order);
    reception.bitRate = settings.symbolRate * reception.bitsPerSymbol;
    const ChannelModel* channel = front.Strongest();
    if (channel == nullptr) {
        return reception;
    }

    reception.channel = *channel;
    const double ownReference = settings.externalReference ? 0 : settings.frequency * network.referenceError * 1e-6;
    reception.frequencyOffset = CentreOf(*channel) - settings.frequency - ownReference;
    const double sent = channel->symbolRate * 1e6 * (1 + channel->symbolRateOffset * 1e-6);
    reception.symbolRateOffset = (sent / settings.symbolRate - 1) * 1e6;
    TakeQuality(reception, *channel, network, settings, front);

    const double effective = reception.mer - network.implementationLoss;
    reception.ber = dvbc::BitErrorRatio(channel->order, effective);
    reception.margin = effective - dvbc::RequiredEsN0(channel->order, dvbc::failureBer);
    reception.packets = dvbc::PacketErrorRatios(reception.ber);
    if (SignalPresent(front, settings)) {
        reception.stagesReached = StagesReached(reception, *channel, settings);
    }
    return reception;
}

}  // namespace tvn2x
