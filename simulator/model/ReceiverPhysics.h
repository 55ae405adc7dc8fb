#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "receivers/model/ReceiverControls.h"
#include "setup/catalogue/Options.h"
#include "simulator/model/Acquisition.h"
#include "simulator/model/BitErrorCount.h"
#include "simulator/model/ErrorCounter.h"
#include "simulator/model/NetworkModel.h"
#include "simulator/model/SimulatedTime.h"

namespace tvn2x {

/// The test receiver on its network: what it is set to, which locks it has, what it reads. One method per operation, in
/// the units of the list; the ranges are the receiver's own. A setter that is refused raises an error that begins with
/// "Let ... failed" and leaves the setting as it was.
class ReceiverPhysics final : public ReceiverControls
{
public:
    explicit ReceiverPhysics(SimulatedTime& time);

    const NetworkModel& Network() const { return model_; }
    /// A new or changed network starts over: the first tuning to each frequency draws as the first one did.
    void Network(NetworkModel model);

    /// Seconds that the client waits for the locks, 0 for no end. Locks come sooner by the time scale; one that comes
    /// after that time does not, so that the scale makes no lock out of none.
    double SettlingTime() const { return settlingTime_; }
    void SettlingTime(double seconds) { settlingTime_ = seconds; }

    // Readings.
#define RECEIVER_READING(name, parameter) double name();
#include "setup/catalogue/ReceiverOperations.h"
    std::wstring BerState();
    std::wstring BerResult();

    // Locks and counters.
    bool TsError();
    bool SymbolClockUnlocked();
    bool CarrierUnlocked();
    bool ReferenceLocked();
    bool RfSignalPresent();
    dvbc::ErroredTime ErrorCounters();
    void ResetErrorCounters();

    // Settings of its own.
    int32_t SawBandwidth() const
    {
        return settings_.sawBandwidth;
    }
    void SawBandwidth(int32_t megahertz);  ///< 0, 2, 6, 7, 8; may take another one, see FilterFor
    int32_t ReferenceSource() const
    {
        return settings_.externalReference ? 1 : 0;
    }
    void ReferenceSource(int32_t source);
    int32_t Mode() const
    {
        return settings_.mode;
    }
    void Mode(int32_t mode);  ///< 1..15
    bool Hold() const
    {
        return held_.has_value();
    }
    void Hold(bool hold);
    int32_t DemodulatorGainControl() const
    {
        return settings_.automaticGain ? 1 : 0;
    }
    void DemodulatorGainControl(int32_t mode);
    int32_t Equaliser() const
    {
        return settings_.adaptiveEqualiser ? 1 : 0;
    }
    void Equaliser(int32_t mode);
    void Initialise();

    // Identity.
    std::wstring SerialNumber() const
    {
        return model_.Network().serialNumber;
    }
    std::wstring FirmwareVersion() const
    {
        return model_.Network().firmwareVersion;
    }
    std::wstring InstalledOptions() const
    {
        return model_.Network().installedOptions;
    }
    /// Always says that it is simulated, whatever the model calls it: readings must not pass for those of a network.
    std::wstring InstrumentName() const
    {
        const std::wstring& name = model_.Network().instrumentName;
        return name.find(L"imulated") == std::wstring::npos ? name + L" (simulated)" : name;
    }
    std::wstring BusAddress() const
    {
        return model_.Network().busAddress;
    }
    std::wstring Model() const
    {
        return model_.Network().model;
    }
    std::wstring Manufacturer() const
    {
        return model_.Network().manufacturer;
    }
    std::wstring Hardware() const
    {
        return model_.Network().hardware;
    }
    bool Online() const
    {
        return online_ && model_.Network().connected;
    }
    void Online(bool online);

private:
    /// What has come in since the receiver was tuned, or since what it is tuned by was changed.
    struct Tuning
    {
        double since = 0;
        double scale = 1;  ///< of the time that the locks take
        SeededNoise noise{0, 0};
        Reception reception;
        Acquisition acquisition;
        std::map<uint64_t, uint64_t> readings;  ///< of each quantity, so that each draws its own noise
    };

    /// What a held receiver shows.
    struct HeldTuning
    {
        Tuning tuning;
        double at = 0;  ///< the moment of Hold
    };

    /// What the receiver can show of a reading, in its unit.
    struct Range
    {
        double min;
        double max;
    };

    /// Whether what a value of a setting needs, if anything, is among the installed options.
    bool IsFittedFor(Capability capability, int32_t value) const;
    ReceiverSettings BasicState() const;
    /// The SAW filter that the receiver takes when it is asked for one, none where it refuses. Of 6 and 7 MHz, which
    /// have one place, it takes the one that is fitted; with swapped filters it takes the nearest of all.
    std::optional<int32_t> FilterFor(int32_t megahertz) const;

    void Tune() override;
    void TuneAnew() override;
    void BeginMeasurement() override;
    void RestartBerCount() override
    {
        ber_.reset();
    }
    void FrontEndChanged() override
    {
        Tune();
    }
    void RequireRoute(int32_t route) const override;
    void CountErrors();

    const Tuning& View() const
    {
        return held_ ? held_->tuning : tuning_;
    }
    double ViewTime()
    {
        return held_ ? held_->at : time_.Seconds();
    }
    /// Seconds of the receiver's own from tuning to a moment: they run faster until it has locked.
    static double Elapsed(const Tuning& tuning, double at);
    double TakesToLock(const Acquisition& acquisition) const;
    Reception ReceiveNow();
    bool Locked(Stage stage);

    double Noise(uint64_t what, double spread);
    double Show(double value, Range range);
    double ReadQuality(uint64_t what, double value, double spread, Range range);
    std::optional<BitErrorCount::Progress> BerProgress();

    SimulatedTime& time_;
    NetworkModel model_;
    bool online_ = false;

    Tuning tuning_;
    std::optional<HeldTuning> held_;
    ErrorCounter counter_;
    double countedUntil_ = 0;
    std::map<uint64_t, uint64_t> tunings_;  ///< how often, by frequency in Hz
    double settlingTime_ = 0;
    double referenceSince_ = 0;
    std::optional<BitErrorCount> ber_;
};

}  // namespace tvn2x
