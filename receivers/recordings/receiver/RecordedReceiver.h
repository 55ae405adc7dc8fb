#pragma once

#include <complex>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "dvbc/ErroredTime.h"
#include "receivers/model/BitErrorProgress.h"
#include "receivers/model/ReceiverControls.h"
#include "receivers/recordings/receiver/ErroredSeconds.h"
#include "receivers/recordings/receiver/PlayTime.h"
#include "receivers/recordings/receiver/PlayedChannel.h"
#include "receivers/recordings/source/RecordingFolder.h"
#include "setup/catalogue/Options.h"
#include "util/RaisedError.h"

namespace tvn2x::recordings {

/// A receiver whose network is a folder of recordings. One method per operation of the list of receiver operations, in
/// its units. A setter that is refused raises an error that begins with "Let ... failed" and leaves the setting as it
/// was.
///
/// Tuning takes the recording that holds the channel and plays it from its beginning; the locks are the demodulator's,
/// in its own time. Where no recording holds the channel, or the one that does turns out unusable, the locks, readings
/// and counters raise an error that says so, until the receiver is tuned elsewhere.
class RecordedReceiver final : public ReceiverControls
{
public:
    explicit RecordedReceiver(PlayTime& time);

    const RecordingFolder& Signals() const { return folder_; }
    std::wstring Folder() const { return later_.value_or(folder_.Path()); }
    /// Raises what reading the folder raises; then it is as it was. "" is no folder.
    void Signals(const std::wstring& folder);
    /// A folder that is read when somebody asks what comes in.
    void SignalsLater(const std::wstring& folder) { later_ = folder; }

    // What only this receiver knows.
    /// Whether the recording that holds the channel tells the level at full scale.
    bool IsCalibrated() const { return channel_ && channel_->Recorded().fullScale; }
    /// Level in dB below full scale, of a calibrated recording too; nothing where nothing was received.
    std::optional<double> LevelBelowFullScale();
    /// What is to be known of the reception: the recording's name and how much of it was played, or why there is none.
    std::wstring Remark();
    /// The last symbols, as Demodulator tells them.
    std::vector<std::complex<float>> Constellation(size_t most);

    // Readings.
    double ReadRfLevel();
    double ReadBer();
    double ReadFrequencyOffset();
    double ReadIqImbalance();
    double ReadIqPhase();
    double ReadCarrierSuppression();
    double ReadPhaseJitter();
    double ReadCarrierToInterference();
    double ReadSignalToNoise();
    double ReadMer();
    double ReadMerPercent();
    std::wstring BerState();
    std::wstring BerResult();

    // Locks and counters.
    bool TsError();
    bool SymbolClockUnlocked();
    bool CarrierUnlocked();
    bool ReferenceLocked() const { return false; }
    bool RfSignalPresent();
    /// No numbers once the recording is over: nobody knows the seconds after it.
    dvbc::ErroredTime ErrorCounters();
    void ResetErrorCounters();

    // Settings of its own, beside those of every receiver. A recording that is over begins again with the symbol rate.
    int32_t SawBandwidth() const { return settings_.sawBandwidth; }
    void SawBandwidth(int32_t megahertz);  ///< 0, 2, 6, 7, 8: the filters are those of the demodulator in any case
    int32_t ReferenceSource() const { return 0; }
    void ReferenceSource(int32_t source);  ///< 0: the recorder's reference is all there is
    int32_t Mode() const { return dvbCDemodulator; }
    void Mode(int32_t mode);  ///< 4
    bool Hold() const { return held_; }
    void Hold(bool hold);
    int32_t DemodulatorGainControl() const { return 1; }
    void DemodulatorGainControl(int32_t mode);  ///< 1
    int32_t Equaliser() const { return 1; }
    void Equaliser(int32_t mode);  ///< 1
    void Initialise();

    // Identity.
    std::wstring SerialNumber() const { return L"0"; }
    std::wstring FirmwareVersion() const { return L"1.0"; }
    std::wstring InstalledOptions() const;
    std::wstring InstrumentName() const { return L"Receiver of recorded signals"; }
    std::wstring BusAddress() const { return L"IQ1"; }
    std::wstring Model() const { return L"KTR"; }
    std::wstring Manufacturer() const { return L"KESTREL&BRAND"; }
    std::wstring Hardware() const { return L"KTR 2x in software, for recordings"; }
    bool Online() const { return online_; }
    void Online(bool online) { online_ = online; }

private:
    SignalParameters Signal() const;
    void Tune() override;
    void BeginMeasurement() override;
    void RestartBerCount() override { berFrom_.reset(); }
    void Open();
    /// Plays what is due and hands out the channel. Raises what keeps it from being received.
    PlayedChannel& Played();
    void CountErrors();
    double Show(std::optional<double> value);
    double ShowQuality(std::optional<double> SignalReadings::*reading);
    std::optional<BitErrorProgress> BerProgress();

    PlayTime& time_;
    RecordingFolder folder_;
    std::optional<std::wstring> later_;  ///< the folder to be read instead
    bool held_ = false;
    bool online_ = false;
    std::optional<PlayedChannel> channel_;  ///< nothing until somebody asks about it
    std::optional<RaisedError> fault_;      ///< why there is none
    ErroredSeconds errored_;
    std::optional<PacketCounters> berFrom_;  ///< what had been counted when the count of bit errors began
};

}  // namespace tvn2x::recordings
