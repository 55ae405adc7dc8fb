#include <cmath>
#include <numbers>
#include <random>

#include "receivers/recordings/demodulator/Demodulator.h"
#include "reception/QualityRows.h"
#include "support/sender/Transmitter.h"

namespace tvn2x::reception {
namespace {

using std::numbers::pi;
using Samples = std::vector<std::complex<float>>;

constexpr size_t samplesOfTry = 200000;  // 20 ms: twice what an acquisition takes
constexpr double rate = 10e6;

Samples Noise(unsigned seed)
{
    std::mt19937 random(seed);
    std::normal_distribution<float> gaussian(0, 0.1F);
    Samples samples(samplesOfTry);
    for (std::complex<float>& sample : samples) {
        sample = {gaussian(random), gaussian(random)};
    }
    return samples;
}

/// A sine wave alone: a carrier that nothing is modulated on.
Samples Carrier(unsigned seed)
{
    Samples samples = Noise(seed);
    const double frequency = (static_cast<double>(seed % 401) - 200) * 1e3;
    for (size_t i = 0; i < samples.size(); ++i) {
        samples[i] = samples[i] * 0.01F +
                     std::complex<float>(std::polar(0.3, 2 * pi * frequency / rate * static_cast<double>(i)));
    }
    return samples;
}

/// A picture of 625 lines: carrier 1.25 MHz above the channel's lower edge, negative modulation with synchronisation
/// pulses and a colour carrier, and a frequency-modulated sound carrier.
Samples Picture(unsigned seed)
{
    Samples samples = Noise(seed);
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> uniform(0, 1);
    double luminance = 0.5;
    double sound = 0;
    for (size_t i = 0; i < samples.size(); ++i) {
        const double time = static_cast<double>(i) / rate;
        const double inLine = std::fmod(time * 15625, 1.0);
        luminance += (uniform(random) - luminance) * 0.05;
        const double colour = 0.1 * std::cos(2 * pi * 4.43e6 * time + inLine * 9);
        const double envelope = inLine < 0.073 ? 1 : inLine < 0.16 ? 0.75 : 0.75 - 0.6 * luminance + colour;
        sound += 2 * pi * (5.5e6 + 50e3 * std::sin(2 * pi * 700 * time)) / rate;
        const std::complex<double> turn = std::polar(1.0, -2 * pi * 2.75e6 * time);
        samples[i] = samples[i] * 0.02F + std::complex<float>(turn * (0.5 * envelope + 0.1 * std::polar(1.0, sound)));
    }
    return samples;
}

bool Locks(int order, double symbolRate, const Samples& samples)
{
    recordings::Demodulator demodulator({order, symbolRate, 0.15}, rate);
    bool locked = false;
    for (size_t first = 0; first < samples.size(); first += 4000) {
        demodulator.Process(std::span<const std::complex<float>>(samples).subspan(first, 4000));
        const recordings::Locks& locks = demodulator.State().locks;
        locked = locked || locks.carrier || locks.frameSync || locks.reedSolomon;
    }
    return locked;
}

/// What the demodulator of a try is made for, and what it gets.
struct Try
{
    int order;
    double symbolRate;
    Samples samples;
};

constexpr int orders[]{16, 32, 64, 128, 256};

/// Every order with every other one, in turn.
Try Mistaken(unsigned number, bool byOrder)
{
    const unsigned pair = number % 20;
    sender::Signal signal;
    signal.order = orders[pair / 4];
    signal.seed = number;
    signal.frequency = (static_cast<double>(number % 101) - 50) * 5e3;
    signal.noise = 22 + number % 19;
    const Samples samples = sender::Transmitter(signal).Send(samplesOfTry);
    return byOrder ? Try{orders[(pair / 4 + 1 + pair % 4) % 5], 6.9e6, samples}
                   : Try{signal.order, 6.9e6 * (number % 2 == 0 ? 1.001 : 0.999), samples};
}

}  // namespace

std::vector<Row> FalseLockRows(int tries)
{
    const std::pair<const char*, std::function<Try(unsigned)>> kinds[] = {
        {"noise alone",
         [](unsigned number) {
             return Try{orders[number % 5], 6.9e6, Noise(number)};
         }},
        {"a carrier alone",
         [](unsigned number) {
             return Try{orders[number % 5], 6.9e6, Carrier(number)};
         }},
        {"an analogue picture",
         [](unsigned number) {
             return Try{orders[number % 5], 6.9e6, Picture(number)};
         }},
        {"a wrong order", [](unsigned number) { return Mistaken(number, true); }},
        {"a symbol rate that is 0.1 % off", [](unsigned number) { return Mistaken(number, false); }},
    };
    std::vector<Row> rows;
    for (const auto& [name, make] : kinds) {
        rows.push_back({"locks in " + std::to_string(tries) + " tries", name, true, 0, 0, 0, [tries, make = make] {
                            int locked = 0;
                            for (int number = 0; number < tries; ++number) {
                                const Try tried = make(static_cast<unsigned>(number));
                                locked += Locks(tried.order, tried.symbolRate, tried.samples) ? 1 : 0;
                            }
                            return static_cast<double>(locked);
                        }});
    }
    return rows;
}

}  // namespace tvn2x::reception
