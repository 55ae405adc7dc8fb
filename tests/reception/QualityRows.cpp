#include "reception/QualityRows.h"

#include <cmath>
#include <limits>
#include <memory>
#include <utility>

namespace tvn2x::reception {
namespace {

constexpr double any = std::numeric_limits<double>::infinity();
constexpr double notMeasured = std::numeric_limits<double>::quiet_NaN();
const std::vector<int> orders{16, 32, 64, 128, 256};

std::string Text(double number)
{
    std::string text = std::to_string(number);
    text.erase(text.find_last_not_of('0') + 1);
    return text.back() == '.' ? text.substr(0, text.size() - 1) : text;
}

std::string Name(int order)
{
    return std::to_string(order) + "-QAM";
}

sender::Signal Noisy(int order, std::optional<double> noise)
{
    sender::Signal signal;
    signal.order = order;
    signal.noise = noise;
    return signal;
}

double Mer(const sender::Signal& signal)
{
    return Receive({signal, 0.06, 0}).readings.mer.value_or(notMeasured);
}

void AddNoise(std::vector<Row>& rows)
{
    for (const int order : orders) {
        for (const double noise : {ExactNoise(order, 1e-3), 33.0, 40.0}) {
            const sender::Signal signal = Noisy(order, noise);
            rows.push_back({"MER, dB", Name(order) + " in white noise", order == 32 && noise < 30, noise, 0.3, 0.3,
                            [signal] { return Mer(signal); }});
        }
        const sender::Signal clean = Noisy(order, std::nullopt);
        rows.push_back({"MER, dB", Name(order) + " clean", false, 45, 0, any, [clean] { return Mer(clean); }});
        for (const double ber : {1e-3, 1e-4}) {
            const double noise = ExactNoise(order, ber);
            const sender::Signal signal = Noisy(order, noise);
            rows.push_back({"implementation loss, dB",
                            Name(order) + " at the C/N for a BER of " + (ber > 5e-4 ? "1e-3" : "1e-4"),
                            order == 128 && ber > 5e-4, 0, 0.3, 0.3, [signal, order, noise] {
                                return noise - ExactNoise(order, Receive({signal, 0.15, 0}).ber);
                            }});
        }
    }
}

void AddOffsets(std::vector<Row>& rows)
{
    for (const double frequency : {-250e3, -100e3, 0.0, 33333.0, 250e3}) {
        sender::Signal signal = Noisy(64, 26);
        signal.frequency = frequency;
        rows.push_back({"frequency offset, Hz", "64-QAM at 26 dB", frequency == 250e3, frequency, 50, 50, [signal] {
                            return Receive({signal, 0.04, 0}).state.frequencyOffset;
                        }});
    }
    for (const double ppm : {-100.0, 0.0, 100.0}) {
        sender::Signal signal = Noisy(256, 32);
        signal.symbolRatePpm = ppm;
        signal.inverted = true;
        rows.push_back({"symbol-rate offset, ppm", "256-QAM at 32 dB, inverted", ppm < 0, ppm, 0.5, 0.5, [signal] {
                            return Receive({signal, 0.06, 0}).state.symbolRateOffset;
                        }});
    }
}

void AddEchoes(std::vector<Row>& rows)
{
    const std::vector<std::pair<std::string, std::vector<sender::Echo>>> ways{
        {"-10 dB at 1 us", {{1e-6, -10, 1}}},
        {"-10 dB at 1 us, other phase", {{1e-6, -10, 3.5}}},
        {"-20 dB at 5 us", {{5e-6, -20, 2}}},
        {"both", {{1e-6, -10, 1}, {5e-6, -20, 2}}}};
    for (const int order : orders) {
        for (const auto& [name, echoes] : ways) {
            sender::Signal signal = Noisy(order, 35);
            signal.echoes = echoes;
            rows.push_back({"MER loss by echoes, dB", Name(order) + " at 35 dB, " + name,
                            order == 256 && echoes.size() == 2, 0, any, 0.5, [signal] { return 35 - Mer(signal); }});
        }
    }
    for (const double noise : {40.0, 34.0}) {
        sender::Signal signal = Noisy(256, noise);
        signal.rate = 20e6;
        sender::Signal crowded = signal;
        crowded.neighbours = 0;
        rows.push_back({"MER loss by neighbours, dB", "256-QAM at " + Text(noise) + " dB, 8 MHz apart", noise < 35, 0,
                        any, 0.2, [signal, crowded] { return Mer(signal) - Mer(crowded); }});
    }
}

/// One signal is received for all rows that ask for a reading of it.
void AddImpairment(std::vector<Row>& rows, const std::string& name, const sender::Signal& signal)
{
    const auto received = std::make_shared<std::optional<Reception>>();
    const auto readings = [received, signal]() -> const recordings::SignalReadings& {
        if (!*received) {
            *received = Receive({signal, 0.06, 0});
        }
        return (*received)->readings;
    };
    const auto add = [&](const char* quantity, double expected, double tolerance, auto reading) {
        rows.push_back({quantity, Name(signal.order) + " at 36 dB, " + name, false, expected, tolerance, tolerance,
                        [readings, reading] { return (readings().*reading).value_or(notMeasured); }});
    };
    using Readings = recordings::SignalReadings;
    if (signal.carrier) {
        add("carrier suppression, dB", *signal.carrier, 1, &Readings::carrierSuppression);
    }
    add("amplitude imbalance, %", signal.imbalance, 0.2, &Readings::amplitudeImbalance);
    add("quadrature error, degrees", signal.quadrature, 0.2, &Readings::quadratureError);
    if (!signal.interferer) {  // which leaves a MER of 30 dB, too little for its jitter
        add("phase jitter, degrees", signal.jitter, 0.05, &Readings::phaseJitter);
    } else {
        add("carrier to interference, dB", *signal.interferer, 1, &Readings::carrierToInterference);
    }
    // An interferer counts as noise.
    const double interference = signal.interferer ? std::pow(10, -*signal.interferer / 10) : 0;
    add("signal to noise, dB", -10 * std::log10(std::pow(10, -3.6) + interference), 1, &Readings::signalToNoise);
}

void AddImpairments(std::vector<Row>& rows)
{
    constexpr std::pair<const char*, void (*)(sender::Signal&)> alone[] = {
        {"residual carrier", [](sender::Signal& signal) { signal.carrier = 28; }},
        {"imbalance", [](sender::Signal& signal) { signal.imbalance = 2; }},
        {"quadrature error", [](sender::Signal& signal) { signal.quadrature = 1.5; }},
        {"jitter", [](sender::Signal& signal) { signal.jitter = 0.6; }},
        {"sine wave", [](sender::Signal& signal) { signal.interferer = 32; }},
    };
    for (const int order : {16, 64, 128, 256}) {
        for (const auto& [name, impair] : alone) {
            sender::Signal signal = Noisy(order, 36);
            impair(signal);
            AddImpairment(rows, name, signal);
        }
    }
}

void AddAcquisition(std::vector<Row>& rows)
{
    for (const auto& [order, noise] : {std::pair{16, 20.0}, {32, 22.0}, {64, 24.0}, {128, 27.0}, {256, 30.0}}) {
        for (const double sign : {-1.0, 1.0}) {
            sender::Signal signal = Noisy(order, noise);
            signal.frequency = sign * 250e3;
            signal.symbolRatePpm = sign * -100;
            const std::string name = Name(order) + " at " + Text(noise) + " dB, 250 kHz and 100 ppm off";
            const bool brief = order == 256 && sign < 0;
            rows.push_back({"acquisition, s", name, brief, 0, 0, 0.1, [signal] {
                                return Receive({signal, 0.12, 0}).locked.value_or(notMeasured);
                            }});
            rows.push_back({"acquisition after 20 ms without signal, s", name, brief, 0, 0, 0.1, [signal] {
                                return Receive({signal, 0.28, 0.02}).relocked.value_or(notMeasured);
                            }});
            rows.push_back({"lost packets", name, false, 0, 0, 0, [signal] {
                                return static_cast<double>(Receive({signal, 1, 0}).lost);
                            }});
        }
    }
    sender::Signal ghost = Noisy(64, 40);
    ghost.echoes = {{2e-6, -5, 1}};
    rows.push_back(
        {"acquisition, s", "64-QAM at 40 dB, -5 dB at 2 us: after longer adapting", true, 0, 0, 0.04, [ghost] {
             return Receive({ghost, 0.05, 0}).locked.value_or(notMeasured);
         }});
    for (const double symbolRate : {0.87e6, 2e6, 5e6}) {
        sender::Signal signal = Noisy(64, 30);
        signal.symbolRate = symbolRate;
        signal.rate = 2 * symbolRate;
        signal.frequency = -200e3;
        rows.push_back(
            {"acquisition, s", "64-QAM at " + Text(symbolRate / 1e6) + " MSymb/s", false, 0, 0, 0.1, [signal] {
                 return Receive({signal, 0.15, 0}).locked.value_or(notMeasured);
             }});
    }
}

}  // namespace

std::vector<Row> QualityRows()
{
    std::vector<Row> rows;
    AddNoise(rows);
    AddOffsets(rows);
    AddEchoes(rows);
    AddImpairments(rows);
    AddAcquisition(rows);
    return rows;
}

}  // namespace tvn2x::reception
