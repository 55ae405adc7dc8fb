#include "receivers/recordings/demodulator/ConstellationAnalysis.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "dvbc/Decibels.h"
#include "receivers/recordings/demodulator/FourierTransform.h"

namespace tvn2x::recordings {
namespace {

using std::numbers::pi;

constexpr double greatestError = 0.40;

std::complex<double> PlaceOf(Constellation::Cell point)
{
    return {Constellation::I(point), Constellation::Q(point)};
}

/// What is left of symbols when the lines that they should lie on are taken away.
std::vector<std::complex<float>> Residues(const ReceivedSymbols& received, std::complex<double> origin,
                                          std::complex<double> i, std::complex<double> q)
{
    std::vector<std::complex<float>> residues(received.symbols.size());
    for (size_t k = 0; k < residues.size(); ++k) {
        const std::complex<double> point = PlaceOf(received.points[k]);
        residues[k] = received.symbols[k] - std::complex<float>(origin + point.real() * i + point.imag() * q);
    }
    return residues;
}

double MeanPower(std::span<const std::complex<float>> values)
{
    double sum = 0;
    for (const std::complex<float>& value : values) {
        sum += static_cast<double>(std::norm(value));
    }
    return sum / static_cast<double>(values.size());
}

/// Jitter as a variance in squares of radians.
struct Jitter
{
    double variance = 0;
    double blur = 0;  ///< standard deviation of the variance
};

Jitter MeasureJitter(const ReceivedSymbols& received, std::span<const std::complex<float>> residues)
{
    double difference = 0;
    double weight = 0;
    for (size_t k = 0; k < residues.size(); ++k) {
        const std::complex<double> point = PlaceOf(received.points[k]);
        const std::complex<double> turned = std::complex<double>(residues[k]) * std::conj(point);
        difference += turned.imag() * turned.imag() - turned.real() * turned.real();
        weight += std::norm(point) * std::norm(point);
    }
    const double noise = MeanPower(residues);
    return {difference / weight, noise / std::sqrt(weight)};
}

/// The power of spectral lines in the residues, there and ahead of the equaliser.
struct Lines
{
    double left = 0;
    double received = 0;
};

Lines MeasureLines(std::span<const std::complex<float>> residues, const ConstellationAnalysis::Response& response)
{
    constexpr size_t length = 2048;
    static const FourierTransform transform(length);
    static const std::vector<float> window = FadingWindow(length);
    std::vector<double> density(length);
    std::vector<std::complex<float>> stretch(length);
    size_t stretches = 0;
    for (size_t first = 0; first + length <= residues.size(); first += length / 2, ++stretches) {
        for (size_t i = 0; i < length; ++i) {
            stretch[i] = residues[first + i] * window[i];
        }
        transform.Forward(stretch);
        for (size_t bin = 0; bin < length; ++bin) {
            density[bin] += static_cast<double>(std::norm(stretch[bin]));
        }
    }
    std::vector<double> sorted = density;
    const auto median = sorted.begin() + length / 2;
    std::nth_element(sorted.begin(), median, sorted.end());
    const double floor = *median;
    constexpr double windowPower = 3.0 / 8 * length;
    const double scale = 1 / (static_cast<double>(stretches) * windowPower * length);
    Lines lines;
    for (size_t bin = 0; bin < length; ++bin) {
        // A line stands in three bins; noise is nowhere four times its median after so many stretches.
        const double before = density[(bin + length - 1) % length];
        const double after = density[(bin + 1) % length];
        if (std::max({before, density[bin], after}) > 4 * floor) {
            const double power = (density[bin] - floor) * scale;
            const double frequency = static_cast<double>(bin) / length - (bin < length / 2 ? 0 : 1);
            lines.left += power;
            lines.received += power / std::max(response.at(frequency), 1e-3);
        }
    }
    return lines;
}

}  // namespace

ConstellationAnalysis::Axes ConstellationAnalysis::FitAxes(const ReceivedSymbols& received) const
{
    const auto count = static_cast<double>(received.symbols.size());
    std::complex<double> meanPoint;
    std::complex<double> meanSymbol;
    for (size_t k = 0; k < received.symbols.size(); ++k) {
        meanPoint += PlaceOf(received.points[k]) / count;
        meanSymbol += std::complex<double>(received.symbols[k]) / count;
    }
    double ii = 0;
    double iq = 0;
    double qq = 0;
    std::complex<double> ri;
    std::complex<double> rq;
    for (size_t k = 0; k < received.symbols.size(); ++k) {
        const std::complex<double> point = PlaceOf(received.points[k]) - meanPoint;
        const std::complex<double> symbol = std::complex<double>(received.symbols[k]) - meanSymbol;
        ii += point.real() * point.real();
        iq += point.real() * point.imag();
        qq += point.imag() * point.imag();
        ri += symbol * point.real();
        rq += symbol * point.imag();
    }
    const double determinant = ii * qq - iq * iq;
    Axes axes;
    axes.i = (ri * qq - rq * iq) / determinant;
    axes.q = (rq * ii - ri * iq) / determinant;
    axes.origin = meanSymbol - meanPoint.real() * axes.i - meanPoint.imag() * axes.q;
    return axes;
}

double ConstellationAnalysis::ErrorPower(const ReceivedSymbols& received) const
{
    double sum = 0;
    for (size_t k = 0; k < received.symbols.size(); ++k) {
        sum += std::norm(std::complex<double>(received.symbols[k]) - PlaceOf(received.points[k]));
    }
    return sum / static_cast<double>(received.symbols.size());
}

/// What white noise of that power looks like behind the decisions: where a point has a neighbour, what goes beyond the
/// middle between them is taken for the neighbour's; where it has none, nothing is lost.
double ConstellationAnalysis::FlatteredPower(double power) const
{
    constexpr int steps = 400;
    const double variance = power / 2;
    double folded = 0;
    for (int step = 0; step < steps; ++step) {
        const double error = -1 + (step + 0.5) * 2 / steps;
        for (int points = -3; points <= 3; ++points) {
            const double distance = error + 2 * points;
            folded += error * error * std::exp(-distance * distance / (2 * variance)) * 2 / steps;
        }
    }
    folded /= std::sqrt(2 * pi * variance);
    const double bounded = constellation_->Neighbours() / 4;
    return 2 * (bounded * folded + (1 - bounded) * variance);
}

double ConstellationAnalysis::TruePower(double flattered) const
{
    double low = flattered;
    double high = 2;
    for (int step = 0; step < 50; ++step) {
        const double middle = (low + high) / 2;
        (FlatteredPower(middle) < flattered ? low : high) = middle;
    }
    return low;
}

SignalReadings ConstellationAnalysis::Measure(const ReceivedSymbols& received, const Response& response) const
{
    SignalReadings readings;
    readings.symbols = received.symbols.size();
    if (received.symbols.size() < leastSymbols) {
        return readings;
    }
    const double flattered = ErrorPower(received);
    if (flattered > greatestError) {
        return readings;
    }
    const double power = constellation_->MeanPower();
    const Axes axes = FitAxes(received);
    const std::vector<std::complex<float>> residues = Residues(received, axes.origin, axes.i, axes.q);
    const double blurred = MeanPower(residues);
    // Noise that was folded away; below a twentieth the decisions are right.
    const double folded = blurred > 0.05 ? TruePower(blurred) - blurred : 0;
    readings.mer = dvbc::DecibelsOfPower(power / (flattered + folded));

    const double carrier = std::norm(axes.origin) / std::max(response.carrier, 1e-3);
    readings.carrierSuppression = std::min(70.0, dvbc::DecibelsOfPower(power / carrier));
    const double longer = std::max(std::abs(axes.i), std::abs(axes.q));
    const double shorter = std::min(std::abs(axes.i), std::abs(axes.q));
    readings.amplitudeImbalance = (longer / shorter - 1) * 100;
    const double sine = (axes.i * std::conj(axes.q)).real() / (longer * shorter);
    readings.quadratureError = std::abs(std::asin(std::clamp(sine, -1.0, 1.0))) * 180 / pi;

    const Jitter jitter = MeasureJitter(received, residues);
    constexpr double greatestBlur = 0.2 * pi / 180;
    if (jitter.blur < greatestBlur * greatestBlur) {
        const bool seen = jitter.variance > 2.5 * jitter.blur;
        readings.phaseJitter = seen ? std::sqrt(jitter.variance) * 180 / pi : 0;
    }
    const Lines lines = MeasureLines(residues, response);
    if (lines.received > 0) {
        readings.carrierToInterference = dvbc::DecibelsOfPower(power / lines.received);
    }
    const double noise = blurred + folded - std::max(0.0, jitter.variance) * power + lines.received - lines.left;
    readings.signalToNoise = dvbc::DecibelsOfPower(power / std::max(noise, 1e-6 * power));
    return readings;
}

}  // namespace tvn2x::recordings
