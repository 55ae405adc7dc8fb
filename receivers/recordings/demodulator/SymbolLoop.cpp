#include "receivers/recordings/demodulator/SymbolLoop.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tvn2x::recordings {
namespace {

/// The operator of the library also cares for infinities.
std::complex<float> Times(std::complex<float> a, std::complex<float> b)
{
    return {a.real() * b.real() - a.imag() * b.imag(), a.real() * b.imag() + a.imag() * b.real()};
}

}  // namespace

SymbolLoop::SymbolLoop(const Constellation& constellation, const Kernels& kernels)
    : constellation_(&constellation), equaliser_(kernels)
{
    SetBlindProgress(1);
}

void SymbolLoop::SetBlindProgress(double remaining)
{
    blind_.forward = static_cast<float>(5e-5 + 3.5e-4 * remaining);
    blind_.backward = static_cast<float>(5e-5 + 1.5e-4 * remaining);
}

void SymbolLoop::Blind(ComplexRow values, std::span<std::complex<float>> out)
{
    const auto modulus = static_cast<float>(constellation_->Dispersion() / constellation_->MeanPower());
    equaliser_.BeginBlock();
    for (size_t i = 0; i < out.size(); ++i) {
        const ComplexRow row = values.From(2 * i);
        const std::complex<float> symbol = equaliser_.Forward(row) - equaliser_.Backward();
        const float excess = modulus - std::norm(symbol);
        // What is far out says more about the noise than about the equaliser.
        const std::complex<float> error = symbol * std::max(excess, -2 * modulus);
        equaliser_.Adapt(row, error * blind_.forward, error * -blind_.backward);
        equaliser_.Push(symbol);
        out[i] = symbol;
    }
}

void SymbolLoop::StartDeciding(const CarrierSearch::Turning& turning)
{
    carrier_.Start(turning.frequency, turning.phase);
    carrier_.SetGain(0.02F);
    decided_ = {6e-4F, 6e-4F};
    adaptEvery_ = 1;
    meanError_ = 0;
}

void SymbolLoop::Settle()
{
    carrier_.SetGain(0.003F);
    decided_ = {2.5e-4F, 2.5e-4F};
    adaptEvery_ = 4;
    equaliser_.UseBackward(equaliser_.HasEchoes());
}

SymbolLoop::Outcome SymbolLoop::Decide(ComplexRow values, std::span<std::complex<float>> out,
                                       std::span<Constellation::Cell> points)
{
    const auto scale = static_cast<float>(std::sqrt(constellation_->MeanPower()));
    const float unit = 1 / scale;
    float errors = 0;
    float powers = 0;
    std::array<bool, 256> used{};
    equaliser_.BeginBlock();
    for (size_t i = 0; i < out.size(); ++i) {
        const ComplexRow row = values.From(2 * i);
        const std::complex<float> turn = carrier_.Turn();
        const std::complex<float> symbol = Times(equaliser_.Forward(row), turn) - equaliser_.Backward();
        const std::complex<float> scaled = symbol * scale;
        const Constellation::Cell point = constellation_->Nearest(scaled.real(), scaled.imag());
        const std::complex<float> decided(Constellation::I(point) * unit, Constellation::Q(point) * unit);
        const std::complex<float> error = decided - symbol;
        carrier_.Follow(symbol, decided);
        if (i % adaptEvery_ == 0 && !held_) {
            const std::complex<float> moving = error + meanError_;
            meanError_ -= moving * 2e-4F;
            equaliser_.Adapt(row, Times(moving * decided_.forward, std::conj(turn)), moving * -decided_.backward);
        }
        equaliser_.Push(decided);
        out[i] = scaled;
        points[i] = point;
        used[point] = true;
        errors += std::norm(error);
        powers += std::norm(symbol);
    }
    const double toUnits = constellation_->MeanPower() / static_cast<double>(out.size());
    const auto pointsUsed = static_cast<int>(std::count(used.begin(), used.end(), true));
    return {static_cast<double>(errors) * toUnits, static_cast<double>(powers) * toUnits, pointsUsed};
}

}  // namespace tvn2x::recordings
