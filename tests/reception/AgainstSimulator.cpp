#include "reception/AgainstSimulator.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <numbers>
#include <random>

#include "dvbc/Decibels.h"
#include "dvbc/Impairments.h"
#include "dvbc/Qam.h"
#include "reception/Reception.h"
#include "simulator/model/ReceiverPhysics.h"

namespace tvn2x::reception {
namespace {

using std::numbers::pi;

/// A moment long after the receiver was tuned, or any other.
class Moment : public SimulatedTime
{
public:
    double Seconds() override { return now; }
    void Wait(double seconds) override { now += seconds; }
    double Scale() const override { return 1; }
    double SecondsOfCalendar() override { return now; }

    double now = 0;
};

constexpr double headEndMer = 43;
constexpr double velocity = 299792458 * 0.85;
constexpr double inaudible = 80;

/// The same channel for both: as the network model says it, and as a sender makes it.
struct Channel
{
    sender::Signal signal;
    double frequency = 0;             ///< MHz
    double noiseFigure = 0;           ///< dB
    double level = 0;                 ///< dBµV
    double interference = inaudible;  ///< C/I in dB
    double echoLength = 0;            ///< m
};

/// dB that an echo adds to the signal's level, in the mean over the channel.
double EchoGain(const sender::Echo& echo, double symbolRate)
{
    const double half = pi * symbolRate * echo.delay;
    const double amplitude = dvbc::AmplitudeOfDecibels(echo.level);
    return dvbc::DecibelsOfPower(1 + amplitude * amplitude +
                                 2 * amplitude * std::sin(half) / half * std::cos(echo.phase));
}

/// Impairments that each leave more than the order of QAM needs.
Channel Draw(unsigned number)
{
    static constexpr std::array<int, 5> orders{16, 32, 64, 128, 256};
    static constexpr std::array<double, 7> symbolRates{6.9e6, 6.952e6, 6.875e6, 5e6, 3.45e6, 1.8e6, 5.217e6};
    std::mt19937 random(number);
    const auto between = [&](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    Channel channel;
    sender::Signal& signal = channel.signal;
    signal.order = orders[number % orders.size()];
    signal.symbolRate = symbolRates[number % symbolRates.size()];
    signal.rate = std::max(1.45 * signal.symbolRate, signal.symbolRate + 1.2e6);
    const double needed = dvbc::RequiredEsN0(signal.order, dvbc::failureBer);
    const double carrierToNoise = std::min(needed + between(1.5, 14), 42.0);
    channel.noiseFigure = between(18, 26);
    channel.level = 108.75 - 173.98 + 10 * std::log10(signal.symbolRate) + channel.noiseFigure + carrierToNoise;
    signal.noise = dvbc::CombineRatios(std::array{carrierToNoise, headEndMer});
    signal.carrier = needed + between(8, 22);
    signal.jitter = dvbc::JitterOfRatio(needed + between(8, 22));
    signal.imbalance = dvbc::ImbalanceOfRatio(needed + between(8, 22));
    signal.quadrature = 360 / pi * std::asin(dvbc::AmplitudeOfDecibels(-needed - between(8, 22)));
    signal.frequency = std::round(between(-150e3, 150e3));
    signal.symbolRatePpm = between(-80, 80);
    channel.frequency = std::round(between(50, 850));
    if (number % 2 == 0) {
        channel.echoLength = between(5, 200);
        const double delay = 2 * channel.echoLength / velocity;
        const double turns = (channel.frequency * 1e6 + signal.frequency) * delay;
        signal.echoes = {{delay, -between(10, 25), -2 * pi * (turns - std::floor(turns))}};
    }
    if (number % 3 == 0) {
        channel.interference = needed + between(6, 16);
        signal.interferer = channel.interference;
        for (const sender::Echo& echo : signal.echoes) {
            *signal.interferer -= EchoGain(echo, signal.symbolRate);  // the sender knows the first way alone
        }
    }
    return channel;
}

std::string Key(const char* name, double value)
{
    return std::string(name) + "=" + std::to_string(value) + "\n";
}

/// Without the loss that it is said to have: the receiver for recordings has none worth the name.
std::string ModelOf(const Channel& channel)
{
    const sender::Signal& signal = channel.signal;
    return "[Network]\n" + Key("Noise Figure (dB)", channel.noiseFigure) + Key("Head-end MER (dB)", headEndMer) +
           Key("Implementation Loss (dB)", 0) + "[Channel 1]\n" + Key("Frequency (MHz)", channel.frequency) +
           Key("Symbol Rate (MSymb/s)", signal.symbolRate / 1e6) + "Order of QAM=" + std::to_string(signal.order) +
           "\n" + Key("Level (dBuV)", channel.level) + Key("C/I (dB)", channel.interference) +
           Key("Carrier Suppression (dB)", *signal.carrier) + Key("Phase Jitter (deg)", signal.jitter) +
           Key("I/Q Imbalance (%)", signal.imbalance) + Key("Quadrature Error (deg)", signal.quadrature) +
           Key("Echo (dB)", signal.echoes.empty() ? 20 : -signal.echoes[0].level) +
           Key("Echo Length (m)", channel.echoLength) + Key("Frequency Offset (Hz)", signal.frequency) +
           Key("Symbol Rate Offset (ppm)", signal.symbolRatePpm);
}

std::string NameOf(const sender::Signal& signal)
{
    std::array<char, 100> name{};
    std::snprintf(name.data(), name.size(), "%d-QAM, %.3f MSymb/s, %.1f dB%s%s", signal.order, signal.symbolRate / 1e6,
                  *signal.noise, signal.interferer ? ", interferer" : "", signal.echoes.empty() ? "" : ", echo");
    return name.data();
}

void Tune(ReceiverPhysics& simulated, Moment& time, const Channel& channel)
{
    simulated.Network(NetworkModel::Parse(ModelOf(channel), L"drawn"));
    simulated.OrderOfQam(channel.signal.order);
    simulated.SymbolRate(channel.signal.symbolRate);
    simulated.Frequency(channel.frequency * 1e6);
    simulated.BerSamples(1);
    time.now += 20;
    simulated.ReadBer();
    time.now += 20;
}

}  // namespace

Encounter MeetSimulator(unsigned number)
{
    const Channel channel = Draw(number);
    const sender::Signal& signal = channel.signal;
    Moment time;
    ReceiverPhysics simulated(time);
    Tune(simulated, time, channel);
    const Reception reception = Receive({signal, 0.01 + 0.4e6 / signal.symbolRate, 0});
    const recordings::SignalReadings& recorded = reception.readings;

    Encounter encounter{NameOf(signal), {}};
    // `spread` is that of a simulated reading, of which three times are allowed for; `below` and `above` are what the
    // receiver for recordings may miss by.
    const auto add = [&](const char* quantity, double read, double spread, std::optional<double> other, double below,
                         double above) {
        encounter.readings.push_back({quantity, read, other, 3 * spread + below, 3 * spread + above});
    };
    const double echo = signal.echoes.empty() ? 0 : 0.4;  // MER that equalising costs
    const double mer = simulated.ReadMer();
    // What the equaliser takes off an interferer is missing in the MER.
    const double notched =
        dvbc::RatioOfErrorPower(dvbc::ErrorPowerOfRatio(mer) - dvbc::ErrorPowerOfRatio(channel.interference)) - mer;
    add("MER, dB", mer, 0.1, recorded.mer, 0.3 + echo, 0.3 + notched);
    add("S/N, dB", simulated.ReadSignalToNoise(), 0.1, recorded.signalToNoise, 0.5 + echo, 0.5);
    add("level, dB", simulated.ReadRfLevel() + 60 - channel.level, 0.1,
        dvbc::DecibelsOfPower(reception.state.channelPower / signal.level / signal.level), 0.2, 0.2);
    add("carrier suppression, dB", simulated.ReadCarrierSuppression(), 0.2, recorded.carrierSuppression, 1, 1);
    add("imbalance, %", simulated.ReadIqImbalance(), 0.02, recorded.amplitudeImbalance, 0.2, 0.2);
    add("quadrature error, degrees", simulated.ReadIqPhase(), 0.02, recorded.quadratureError, 0.2, 0.2);
    add("C/I, dB", simulated.ReadCarrierToInterference(), 0.3, recorded.carrierToInterference.value_or(60), 1, 1);
    add("frequency offset, Hz", simulated.ReadFrequencyOffset(), 50, reception.state.frequencyOffset, 50, 50);
    if (mer > 26) {  // below, jitter is not measured
        const double hidden = mer < 34 ? 0.4 : 0.1;
        add("phase jitter, degrees", simulated.ReadPhaseJitter(), 0.02, recorded.phaseJitter, hidden, 0.1);
    }
    // Not all that spoils the signal is Gaussian, and differential coding doubles errors; three hundred are counted.
    if (const double ber = simulated.ReadBer(); ber > 1e-4) {
        add("C/N for such a BER, dB", dvbc::RequiredEsN0(signal.order, ber), 0,
            dvbc::RequiredEsN0(signal.order, reception.ber), 0.8, 0.8);
    }
    return encounter;
}

}  // namespace tvn2x::reception
