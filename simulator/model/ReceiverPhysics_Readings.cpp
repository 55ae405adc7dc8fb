#include <algorithm>

#include "dvbc/Impairments.h"
#include "dvbc/LevelUnit.h"
#include "simulator/model/ReceiverPhysics.h"

namespace tvn2x {
namespace {

constexpr double highestQuality = 45;  // dB of MER and S/N, the receiver's own floor of errors
constexpr double lowestQuality = 5;

}  // namespace

/// Measurement noise of one more reading. MER and S/N come from the same error vectors, so theirs is the same noise.
double ReceiverPhysics::Noise(Quantity quantity, double spread)
{
    const bool errorVectors = quantity == Quantity::merPercent || quantity == Quantity::signalToNoise;
    const Quantity source = errorVectors ? Quantity::mer : quantity;
    Tuning& tuning = held_ ? held_->tuning : tuning_;
    uint64_t& reading = tuning.readings[static_cast<size_t>(quantity)];
    const double drawn = tuning.noise.Gaussian(static_cast<uint64_t>(source), reading);
    if (!held_) {
        ++reading;
    }
    return drawn * spread * model_.Network().readingNoise;
}

double ReceiverPhysics::Show(double value, Range range)
{
    status_ = value < range.min ? L"UNDER" : value > range.max ? L"OVER" : L"";
    return std::clamp(value, range.min, range.max);
}

/// A reading that only exists on a demodulated signal.
double ReceiverPhysics::ReadQuality(Quantity quantity, double value, double spread, Range range)
{
    if (!Locked(Stage::carrier)) {
        status_ = L"---";
        return 0;
    }
    return Show(value + Noise(quantity, spread), range);
}

double ReceiverPhysics::ReadFrequencyOffset()
{
    return ReadQuality(Quantity::frequencyOffset, View().reception.frequencyOffset, 50, {-200e3, 200e3});
}

double ReceiverPhysics::ReadRfLevel()
{
    const Reception& reception = View().reception;
    const bool outage = reception.stagesReached > 0 && !Locked(Stage::gainControl);
    const double level = outage ? reception.noiseLevel : reception.level;
    return dvbc::LevelIn(settings_.levelUnit, Show(level + Noise(Quantity::rfLevel, 0.1), {30, 114}));
}

double ReceiverPhysics::ReadCarrierToInterference()
{
    return ReadQuality(Quantity::carrierToInterference, View().reception.carrierToInterference, 0.3, {10, 60});
}

double ReceiverPhysics::ReadCarrierSuppression()
{
    return ReadQuality(Quantity::carrierSuppression, View().reception.carrierSuppression, 0.2, {10, 60});
}

double ReceiverPhysics::ReadMer()
{
    return ReadQuality(Quantity::mer, View().reception.mer, 0.1, {lowestQuality, highestQuality});
}

double ReceiverPhysics::ReadMerPercent()
{
    const double mer = ReadQuality(Quantity::merPercent, View().reception.mer, 0.1, {lowestQuality, highestQuality});
    if (status_ == L"---") {
        return 0;
    }
    // The percentage falls where the decibels rise.
    if (!status_.empty()) {
        status_ = status_ == L"OVER" ? L"UNDER" : L"OVER";
    }
    return dvbc::MerPercent(mer);
}

double ReceiverPhysics::ReadPhaseJitter()
{
    return ReadQuality(Quantity::phaseJitter, View().reception.phaseJitter, 0.02, {0.05, 10});
}

double ReceiverPhysics::ReadIqImbalance()
{
    const double value = ReadQuality(Quantity::iqImbalance, View().reception.iqImbalance, 0.02, {-20, 20});
    return std::max(0.0, value);
}

double ReceiverPhysics::ReadIqPhase()
{
    return ReadQuality(Quantity::iqPhase, View().reception.quadratureError, 0.02, {-10, 10});
}

double ReceiverPhysics::ReadSignalToNoise()
{
    return ReadQuality(Quantity::signalToNoise, View().reception.signalToNoise, 0.1, {lowestQuality, highestQuality});
}

/// What the running count has found; nothing where the transport stream was lost since it began.
std::optional<BitErrorCount::Progress> ReceiverPhysics::BerProgress()
{
    if (!ber_) {
        return std::nullopt;
    }
    const double now = ViewTime();
    const Tuning& view = View();
    const bool lost =
        view.acquisition.UnlockedTime(Stage::reedSolomon, ber_->StartedAt() - view.since, now - view.since) > 0;
    if (lost || !Locked(Stage::reedSolomon)) {
        ber_.reset();
        return std::nullopt;
    }
    return ber_->At(now);
}

double ReceiverPhysics::ReadBer()
{
    std::optional<BitErrorCount::Progress> progress = BerProgress();
    if (!progress && Locked(Stage::reedSolomon)) {
        const Reception& reception = View().reception;
        ber_.emplace(ViewTime(), reception.bitRate, reception.ber, settings_.berSamples, View().noise);
        progress = BerProgress();
    }
    if (!progress) {
        status_ = L"---";
        return 0;
    }
    status_ = progress->errors > 0 ? L"" : L"UNDER";
    return progress->Ratio();
}

std::wstring ReceiverPhysics::BerState()
{
    if (const std::optional<BitErrorCount::Progress> progress = BerProgress()) {
        return progress->State();
    }
    return Locked(Stage::reedSolomon) ? L"0 of " + std::to_wstring(settings_.berSamples) : L"---";
}

std::wstring ReceiverPhysics::BerResult()
{
    const std::optional<BitErrorCount::Progress> progress = BerProgress();
    return progress ? progress->Result() : L"---";
}

}  // namespace tvn2x
