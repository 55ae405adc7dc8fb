#include "receivers/recordings/receiver/RecordedReceiver.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

#include "dvbc/Decibels.h"
#include "dvbc/Impairments.h"
#include "dvbc/Qam.h"
#include "receivers/recordings/source/Channelizer.h"
#include "receivers/recordings/source/RecordingError.h"
#include "receivers/recordings/source/RecordingStream.h"
#include "setup/catalogue/Options.h"

namespace tvn2x::recordings {
namespace {

constexpr int32_t orders[] = {16, 32, 64, 128, 256};
constexpr ControlRanges ranges{1, highestFrequency, 0.87e6, 7e6, 10, 25, orders};

std::wstring Decimals(double value, int places)
{
    const double scale = std::pow(10, places);
    std::wstring text = std::to_wstring(std::round(value * scale) / scale);
    return text.substr(0, text.find_last_of(L".,") + static_cast<size_t>(places) + 1);
}

}  // namespace

RecordedReceiver::RecordedReceiver(PlayTime& time) : ReceiverControls(ranges), time_(time) {}

void RecordedReceiver::Signals(const std::wstring& folder)
{
    folder_ = folder.empty() ? RecordingFolder() : RecordingFolder(folder);
    later_.reset();
    Tune();
}

SignalParameters RecordedReceiver::Signal() const
{
    return {.order = settings_.order, .symbolRate = settings_.symbolRate, .rollOff = settings_.rollOff / 100.0};
}

/// A client sets frequency, symbol rate and the rest one after the other: the recording is opened when it asks.
void RecordedReceiver::Tune()
{
    channel_.reset();
    fault_.reset();
    berFrom_.reset();
    errored_ = {};
}

void RecordedReceiver::Open()
{
    const std::wstring channel = L"the channel at " + Decimals(settings_.frequency / 1e6, 3) + L" MHz";
    if (later_) {
        folder_ = RecordingFolder(*later_);
        later_.reset();
    }
    if (folder_.Recordings().empty()) {
        RaiseRecording(L"There are no recordings. Choose the folder that holds them: --signals FOLDER");
    }
    const SignalParameters signal = Signal();
    const Recording* const recording = folder_.Find(settings_.frequency, OccupiedWidth(signal));
    if (recording == nullptr) {
        RaiseRecording(L"No recording holds " + channel + L" with its " + Decimals(OccupiedWidth(signal) / 1e6, 2) +
                       L" MHz. There is: " + folder_.Bands());
    }
    auto stream = std::make_unique<RecordingStream>(*recording, OpenStored(recording->file));
    const double shift = settings_.frequency - recording->frequency;
    channel_.emplace(*recording, std::make_unique<Channelizer>(std::move(stream), shift, signal), signal, time_);
}

PlayedChannel& RecordedReceiver::Played()
{
    if (fault_) {
        throw RaisedError(*fault_);
    }
    try {
        if (!channel_) {
            Open();
        }
        if (!held_) {
            channel_->Play();
            CountErrors();
        }
        return *channel_;
    } catch (const RaisedError& raised) {
        fault_ = raised;
        throw;
    } catch (const std::invalid_argument&) {
        fault_ = RaisedError(unusableRecording, L"XKIQ2x",
                             L"A recording of " + std::to_wstring(std::llround(folder_.Recordings().front().rate)) +
                                 L" samples a second is too slow for this symbol rate. Record at a higher rate");
        throw RaisedError(*fault_);
    }
}

void RecordedReceiver::CountErrors()
{
    if (!channel_->IsOver()) {
        errored_.Add(time_.Seconds(), channel_->State());
    }
}

std::optional<double> RecordedReceiver::LevelBelowFullScale()
{
    const double power = Played().State().channelPower;
    return power > 0 ? std::optional(dvbc::DecibelsOfPower(power)) : std::nullopt;
}

std::wstring RecordedReceiver::Remark()
{
    if (fault_) {
        return fault_->description;
    }
    if (!channel_) {
        return {};
    }
    const Recording& recording = channel_->Recorded();
    std::wstring text = recording.FileName() + L", " + Decimals(channel_->Seconds(), 1) + L" of " +
                        Decimals(recording.Seconds(), 1) + L" s";
    if (channel_->IsOver()) {
        text += L": it ended before the measurement did";
    }
    if (const std::optional<double> level = LevelBelowFullScale()) {
        text += L", level " + Decimals(*level, 1) + L" dB of full scale" +
                (recording.fullScale ? L"" : L" (not calibrated, not judged)");
    }
    return text;
}

std::vector<std::complex<float>> RecordedReceiver::Constellation(size_t most)
{
    return channel_ ? channel_->Constellation(most) : std::vector<std::complex<float>>();
}

bool RecordedReceiver::TsError()
{
    const PlayedChannel& channel = Played();
    return !channel.State().locks.reedSolomon || channel.HasFailedLately();
}

bool RecordedReceiver::SymbolClockUnlocked()
{
    return !Played().State().locks.timing;
}

bool RecordedReceiver::CarrierUnlocked()
{
    return !Played().State().locks.carrier;
}

bool RecordedReceiver::RfSignalPresent()
{
    return Played().State().locks.level;
}

dvbc::ErroredTime RecordedReceiver::ErrorCounters()
{
    if (Played().IsOver()) {
        constexpr double unknown = std::numeric_limits<double>::quiet_NaN();
        return {unknown, unknown, unknown};
    }
    return errored_.Time();
}

void RecordedReceiver::ResetErrorCounters()
{
    Played();
    errored_.Reset();
}

double RecordedReceiver::Show(std::optional<double> value)
{
    status_ = value ? L"" : L"---";
    return value.value_or(0);
}

/// A reading of the constellation, which only a carrier that is locked has.
double RecordedReceiver::ShowQuality(std::optional<double> SignalReadings::*reading)
{
    PlayedChannel& channel = Played();
    return Show(channel.State().locks.carrier ? channel.Readings().*reading : std::nullopt);
}

double RecordedReceiver::ReadFrequencyOffset()
{
    const DemodulatorState& state = Played().State();
    return Show(state.locks.carrier ? std::optional(state.frequencyOffset) : std::nullopt);
}

/// Without a calibration nobody knows it in the unit that the receiver is set to.
double RecordedReceiver::ReadRfLevel()
{
    const std::optional<double> level = LevelBelowFullScale();
    const std::optional<double>& fullScale = channel_->Recorded().fullScale;
    if (!level || !fullScale) {
        return Show(std::nullopt);
    }
    return Show(dvbc::LevelIn(settings_.levelUnit, *level + *fullScale));
}

/// A signal without an interferer that stands out is above the range.
double RecordedReceiver::ReadCarrierToInterference()
{
    const double value = ShowQuality(&SignalReadings::carrierToInterference);
    if (!status_.empty() && channel_->State().locks.carrier && channel_->Readings().mer) {
        status_ = L"OVER";
    }
    return value;
}

double RecordedReceiver::ReadCarrierSuppression()
{
    return ShowQuality(&SignalReadings::carrierSuppression);
}

double RecordedReceiver::ReadMer()
{
    return ShowQuality(&SignalReadings::mer);
}

double RecordedReceiver::ReadMerPercent()
{
    const double mer = ReadMer();
    return status_.empty() ? dvbc::MerPercent(mer) : 0;
}

double RecordedReceiver::ReadPhaseJitter()
{
    return ShowQuality(&SignalReadings::phaseJitter);
}

double RecordedReceiver::ReadIqImbalance()
{
    return ShowQuality(&SignalReadings::amplitudeImbalance);
}

double RecordedReceiver::ReadIqPhase()
{
    return ShowQuality(&SignalReadings::quadratureError);
}

double RecordedReceiver::ReadSignalToNoise()
{
    return ShowQuality(&SignalReadings::signalToNoise);
}

/// What the running count has found; nothing where the stream was lost since it began, or where so many packets failed
/// that nobody knows how many bits were wrong. A packet that failed had one wrong byte more than is corrected at least.
std::optional<BitErrorProgress> RecordedReceiver::BerProgress()
{
    constexpr double mostFailed = 0.01;  // of all packets
    PlayedChannel& channel = Played();
    const PacketCounters& now = channel.State().counters;
    if (!channel.State().locks.reedSolomon || (berFrom_ && now.lostSymbols != berFrom_->lostSymbols)) {
        berFrom_.reset();
    }
    if (!berFrom_) {
        return std::nullopt;
    }
    const auto packets = static_cast<double>(now.packets - berFrom_->packets);
    const auto failed = static_cast<double>(now.failedPackets - berFrom_->failedPackets);
    if (failed > packets * mostFailed) {
        return std::nullopt;
    }
    BitErrorProgress progress{.wanted = settings_.berSamples};
    progress.bits = static_cast<double>(now.checkedBits - berFrom_->checkedBits) + failed * dvbc::packetBytes * 8;
    progress.errors =
        static_cast<double>(now.correctedBits - berFrom_->correctedBits) + failed * (dvbc::correctableBytes + 1);
    return progress;
}

double RecordedReceiver::ReadBer()
{
    const PlayedChannel& channel = Played();
    if (!berFrom_ && channel.State().locks.reedSolomon) {
        berFrom_ = channel.State().counters;
    }
    const std::optional<BitErrorProgress> progress = BerProgress();
    if (!progress) {
        return Show(std::nullopt);
    }
    status_ = progress->errors > 0 ? L"" : L"UNDER";
    return progress->Ratio();
}

std::wstring RecordedReceiver::BerState()
{
    if (const std::optional<BitErrorProgress> progress = BerProgress()) {
        return progress->State() + (!progress->Done() && channel_->IsOver() ? L", the recording is over" : L"");
    }
    return L"---";
}

std::wstring RecordedReceiver::BerResult()
{
    const std::optional<BitErrorProgress> progress = BerProgress();
    return progress ? progress->Result() : L"---";
}

}  // namespace tvn2x::recordings
