#include <algorithm>

#include "dvbc/Impairments.h"
#include "dvbc/LevelUnit.h"
#include "simulator/model/ReceiverModel.h"

namespace tvn2x {

namespace {

constexpr double highestQuality = 45;  // dB of MER and S/N, the receiver's own floor of errors
constexpr double lowestQuality = 5;

}  // namespace

/// Measurement noise of one more reading. MER and S/N come from the same error vectors, so theirs is the same noise.
double ReceiverModel::Noise(Quantity quantity, double spread)
{
    const bool errorVectors = quantity == Quantity::merPercent || quantity == Quantity::signalToNoise;
    const Quantity source = errorVectors ? Quantity::mer : quantity;
    Tuning& tuning = held_ ? held_->tuning : tuning_;
    uint64_t& reading = tuning.readings[static_cast<size_t>(quantity)];
    const double drawn = tuning.noise.Gaussian(static_cast<uint64_t>(source), reading);
    if (!held_)
        ++reading;
    return drawn * spread * model_.Network().readingNoise;
}

double ReceiverModel::Show(double value, Range range)
{
    status_ = value < range.min ? L"UNDER" : value > range.max ? L"OVER" : L"";
    return std::clamp(value, range.min, range.max);
}

/// A reading that only exists on a demodulated signal.
double ReceiverModel::ReadQuality(Quantity quantity, double value, double spread, Range range)
{
    if (!Locked(Stage::carrier)) {
        status_ = L"---";
        return 0;
    }
    return Show(value + Noise(quantity, spread), range);
}

double ReceiverModel::ReadFrequencyOffset()
{
    Begin(L"ReadFrequencyOffset", Access::call);
    return ReadQuality(Quantity::frequencyOffset, View().reception.frequencyOffset, 50, {-200e3, 200e3});
}

double ReceiverModel::ReadRfLevel()
{
    Begin(L"ReadRfLevel", Access::call);
    const Reception& reception = View().reception;
    const bool outage = reception.stagesReached > 0 && !Locked(Stage::gainControl);
    const double level = outage ? reception.noiseLevel : reception.level;
    return dvbc::LevelIn(settings_.levelUnit, Show(level + Noise(Quantity::rfLevel, 0.1), {30, 114}));
}

double ReceiverModel::ReadCarrierToInterference()
{
    Begin(L"ReadCarrierToInterference", Access::call);
    return ReadQuality(Quantity::carrierToInterference, View().reception.carrierToInterference, 0.3, {10, 60});
}

double ReceiverModel::ReadCarrierSuppression()
{
    Begin(L"ReadCarrierSuppression", Access::call);
    return ReadQuality(Quantity::carrierSuppression, View().reception.carrierSuppression, 0.2, {10, 60});
}

double ReceiverModel::ReadMer()
{
    Begin(L"ReadMer", Access::call);
    return ReadQuality(Quantity::mer, View().reception.mer, 0.1, {lowestQuality, highestQuality});
}

double ReceiverModel::ReadMerPercent()
{
    Begin(L"ReadMerPercent", Access::call);
    const double mer = ReadQuality(Quantity::merPercent, View().reception.mer, 0.1, {lowestQuality, highestQuality});
    if (status_ == L"---")
        return 0;
    // The percentage falls where the decibels rise.
    if (!status_.empty())
        status_ = status_ == L"OVER" ? L"UNDER" : L"OVER";
    return dvbc::MerPercent(mer);
}

double ReceiverModel::ReadPhaseJitter()
{
    Begin(L"ReadPhaseJitter", Access::call);
    return ReadQuality(Quantity::phaseJitter, View().reception.phaseJitter, 0.02, {0.05, 10});
}

double ReceiverModel::ReadIqImbalance()
{
    Begin(L"ReadIqImbalance", Access::call);
    const double value = ReadQuality(Quantity::iqImbalance, View().reception.iqImbalance, 0.02, {-20, 20});
    return std::max(0.0, value);
}

double ReceiverModel::ReadIqPhase()
{
    Begin(L"ReadIqPhase", Access::call);
    return ReadQuality(Quantity::iqPhase, View().reception.quadratureError, 0.02, {-10, 10});
}

double ReceiverModel::ReadSignalToNoise()
{
    Begin(L"ReadSignalToNoise", Access::call);
    return ReadQuality(Quantity::signalToNoise, View().reception.signalToNoise, 0.1, {lowestQuality, highestQuality});
}

/// What the running count has found; nothing where the transport stream was lost since it began.
std::optional<BitErrorCount::Progress> ReceiverModel::BerProgress()
{
    if (!ber_)
        return std::nullopt;
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

double ReceiverModel::ReadBer()
{
    Begin(L"ReadBer", Access::call);
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

std::wstring ReceiverModel::ValueStatus()
{
    Begin(L"ValueStatus", Access::get);
    return status_;
}

std::wstring ReceiverModel::BerState()
{
    Begin(L"BerState", Access::get);
    if (const std::optional<BitErrorCount::Progress> progress = BerProgress())
        return progress->State();
    return Locked(Stage::reedSolomon) ? L"0 of " + std::to_wstring(settings_.berSamples) : L"---";
}

std::wstring ReceiverModel::BerResult()
{
    Begin(L"BerResult", Access::get);
    const std::optional<BitErrorCount::Progress> progress = BerProgress();
    return progress ? progress->Result() : L"---";
}

}  // namespace tvn2x
