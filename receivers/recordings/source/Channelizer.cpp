#include "receivers/recordings/source/Channelizer.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tvn2x::recordings {
namespace {

constexpr double carrierOff = 300e3;  // Hz, at most
constexpr double leastOversampling = 1.3;
constexpr double attenuation = 65;  // dB of what folds into the channel
constexpr size_t blockSamples = 8192;

/// Every which sample is kept: the fewer come out, the less there is to demodulate.
size_t DecimationFor(double rate, const SignalParameters& signal)
{
    // A transition of a tenth of the symbol rate keeps the filter short.
    const double least = std::max(leastOversampling * signal.symbolRate,
                                  OccupiedWidth(signal) + 2 * carrierOff + signal.symbolRate / 10);
    return static_cast<size_t>(std::max(1.0, std::floor(rate / least)));
}

std::complex<float> Turned(double turns)
{
    const double angle = 2 * std::numbers::pi * turns;
    return {static_cast<float>(std::cos(angle)), static_cast<float>(std::sin(angle))};
}

}  // namespace

double OccupiedWidth(const SignalParameters& signal)
{
    return signal.symbolRate * (1 + signal.rollOff);
}

Channelizer::Channelizer(std::unique_ptr<SampleSource> source, double shift, const SignalParameters& signal)
    : source_(std::move(source)), decimation_(DecimationFor(source_->Rate(), signal)), step_(-shift / source_->Rate())
{
    if (decimation_ > 1) {
        const double pass = OccupiedWidth(signal) / 2 + carrierOff;
        const double stop = Rate() - pass;
        filter_.emplace(LowPass(pass / source_->Rate(), stop / source_->Rate(), attenuation), decimation_);
    }
    for (size_t i = 0; i < blockSamples; ++i) {
        rotation_.push_back(Turned(std::remainder(step_ * static_cast<double>(i), 1.0)));
    }
}

size_t Channelizer::Read(std::span<std::complex<float>> into)
{
    size_t given = 0;
    while (given < into.size()) {
        if (taken_ == ready_.size()) {
            ready_.clear();
            taken_ = 0;
            block_.resize(blockSamples);
            block_.resize(source_->Read(block_));
            if (block_.empty()) {
                break;
            }
            Shift();
            if (filter_) {
                filter_->Process(block_, ready_);
            } else {
                ready_.swap(block_);
            }
            continue;
        }
        const size_t count = std::min(into.size() - given, ready_.size() - taken_);
        std::copy_n(ready_.begin() + static_cast<std::ptrdiff_t>(taken_), count,
                    into.begin() + static_cast<std::ptrdiff_t>(given));
        taken_ += count;
        given += count;
    }
    return given;
}

/// The turn of a block's first sample is kept in double precision, so that the phase does not drift in hours.
void Channelizer::Shift()
{
    const std::complex<float> first = Turned(turn_);
    const float a = first.real();
    const float b = first.imag();
    for (size_t i = 0; i < block_.size(); ++i) {
        const float c = a * rotation_[i].real() - b * rotation_[i].imag();
        const float d = a * rotation_[i].imag() + b * rotation_[i].real();
        const float x = block_[i].real();
        const float y = block_[i].imag();
        block_[i] = {x * c - y * d, x * d + y * c};
    }
    turn_ = std::remainder(turn_ + std::remainder(step_ * static_cast<double>(block_.size()), 1.0), 1.0);
}

}  // namespace tvn2x::recordings
