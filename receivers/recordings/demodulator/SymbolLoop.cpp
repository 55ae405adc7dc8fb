#include "receivers/recordings/demodulator/SymbolLoop.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

namespace tvn2x::recordings {
namespace {

/// The operator of the library also cares for infinities.
std::complex<float> Times(std::complex<float> a, std::complex<float> b)
{
    return {a.real() * b.real() - a.imag() * b.imag(), a.real() * b.imag() + a.imag() * b.real()};
}

ComplexGroup Product(const ComplexGroup& a, const ComplexGroup& b)
{
    ComplexGroup product;
    for (size_t i = 0; i < ComplexGroup::size; ++i) {
        product.re[i] = a.re[i] * b.re[i] - a.im[i] * b.im[i];
        product.im[i] = a.re[i] * b.im[i] + a.im[i] * b.re[i];
    }
    return product;
}

ComplexGroup Difference(const ComplexGroup& a, const ComplexGroup& b)
{
    ComplexGroup difference;
    for (size_t i = 0; i < ComplexGroup::size; ++i) {
        difference.re[i] = a.re[i] - b.re[i];
        difference.im[i] = a.im[i] - b.im[i];
    }
    return difference;
}

ComplexGroup Scaled(const ComplexGroup& group, float scale)
{
    ComplexGroup scaled;
    for (size_t i = 0; i < ComplexGroup::size; ++i) {
        scaled.re[i] = group.re[i] * scale;
        scaled.im[i] = group.im[i] * scale;
    }
    return scaled;
}

double Sum(const std::array<float, ComplexGroup::size>& values)
{
    return std::accumulate(values.begin(), values.end(), 0.0);
}

}  // namespace

SymbolLoop::SymbolLoop(const Constellation& constellation, const Kernels& kernels)
    : constellation_(&constellation), equaliser_(kernels)
{
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
    for (size_t first = 0; first < out.size(); first += ComplexGroup::size) {
        const ComplexRow row = values.From(2 * first);
        equaliser_.BeginGroup(row);
        ComplexGroup symbols = Difference(equaliser_.Forward(), equaliser_.Backward());
        for (size_t i = 1; i < ComplexGroup::size; ++i) {
            equaliser_.Release(i, symbols, symbols);
        }
        equaliser_.EndGroup(symbols);
        for (size_t i = 0; i < ComplexGroup::size; ++i) {
            const std::complex<float> symbol = symbols[i];
            const float excess = modulus - std::norm(symbol);
            // What is far out says more about the noise than about the equaliser.
            const std::complex<float> error = symbol * std::max(excess, -2 * modulus);
            equaliser_.Adapt(i, row, error * blind_.forward, error * -blind_.backward);
            out[first + i] = symbol;
        }
    }
}

void SymbolLoop::StartDeciding(const CarrierSearch::Turning& turning)
{
    carrier_.Start(turning.frequency, turning.phase);
    carrier_.SetGain(0.02F);
    decided_ = {6e-4F, 6e-4F};
}

void SymbolLoop::Settle()
{
    carrier_.SetGain(0.003F);
    decided_ = {2.5e-4F, 2.5e-4F};
    adaptEvery_ = 8;
    equaliser_.UseBackward(equaliser_.HasEchoes());
}

/// The points that a group of symbols is taken for.
ComplexGroup SymbolLoop::DecideGroup(ComplexGroup& symbols) const
{
    ComplexGroup points;
    if (!equaliser_.BackwardUsed()) {
        points = symbols;
        for (size_t i = 0; i < ComplexGroup::size; ++i) {
            constellation_->Decide(points.re[i], points.im[i]);
        }
        return points;
    }
    for (size_t i = 0; i < ComplexGroup::size; ++i) {
        equaliser_.Release(i, points, symbols);
        points.re[i] = symbols.re[i];
        points.im[i] = symbols.im[i];
        constellation_->Decide(points.re[i], points.im[i]);
    }
    return points;
}

SymbolLoop::Outcome SymbolLoop::Decide(ComplexRow values, std::span<std::complex<float>> out,
                                       std::span<Constellation::Cell> points)
{
    const auto scale = static_cast<float>(std::sqrt(constellation_->MeanPower()));
    const float unit = 1 / scale;
    std::array<float, ComplexGroup::size> errorPower{};
    std::array<float, ComplexGroup::size> power{};
    std::array<bool, 256> used{};
    equaliser_.BeginBlock();
    for (size_t first = 0; first < out.size(); first += ComplexGroup::size) {
        const ComplexRow row = values.From(2 * first);
        equaliser_.BeginGroup(row);
        const ComplexGroup turns = carrier_.Turns();
        ComplexGroup symbols = Scaled(Difference(Product(equaliser_.Forward(), turns), equaliser_.Backward()), scale);
        const ComplexGroup nearest = DecideGroup(symbols);
        const ComplexGroup errors = Scaled(Difference(nearest, symbols), unit);
        equaliser_.EndGroup(Scaled(nearest, unit));
        float turned = 0;
        std::complex<float> decided;
        for (size_t i = 0; i < ComplexGroup::size; ++i) {
            out[first + i] = symbols[i];
            points[first + i] = Constellation::CellOf(nearest.re[i], nearest.im[i]);
            used[points[first + i]] = true;
            turned += symbols.im[i] * nearest.re[i] - symbols.re[i] * nearest.im[i];
            decided += nearest[i];
            errorPower[i] += errors.re[i] * errors.re[i] + errors.im[i] * errors.im[i];
            power[i] += symbols.re[i] * symbols.re[i] + symbols.im[i] * symbols.im[i];
        }
        // A residual carrier turns nothing, and would shake the loop.
        turned -= Times(meanError_ * scale, std::conj(decided)).imag();
        carrier_.Follow(turned * unit * unit / ComplexGroup::size);
        const bool adapting = !held_ && first % adaptEvery_ == 0;
        for (size_t i = 0; i < ComplexGroup::size && adapting; i += adaptEvery_) {
            const std::complex<float> moving = errors[i] + meanError_;
            meanError_ -= moving * 2e-4F;
            equaliser_.Adapt(i, row, Times(moving * decided_.forward, std::conj(turns[i])),
                             moving * -decided_.backward);
        }
    }
    const auto count = static_cast<double>(out.size());
    const auto pointsUsed = static_cast<int>(std::count(used.begin(), used.end(), true));
    return {Sum(errorPower) * constellation_->MeanPower() / count, Sum(power) / count, pointsUsed};
}

}  // namespace tvn2x::recordings
