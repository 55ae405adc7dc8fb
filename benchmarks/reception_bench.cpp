// The receiver for recordings: a tenth of a second of 256-QAM at 6.952 MSymb/s, from the first sample on, on one core.
// The signal itself takes 0.1438 us a symbol; the limits are half of that with AVX2 and FMA, and its 1.3th part with
// SSE2.

#include "Race.h"
#include "receivers/recordings/demodulator/Demodulator.h"
#include "support/sender/Transmitter.h"

namespace {

using namespace tvn2x;

constexpr double symbolRate = 6.952e6;

void Receive(const std::string& title, const std::vector<std::complex<float>>& samples, double rate)
{
    constexpr double ownTime = 1e6 / symbolRate;
    const auto run = [&](const recordings::Kernels& kernels, double limit) {
        bench::Race race(title, static_cast<double>(samples.size()) / rate * symbolRate);
        race.Add(kernels.name, [&] {
            recordings::Demodulator demodulator({256, symbolRate, 0.15}, rate, nullptr, kernels);
            demodulator.Process(samples);
            bench::Keep(demodulator.State().counters.packets);
        });
        race.Run(9, limit);
    };
    if (recordings::HasWideKernels()) {
        run(recordings::wideKernels, ownTime / 2);
    }
    run(recordings::baselineKernels, ownTime / 1.3);
}

}  // namespace

int main(int argc, char** argv)
{
    sender::Signal signal;
    signal.order = 256;
    signal.symbolRate = symbolRate;
    signal.noise = 36;
    Receive("Receive a symbol", sender::Transmitter(signal).Send(1000000), signal.rate);
    signal.echoes = {{1e-6, -10, 1}};
    Receive("Receive a symbol with its echo", sender::Transmitter(signal).Send(1000000), signal.rate);
    return bench::Finish(argc, argv);
}
