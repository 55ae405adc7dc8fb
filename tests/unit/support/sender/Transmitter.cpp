#include "support/sender/Transmitter.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tvn2x::sender {
namespace {

using std::numbers::pi;

constexpr int halfLength = 40;    // symbols of the pulse to either side
constexpr int resolution = 2048;  // of its table, in a symbol
constexpr double spacing = 8e6;
constexpr double warmUp = 6000;  // symbols until the interleaver has sent what it was filled with

double Amplitude(double decibels)
{
    return std::pow(10, decibels / 20);
}

}  // namespace

double Pulse(double time, double rollOff)
{
    if (std::abs(time) < 1e-9) {
        return 1 - rollOff + 4 * rollOff / pi;
    }
    const double pole = 4 * rollOff * time;
    if (std::abs(std::abs(pole) - 1) < 1e-6) {
        const double angle = pi / (4 * rollOff);
        return rollOff / std::sqrt(2) * ((1 + 2 / pi) * std::sin(angle) + (1 - 2 / pi) * std::cos(angle));
    }
    return (std::sin(pi * time * (1 - rollOff)) + pole * std::cos(pi * time * (1 + rollOff))) /
           (pi * time * (1 - pole * pole));
}

Transmitter::Transmitter(const Signal& signal)
    : signal_(signal), meanPower_(Mapper::MeanPower(signal.order)), random_(signal.seed)
{
    for (int i = -halfLength * resolution; i <= halfLength * resolution + 1; ++i) {
        const double time = static_cast<double>(i) / resolution;
        // It fades out at its ends.
        const double fade = std::sqrt(std::cos(pi / 2 * std::min(1.0, std::abs(time) / (halfLength + 0.5))));
        pulse_.push_back(fade * Pulse(time, signal.rollOff));
    }
    carriers_.emplace_back(signal.order, 0);
    if (signal.neighbours) {
        carriers_.emplace_back(signal.order, 1000000);
        carriers_.emplace_back(signal.order, 2000000);
    }
    std::uniform_real_distribution<double> phase(0, 2 * pi);
    for (int i = 0; i < 10; ++i) {
        jitterPhases_.push_back(phase(random_));
    }
}

std::complex<double> Transmitter::At(Carrier& carrier, double time)
{
    const double middle = std::floor(time);
    while (carrier.first + static_cast<double>(carrier.points.size()) < middle + halfLength + 1) {
        carrier.mapper.Map(carrier.encoder.Encode(NumberedPacket(carrier.packet++)), carrier.points);
    }
    if (carrier.points.size() > 20000) {
        carrier.points.erase(carrier.points.begin(), carrier.points.begin() + 10000);
        carrier.first += 10000;
    }
    const double place = (time - middle) * resolution;
    const auto phase = static_cast<int>(place);
    const double between = place - phase;
    std::complex<double> sum;
    for (int k = -halfLength + 1; k <= halfLength; ++k) {
        const double index = middle + k - carrier.first;
        if (index < 0) {
            continue;
        }
        // The point k symbols later adds its pulse at -k and the part of a symbol.
        const size_t at = static_cast<size_t>((halfLength - k) * resolution + phase);
        sum += carrier.points[static_cast<size_t>(index)] * (pulse_[at] * (1 - between) + pulse_[at + 1] * between);
    }
    return sum;
}

/// The wanted carrier at a time in seconds, as the modulator makes it, around 0 Hz.
std::complex<double> Transmitter::Modulated(double time)
{
    const double symbols = time * signal_.symbolRate * (1 + signal_.symbolRatePpm * 1e-6) + warmUp;
    const std::complex<double> ideal = At(carriers_[0], symbols) / std::sqrt(meanPower_);
    const double stretch = std::sqrt(1 + signal_.imbalance / 100);
    const double half = signal_.quadrature * pi / 360;
    std::complex<double> sent = ideal.real() * stretch * std::polar(1.0, half) +
                                ideal.imag() / stretch * std::complex<double>(0, 1) * std::polar(1.0, -half);
    if (signal_.carrier) {
        sent += std::polar(Amplitude(-*signal_.carrier), 0.7);
    }
    if (signal_.jitter > 0) {
        double phase = 0;
        for (size_t i = 0; i < jitterPhases_.size(); ++i) {
            phase += std::cos(2 * pi * (30e3 + 29.3e3 * static_cast<double>(i)) * time + jitterPhases_[i]);
        }
        sent *= std::polar(1.0, phase * signal_.jitter * pi / 180 * std::sqrt(2.0 / 10));
    }
    return sent;
}

std::complex<double> Transmitter::Sample()
{
    const double time = sample_++ / signal_.rate;
    std::complex<double> sum = Modulated(time);
    for (const Echo& echo : signal_.echoes) {
        sum += Modulated(time - echo.delay) * std::polar(Amplitude(echo.level), echo.phase);
    }
    sum *= silent_ ? 0.0 : 1.0;
    if (signal_.interferer) {
        sum += std::polar(Amplitude(-*signal_.interferer), 2 * pi * signal_.symbolRate / 8.1 * time);
    }
    if (signal_.neighbours) {
        const double symbols = time * signal_.symbolRate * 1.00002 + warmUp + 0.4;
        const double size = Amplitude(*signal_.neighbours) / std::sqrt(meanPower_);
        const double turn = 2 * pi * spacing * time;
        sum += size * (At(carriers_[1], symbols) * std::polar(1.0, turn) +
                       At(carriers_[2], symbols + 0.3) * std::polar(1.0, -turn));
    }
    sum *= std::polar(1.0, 2 * pi * signal_.frequency * time);
    if (signal_.noise) {
        const double deviation = Amplitude(-*signal_.noise) * std::sqrt(signal_.rate / signal_.symbolRate / 2);
        // One after the other, so that every compiler sends the same.
        const double inPhase = gaussian_(random_) * deviation;
        const double quadrature = gaussian_(random_) * deviation;
        sum += std::complex<double>(inPhase, quadrature);
    }
    return signal_.inverted ? std::conj(sum) : sum;
}

std::vector<std::complex<float>> Transmitter::Send(size_t samples)
{
    std::vector<std::complex<float>> sent;
    sent.reserve(samples);
    for (size_t i = 0; i < samples; ++i) {
        sent.emplace_back(Sample() * signal_.level);
    }
    return sent;
}

}  // namespace tvn2x::sender
