#include "receivers/recordings/demodulator/SignalSearch.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tvn2x::recordings {

using std::numbers::pi;

SignalSearch::SignalSearch(const SignalParameters& parameters, double rate)
    : rate_(rate), symbolRate_(parameters.symbolRate), transform_(length), window_(FadingWindow(length))
{
    for (size_t i = 0; i < length; ++i) {
        turns_.emplace_back(std::polar(1.0, pi * std::remainder(symbolRate_ / rate * static_cast<double>(i), 2.0)));
    }
    // The product of two root-raised-cosine edges one symbol rate apart is half a wave of a cosine.
    const double halfWidth = parameters.rollOff * symbolRate_ / 2 / rate * length;
    for (int bin = -static_cast<int>(halfWidth); bin <= static_cast<int>(halfWidth); ++bin) {
        weights_.push_back(static_cast<float>(std::cos(pi / 2 * bin / halfWidth)));
    }
}

SignalSearch::Edges SignalSearch::EdgesOf(std::span<const std::complex<float>> samples, double firstTime) const
{
    std::vector<std::complex<float>> upper(length);
    std::vector<std::complex<float>> lower(length);
    for (size_t i = 0; i < length; ++i) {
        const std::complex<float> sample = samples[i] * window_[i];
        upper[i] = sample * std::conj(turns_[i]);
        lower[i] = sample * turns_[i];
    }
    transform_.Forward(upper);
    transform_.Forward(lower);
    // Both have turned until the stretch began.
    const std::complex<float> turned(std::polar(1.0, -2 * pi * std::remainder(symbolRate_ / rate_ * firstTime, 1.0)));
    Edges edges{std::vector<std::complex<float>>(length), std::vector<float>(length)};
    for (size_t i = 0; i < length; ++i) {
        edges.product[i] = upper[i] * std::conj(lower[i]) * turned;
        edges.power[i] = (std::norm(upper[i]) + std::norm(lower[i])) / 2;
    }
    return edges;
}

/// The products around a frequency.
std::complex<double> SignalSearch::Weighed(const Edges& edges, int bin) const
{
    std::complex<double> sum;
    const int first = bin - static_cast<int>(weights_.size() / 2);
    for (size_t i = 0; i < weights_.size(); ++i) {
        const size_t at = static_cast<size_t>(first + static_cast<int>(i) + static_cast<int>(length)) % length;
        sum += std::complex<double>(edges.product[at] * weights_[i]);
    }
    return sum;
}

double SignalSearch::WeighedPower(const Edges& edges, int bin) const
{
    double sum = 0;
    const int first = bin - static_cast<int>(weights_.size() / 2);
    for (size_t i = 0; i < weights_.size(); ++i) {
        const size_t at = static_cast<size_t>(first + static_cast<int>(i) + static_cast<int>(length)) % length;
        sum += static_cast<double>(edges.power[at] * weights_[i]);
    }
    return sum;
}

std::optional<SignalSearch::Found> SignalSearch::Search(std::span<const std::complex<float>> samples) const
{
    std::vector<Edges> stretches;
    for (size_t first = 0; first + length <= searchSamples; first += hop) {
        stretches.push_back(EdgesOf(samples.subspan(first, length), static_cast<double>(first)));
    }
    const int most = static_cast<int>(widest / rate_ * length);
    std::vector<double> strengths;
    for (int bin = -most; bin <= most; ++bin) {
        double strength = 0;
        for (const Edges& edges : stretches) {
            strength += std::abs(Weighed(edges, bin));
        }
        strengths.push_back(strength);
    }
    const auto best = std::ranges::max_element(strengths);
    const int bin = static_cast<int>(best - strengths.begin()) - most;
    double power = 0;
    std::complex<double> turning;
    for (size_t i = 0; i < stretches.size(); ++i) {
        power += WeighedPower(stretches[i], bin);
        if (i > 0) {
            turning += Weighed(stretches[i], bin) * std::conj(Weighed(stretches[i - 1], bin));
        }
    }
    // The edges' coherence is 1 without noise; what is no number is no signal.
    if (!(*best > leastCoherence * power)) {
        return std::nullopt;
    }
    return Found{bin * rate_ / length, std::arg(turning) / (2 * pi) * rate_ / hop / symbolRate_ * 1e6};
}

}  // namespace tvn2x::recordings
