#include <array>
#include <cmath>
#include <limits>
#include <numbers>
#include <random>

#include "dvbc/Decibels.h"
#include "dvbc/Impairments.h"
#include "dvbc/Qam.h"
#include "reception/QualityRows.h"
#include "reception/Reception.h"
#include "simulator/model/ReceiverPhysics.h"

namespace tvn2x::reception {
namespace {

using std::numbers::pi;

/// Time that passes when it is told to.
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
    const double carrierToNoise = std::min(needed + between(0.5, 12), 42.0);
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

/// Without the loss that it is said to have, because the receiver for recordings has none worth the name, and without a
/// spread of the readings.
NetworkModel ModelOf(const Channel& channel)
{
    const sender::Signal& signal = channel.signal;
    const std::pair<const char*, double> values[] = {
        {"Level (dBuV)", channel.level},
        {"Symbol Rate (MSymb/s)", signal.symbolRate / 1e6},
        {"C/I (dB)", channel.interference},
        {"Carrier Suppression (dB)", *signal.carrier},
        {"Phase Jitter (deg)", signal.jitter},
        {"I/Q Imbalance (%)", signal.imbalance},
        {"Quadrature Error (deg)", signal.quadrature},
        {"Echo (dB)", signal.echoes.empty() ? 20 : -signal.echoes[0].level},
        {"Echo Length (m)", channel.echoLength},
        {"Frequency Offset (Hz)", signal.frequency},
        {"Symbol Rate Offset (ppm)", signal.symbolRatePpm},
        {"Frequency (MHz)", channel.frequency},
    };
    std::string text = "[Network]\nReading Noise=0\nImplementation Loss (dB)=0\nNoise Figure (dB)=" +
                       std::to_string(channel.noiseFigure) +
                       "\n[Channel 1]\nOrder of QAM=" + std::to_string(signal.order);
    for (const auto& [key, value] : values) {
        text += std::string("\n") + key + "=" + std::to_string(value);
    }
    return NetworkModel::Parse(text, L"drawn");
}

}  // namespace

std::vector<Row> RowsAgainstSimulator(unsigned number)
{
    const Channel channel = Draw(number);
    const sender::Signal& signal = channel.signal;
    Moment time;
    ReceiverPhysics simulated(time);
    simulated.Network(ModelOf(channel));
    simulated.OrderOfQam(signal.order);
    simulated.SymbolRate(signal.symbolRate);
    simulated.Frequency(channel.frequency * 1e6);
    simulated.BerSamples(1);
    time.now += 20;
    simulated.ReadBer();
    time.now += 20;
    const Reception reception = Receive({signal, 0.01 + 0.4e6 / signal.symbolRate, 0});
    const recordings::SignalReadings& recorded = reception.readings;

    std::vector<Row> rows;
    const std::string trial = "channel " + std::to_string(number) + ", " + std::to_string(signal.order) + "-QAM" +
                              (signal.interferer ? ", interferer" : "") + (signal.echoes.empty() ? "" : ", echo");
    const auto add = [&](const char* quantity, double expected, std::optional<double> read, double below,
                         double above) {
        rows.push_back({quantity, trial, false, expected, below, above,
                        [read] { return read.value_or(std::numeric_limits<double>::quiet_NaN()); }});
    };
    const double echo = signal.echoes.empty() ? 0 : 0.4;  // MER that equalising costs
    const double mer = simulated.ReadMer();
    // What the equaliser takes off an interferer is missing in the MER.
    const double notched =
        dvbc::RatioOfErrorPower(dvbc::ErrorPowerOfRatio(mer) - dvbc::ErrorPowerOfRatio(channel.interference)) - mer;
    add("MER, dB", mer, recorded.mer, 0.3 + echo, 0.3 + notched);
    add("signal to noise, dB", simulated.ReadSignalToNoise(), recorded.signalToNoise, 0.3 + echo, 0.3);
    add("level, dB", simulated.ReadRfLevel() + 60 - channel.level,
        dvbc::DecibelsOfPower(reception.state.channelPower / signal.level / signal.level), 0.5, 0.5);
    add("carrier suppression, dB", simulated.ReadCarrierSuppression(), recorded.carrierSuppression, 1, 1);
    add("amplitude imbalance, %", simulated.ReadIqImbalance(), recorded.amplitudeImbalance, 0.2, 0.2);
    add("quadrature error, degrees", simulated.ReadIqPhase(), recorded.quadratureError, 0.2, 0.2);
    add("carrier to interference, dB", simulated.ReadCarrierToInterference(),
        recorded.carrierToInterference.value_or(60), 1, 1);
    add("frequency offset, Hz", simulated.ReadFrequencyOffset(), reception.state.frequencyOffset, 50, 50);
    if (mer > 26) {  // below, jitter is not measured
        add("phase jitter, degrees", simulated.ReadPhaseJitter(), recorded.phaseJitter, mer < 34 ? 0.4 : 0.1, 0.1);
    }
    // Not all that spoils the signal is Gaussian, and differential coding doubles errors; three hundred are counted.
    if (const double ber = simulated.ReadBer(); ber > 1e-4) {
        add("C/N for such a BER, dB", dvbc::RequiredEsN0(signal.order, ber),
            dvbc::RequiredEsN0(signal.order, reception.ber), 0.8, 0.8);
    }
    return rows;
}

}  // namespace tvn2x::reception
