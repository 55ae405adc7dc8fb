#include <algorithm>

#include "dvbc/Impairments.h"
#include "dvbc/LevelUnit.h"
#include "simulator/model/ReceiverPhysics.h"

namespace tvn2x {
namespace {

constexpr double highestQuality = 45;  // dB of MER and S/N, the receiver's own floor of errors
constexpr double lowestQuality = 5;

/// What is read with a noise of its own. The numbers lead to the random numbers: whoever has one keeps it, so that a
/// scan repeats with the next version too.
namespace quantity {

/// Of the quantities, in the order in which they came.
enum Number : uint64_t
{
    frequencyOffset,
    rfLevel,
    carrierToInterference,
    carrierSuppression,
    mer,
    merPercent,
    signalToNoise,
    phaseJitter,
    iqImbalance,
    iqPhase
};

}  // namespace quantity

}  // namespace

/// Measurement noise of one more reading. MER and S/N come from the same error vectors, so theirs is the same noise.
double ReceiverPhysics::Noise(uint64_t what, double spread)
{
    const bool errorVectors = what == quantity::merPercent || what == quantity::signalToNoise;
    const uint64_t source = errorVectors ? quantity::mer : what;
    Tuning& tuning = held_ ? held_->tuning : tuning_;
    uint64_t& reading = tuning.readings[what];
    const double drawn = tuning.noise.Gaussian(source, reading);
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
double ReceiverPhysics::ReadQuality(uint64_t what, double value, double spread, Range range)
{
    if (!Locked(Stage::carrier)) {
        status_ = L"---";
        return 0;
    }
    return Show(value + Noise(what, spread), range);
}

double ReceiverPhysics::ReadFrequencyOffset()
{
    return ReadQuality(quantity::frequencyOffset, View().reception.frequencyOffset, 50, {-200e3, 200e3});
}

double ReceiverPhysics::ReadRfLevel()
{
    const Reception& reception = View().reception;
    const bool outage = reception.stagesReached > 0 && !Locked(Stage::gainControl);
    const double level = outage ? reception.noiseLevel : reception.level;
    return dvbc::LevelIn(settings_.levelUnit, Show(level + Noise(quantity::rfLevel, 0.1), {30, 114}));
}

double ReceiverPhysics::ReadCarrierToInterference()
{
    return ReadQuality(quantity::carrierToInterference, View().reception.carrierToInterference, 0.3, {10, 60});
}

double ReceiverPhysics::ReadCarrierSuppression()
{
    return ReadQuality(quantity::carrierSuppression, View().reception.channel.carrierSuppression, 0.2, {10, 60});
}

double ReceiverPhysics::ReadMer()
{
    return ReadQuality(quantity::mer, View().reception.mer, 0.1, {lowestQuality, highestQuality});
}

double ReceiverPhysics::ReadMerPercent()
{
    const double mer = ReadQuality(quantity::merPercent, View().reception.mer, 0.1, {lowestQuality, highestQuality});
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
    return ReadQuality(quantity::phaseJitter, View().reception.channel.phaseJitter, 0.02, {0.05, 10});
}

double ReceiverPhysics::ReadIqImbalance()
{
    const double value = ReadQuality(quantity::iqImbalance, View().reception.channel.iqImbalance, 0.02, {-20, 20});
    return std::max(0.0, value);
}

double ReceiverPhysics::ReadIqPhase()
{
    return ReadQuality(quantity::iqPhase, View().reception.channel.quadratureError, 0.02, {-10, 10});
}

double ReceiverPhysics::ReadSignalToNoise()
{
    return ReadQuality(quantity::signalToNoise, View().reception.signalToNoise, 0.1, {lowestQuality, highestQuality});
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
        view.acquisition.UnlockedTime(Stage::reedSolomon, Elapsed(view, ber_->StartedAt()), Elapsed(view, now)) > 0;
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
