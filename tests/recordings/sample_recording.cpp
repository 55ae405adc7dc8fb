// Makes a recording of a cable for tests and for the demonstration: DVB-C channels with noise of their own, side by
// side, as a SigMF pair of 8-bit samples. What is sent comes from the tests' own sender, which knows nothing of the
// receiver.
//
//   sample_recording FOLDER SECONDS CHANNEL...
//
// A channel is its frequency in MHz, its order of QAM and its C/N in dB, such as 306:64:35. The symbol rate is 6.9
// MSymb/s, the rate 10.5 million samples a second for one channel and 42 for several, around the middle of them.

#include <cmath>
#include <complex>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include "support/sender/Mapper.h"
#include "support/sender/OuterEncoder.h"
#include "support/sender/Transmitter.h"

namespace {

using std::numbers::pi;
using Samples = std::vector<std::complex<float>>;

constexpr double symbolRate = 6.9e6;
constexpr double rollOff = 0.15;
constexpr int phases = 35;  // samples a symbol are 35 / 23: 10.5 million a second
constexpr int stride = 23;
constexpr double channelRate = symbolRate * phases / stride;
constexpr int halfPulse = 24;  // symbols
constexpr int wideFactor = 4;
constexpr int halfImage = 16;          // samples of a channel, of the filter that widens it
constexpr double fullScaleLevel = 75;  // dBuV
constexpr double level = 0.3;          // RMS of all channels, of full scale

double Window(double place)
{
    return std::pow(std::cos(pi / 2 * place), 2);
}

/// One channel at its own rate, without end.
class Channel
{
public:
    Channel(int order, double noise, uint32_t seed)
        : mapper_(order),
          packet_(seed * 100000),
          random_(seed),
          size_(1 / std::sqrt(tvn2x::sender::Mapper::MeanPower(order)))
    {
        deviation_ = std::pow(10, -noise / 20) * std::sqrt(tvn2x::sender::Mapper::MeanPower(order) / 2);
        for (int phase = 0; phase < phases; ++phase) {
            for (int k = -halfPulse + 1; k <= halfPulse; ++k) {
                const double t = static_cast<double>(phase) / phases - k;
                pulse_.push_back(static_cast<float>(tvn2x::sender::Pulse(t, rollOff) *
                                                    std::sqrt(Window(std::min(1.0, std::abs(t) / halfPulse)))));
            }
        }
    }

    std::complex<float> Next()
    {
        while (points_.size() < first_ + 2 * halfPulse) {
            const size_t known = points_.size();
            mapper_.Map(encoder_.Encode(tvn2x::sender::NumberedPacket(packet_++)), points_);
            // The points are noisy and not the samples: so the noise keeps to the channel.
            for (size_t i = known; i < points_.size(); ++i) {
                points_[i] += std::complex<double>(gaussian_(random_) * deviation_, gaussian_(random_) * deviation_);
            }
        }
        if (first_ > 100000) {
            points_.erase(points_.begin(), points_.begin() + static_cast<std::ptrdiff_t>(first_));
            first_ = 0;
        }
        const float* const pulse = &pulse_[static_cast<size_t>(phase_ * 2 * halfPulse)];
        float inPhase = 0;
        float quadrature = 0;
        for (size_t k = 0; k < 2 * halfPulse; ++k) {
            inPhase += static_cast<float>(points_[first_ + k].real()) * pulse[k];
            quadrature += static_cast<float>(points_[first_ + k].imag()) * pulse[k];
        }
        phase_ += stride;
        first_ += static_cast<size_t>(phase_ / phases);
        phase_ %= phases;
        return {inPhase * size_, quadrature * size_};
    }

private:
    tvn2x::sender::OuterEncoder encoder_;
    tvn2x::sender::Mapper mapper_;
    uint32_t packet_;
    std::mt19937 random_;
    std::normal_distribution<double> gaussian_;
    float size_;
    double deviation_ = 0;
    std::vector<float> pulse_;  ///< of each phase, oldest point first
    std::vector<std::complex<double>> points_;
    size_t first_ = 0;
    int phase_ = 0;
};

/// A channel among others: at the wide rate, and shifted.
class Widened
{
public:
    Widened(std::unique_ptr<Channel> channel, int factor, double shift)
        : channel_(std::move(channel)), factor_(factor), step_(std::polar(1.0, 2 * pi * shift / (channelRate * factor)))
    {
        for (int phase = 0; phase < factor; ++phase) {
            for (int k = -halfImage + 1; k <= halfImage; ++k) {
                const double t = static_cast<double>(phase) / factor - k;
                const double wave = t == 0 ? 1 : std::sin(pi * t) / (pi * t);
                taps_.push_back(static_cast<float>(wave * Window(std::abs(t) / (halfImage + 1))));
            }
        }
        recent_.resize(2 * halfImage);
    }

    void AddTo(Samples& samples)
    {
        for (size_t i = 0; i < samples.size(); i += static_cast<size_t>(factor_)) {
            turn_ /= std::abs(turn_);
            recent_.erase(recent_.begin());
            recent_.push_back(channel_->Next());
            for (size_t phase = 0; phase < static_cast<size_t>(factor_); ++phase) {
                std::complex<float> sum;
                for (size_t k = 0; k < recent_.size(); ++k) {
                    sum += recent_[k] * taps_[phase * recent_.size() + k];
                }
                samples[i + phase] += sum * std::complex<float>(turn_);
                turn_ *= step_;
            }
        }
    }

private:
    std::unique_ptr<Channel> channel_;
    int factor_;
    std::complex<double> step_;  ///< from sample to sample
    std::complex<double> turn_ = 1;
    std::vector<float> taps_;
    Samples recent_;
};

/// What the command line says of a channel.
struct Wanted
{
    double megahertz;
    int order;
    double noise;
};

void WriteMetadata(const std::string& path, double rate, double frequency)
{
    std::ofstream(path) << R"({"global":{"core:version":"1.0.0","core:datatype":"ci8","core:sample_rate":)"
                        << std::to_string(rate) << R"(,"core:description":"made by sample_recording",)"
                        << R"("tvn2x:full_scale_dbuv":)" << fullScaleLevel
                        << R"(},"captures":[{"core:sample_start":0,"core:frequency":)" << std::to_string(frequency)
                        << R"(}],"annotations":[]})"
                        << "\n";
}

void Record(const std::string& folder, double seconds, const std::vector<Wanted>& wanted)
{
    const int factor = wanted.size() == 1 ? 1 : wideFactor;
    const double rate = channelRate * factor;
    const double centre = (wanted.front().megahertz + wanted.back().megahertz) / 2 * 1e6;
    std::vector<Widened> channels;
    for (const Wanted& channel : wanted) {
        channels.emplace_back(
            std::make_unique<Channel>(channel.order, channel.noise, static_cast<uint32_t>(channels.size() + 1)), factor,
            channel.megahertz * 1e6 - centre);
    }
    WriteMetadata(folder + "/cable.sigmf-meta", rate, centre);
    std::ofstream data(folder + "/cable.sigmf-data", std::ios::binary);
    const double size = level / std::sqrt(static_cast<double>(wanted.size())) * 128;
    const auto stored = [size](float value) {
        return static_cast<char>(std::lround(std::min(127.0, std::max(-128.0, value * size))));
    };
    constexpr size_t block = 1 << 16;
    std::vector<char> bytes(2 * block);
    for (double left = seconds * rate; left > 0; left -= block) {
        Samples samples(block);
        for (Widened& channel : channels) {
            channel.AddTo(samples);
        }
        for (size_t i = 0; i < block; ++i) {
            bytes[2 * i] = stored(samples[i].real());
            bytes[2 * i + 1] = stored(samples[i].imag());
        }
        data.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }
}

}  // namespace

int main(int count, char** words)
{
    std::vector<Wanted> wanted;
    for (int i = 3; i < count; ++i) {
        Wanted channel{};
        if (std::sscanf(words[i], "%lf:%d:%lf", &channel.megahertz, &channel.order, &channel.noise) == 3) {
            wanted.push_back(channel);
        }
    }
    if (count < 4 || wanted.size() + 3 != static_cast<size_t>(count)) {
        std::fprintf(stderr, "usage: sample_recording FOLDER SECONDS MHZ:ORDER:CN...\n");
        return 2;
    }
    Record(words[1], std::atof(words[2]), wanted);
    return 0;
}
