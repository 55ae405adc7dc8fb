#include "receivers/recordings/source/Channelizer.h"

#include <gmock/gmock.h>

#include <cmath>
#include <numbers>

namespace tvn2x::recordings {
namespace {

/// Tones of amplitude 1, at frequencies in Hz.
class Tones final : public SampleSource
{
public:
    Tones(double rate, std::vector<double> frequencies, size_t samples)
        : rate_(rate), frequencies_(std::move(frequencies)), left_(samples)
    {
    }
    double Rate() const override { return rate_; }
    size_t Read(std::span<std::complex<float>> into) override
    {
        const size_t count = std::min(into.size(), left_);
        for (size_t i = 0; i < count; ++i, ++position_) {
            std::complex<double> sum;
            for (const double frequency : frequencies_) {
                sum += std::polar(1.0, 2 * std::numbers::pi * std::fmod(frequency / rate_ * position_, 1.0));
            }
            into[i] = std::complex<float>(sum);
        }
        left_ -= count;
        return count;
    }

private:
    double rate_;
    std::vector<double> frequencies_;
    size_t left_;
    double position_ = 0;
};

/// Amplitude in dB of a tone among what comes out, by correlation.
double AmplitudeOf(double frequency, double rate, const std::vector<std::complex<float>>& samples)
{
    std::complex<double> sum;
    double weights = 0;
    for (size_t i = 0; i < samples.size(); ++i) {
        const double place = static_cast<double>(i);
        const double weight = std::pow(std::sin(std::numbers::pi * place / static_cast<double>(samples.size())), 4);
        sum += weight * std::complex<double>(samples[i]) *
               std::polar(1.0, -2 * std::numbers::pi * std::fmod(frequency / rate * place, 1.0));
        weights += weight;
    }
    return 20 * std::log10(std::abs(sum) / weights);
}

TEST(Channelizer, PassesTheChannelAndLetsNothingFoldIntoIt)
{
    struct Case
    {
        double rate, symbolRate, decimated, rollOff = 0.15;
    };
    for (const Case& c : {Case{10e6, 6.9e6, 10e6}, Case{20e6, 6.952e6, 10e6}, Case{56e6, 6.9e6, 56e6 / 6},
                          Case{20e6, 0.87e6, 20e6 / 11}, Case{18.44e6, 6.9e6, 18.44e6}, Case{18.46e6, 6.9e6, 9.23e6},
                          Case{18.1e6, 7e6, 18.1e6, 0.1}}) {
        const SignalParameters signal{.order = 64, .symbolRate = c.symbolRate, .rollOff = c.rollOff};
        const double edge = OccupiedWidth(signal) / 2 + 290e3;
        const double shift = (c.rate - c.decimated) / 2;  // the channel stands at the edge of the recording
        const std::vector<double> in{shift - edge, shift, shift + edge * 0.7};
        std::vector<double> all = in;
        if (c.decimated < c.rate) {
            all.push_back(shift - c.decimated + edge * 0.5);  // would come to lie at half the edge
        }
        Channelizer channelizer(std::make_unique<Tones>(c.rate, all, 40000), shift, signal);
        EXPECT_DOUBLE_EQ(channelizer.Rate(), c.decimated);
        std::vector<std::complex<float>> out(50000);
        size_t count = 0;
        while (const size_t got =
                   channelizer.Read(std::span(out).subspan(count, std::min<size_t>(777, 50000 - count)))) {
            count += got;
        }
        EXPECT_NEAR(static_cast<double>(count), 40000 * c.decimated / c.rate, 60);
        out.resize(count);
        for (const double frequency : in) {
            EXPECT_NEAR(AmplitudeOf(frequency - shift, c.decimated, out), 0, 0.02) << c.rate << " " << frequency;
        }
        if (c.decimated < c.rate) {
            EXPECT_LT(AmplitudeOf(edge * 0.5, c.decimated, out), -60) << c.rate;
        }
    }
}

}  // namespace
}  // namespace tvn2x::recordings
