#include "reception/Reception.h"

#include <bit>
#include <cmath>
#include <map>

namespace tvn2x::reception {
namespace {

/// Counts what is missing between the numbered packets.
class PacketCheck : public recordings::PacketSink
{
public:
    void Take(std::span<const uint8_t> packet, bool failed) override
    {
        const uint32_t number =
            uint32_t{packet[4]} << 24 | uint32_t{packet[5]} << 16 | uint32_t{packet[6]} << 8 | packet[7];
        if (failed) {
            ++lost;
        } else {
            lost += last && number != *last + 1 ? 1 : 0;
            last = number;
        }
    }

    std::optional<uint32_t> last;
    uint64_t lost = 0;
};

/// How many bits an error towards a neighbour spoils, summed over a point's neighbours and averaged over the points.
double BitsOfErrors(int order)
{
    std::map<std::pair<int, int>, unsigned> points;
    for (unsigned tuple = 0; tuple < static_cast<unsigned>(order); ++tuple) {
        const std::complex<double> point = sender::Mapper(order).Point(tuple);
        points[{static_cast<int>(point.real()), static_cast<int>(point.imag())}] = tuple;
    }
    int bits = 0;
    for (const auto& [place, tuple] : points) {
        for (const auto& [i, q] : {std::pair{2, 0}, {-2, 0}, {0, 2}, {0, -2}}) {
            const auto neighbour = points.find({place.first + i, place.second + q});
            if (neighbour != points.end()) {
                const bool turned =
                    place.first * neighbour->first.first < 0 || place.second * neighbour->first.second < 0;
                bits += std::popcount(tuple ^ neighbour->second) + (turned ? 1 : 0);
            }
        }
    }
    return static_cast<double>(bits) / order;
}

}  // namespace

Reception Receive(const Trial& trial)
{
    const sender::Signal& signal = trial.signal;
    sender::Transmitter transmitter(signal);
    PacketCheck check;
    recordings::Demodulator demodulator({signal.order, signal.symbolRate, signal.rollOff}, signal.rate, &check);
    Reception reception;
    constexpr size_t block = 5000;
    const double middle = trial.seconds / 2;
    for (double time = 0; time < trial.seconds; time += block / signal.rate) {
        const bool away = trial.outage > 0 && time >= middle && time < middle + trial.outage;
        transmitter.Silence(away);
        demodulator.Process(transmitter.Send(block));
        if (away) {
            check.last.reset();
            check.lost = 0;
        } else if (demodulator.State().locks.reedSolomon) {
            const double now = time + block / signal.rate;
            if (!reception.locked) {
                reception.locked = now;
            }
            if (!reception.relocked && trial.outage > 0 && time > middle) {
                reception.relocked = now - middle - trial.outage;
            }
        }
    }
    reception.state = demodulator.State();
    reception.readings = demodulator.Readings();
    reception.lost = check.lost;
    const recordings::PacketCounters& counters = reception.state.counters;
    reception.ber = static_cast<double>(counters.correctedBits) / static_cast<double>(counters.checkedBits);
    return reception;
}

double ExactBer(int order, double noise)
{
    static std::map<int, double> known;
    if (!known.count(order)) {
        known[order] = BitsOfErrors(order);
    }
    const double deviation = std::sqrt(sender::Mapper::MeanPower(order) / 2 / std::pow(10, noise / 10));
    return known[order] / std::log2(order) * 0.5 * std::erfc(1 / deviation / std::sqrt(2));
}

double ExactNoise(int order, double ber)
{
    double low = 5;
    double high = 45;
    for (int step = 0; step < 60; ++step) {
        const double middle = (low + high) / 2;
        (ExactBer(order, middle) > ber ? low : high) = middle;
    }
    return low;
}

}  // namespace tvn2x::reception
