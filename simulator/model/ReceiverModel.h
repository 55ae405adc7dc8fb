#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "simulator/model/Acquisition.h"
#include "simulator/model/BitErrorCount.h"
#include "simulator/model/ErrorCounter.h"
#include "simulator/model/FaultScript.h"
#include "simulator/model/NetworkModel.h"
#include "simulator/model/ReceiverSettings.h"
#include "simulator/model/SimulatedTime.h"

namespace tvn2x {

/// The test receiver on its network: what it is set to, which locks it has, what it reads.
///
/// Every operation counts, takes the latency, and may raise an error: one from the fault script, one that says that the
/// receiver does not answer, or, from a setter, one that begins with "Let ... failed" and leaves the setting as it was.
class ReceiverModel
{
public:
    explicit ReceiverModel(SimulatedTime& time);

    // Readings. ValueStatus tells of the last one: "", or the range marker "---", "UNDER" or "OVER", with which the
    // reading is 0 or the end of the range.
    double ReadFrequencyOffset();        ///< Hz
    double ReadRfLevel();                ///< in the level unit
    double ReadCarrierToInterference();  ///< dB
    double ReadCarrierSuppression();     ///< dB
    double ReadMer();                    ///< dB RMS
    double ReadMerPercent();             ///< % RMS
    double ReadPhaseJitter();            ///< degrees RMS
    double ReadIqImbalance();            ///< %
    double ReadIqPhase();                ///< degrees
    double ReadSignalToNoise();          ///< dB
    double ReadBer();                    ///< starts a count where none runs
    std::wstring ValueStatus();
    std::wstring BerState();
    std::wstring BerResult();

    // Locks and counters.
    bool TsError();
    bool SymbolClockUnlocked();
    bool CarrierUnlocked();
    bool ReferenceLocked();
    bool RfSignalPresent();
    ErroredTime ErrorCounters();
    void ResetErrorCounters();

    // Settings, with the units and ranges of ReceiverSettings.
    int32_t BerSamples();
    void BerSamples(int32_t blocks);  ///< 1..10000
    int32_t RollOffFactor();
    void RollOffFactor(int32_t hundredths);  ///< 12..35
    int32_t OrderOfQam();
    void OrderOfQam(int32_t order);
    double SymbolRate();
    void SymbolRate(double symbolsPerSecond);  ///< 0.1e6..8e6
    int32_t SawBandwidth();
    void SawBandwidth(int32_t megahertz);  ///< 0, 2, 6, 7, 8; may take another one, see FilterFor
    int32_t ReferenceSource();
    void ReferenceSource(int32_t source);  ///< 0 internal, 1 external
    int32_t LevelUnit();
    void LevelUnit(int32_t code);  ///< 0..5
    int32_t InputRoute();
    void InputRoute(int32_t route);
    int32_t Mode();
    void Mode(int32_t mode);  ///< 1..15
    bool Hold();
    void Hold(bool hold);
    double Frequency();
    void Frequency(double hertz);  ///< 30e6..1200e6; always tunes anew
    int32_t InputAttenuation();
    void InputAttenuation(int32_t decibels);  ///< 0..70, or 255
    int32_t DemodulatorGainControl();
    void DemodulatorGainControl(int32_t mode);  ///< 0, 1
    int32_t Equaliser();
    void Equaliser(int32_t mode);  ///< 0, 1
    void Initialise();

    // Identity.
    std::wstring SerialNumber();
    std::wstring FirmwareVersion();
    std::wstring InstalledOptions();
    std::wstring InstrumentName();
    std::wstring BusAddress();
    std::wstring Model();
    std::wstring Manufacturer();
    std::wstring Hardware();
    bool Online();
    void Online(bool online);  ///< stays off line when the receiver does not answer

    // The simulation itself: no operations of the receiver.
    const NetworkModel& Network() const { return model_; }
    void Network(NetworkModel model);
    const ReceiverSettings& Settings() const { return settings_; }
    void SetOrderOfQam(int32_t order);
    void SetLevelUnit(int32_t code);
    FaultScript& Faults() { return faults_; }
    int32_t Operations() const;  ///< since the object was made; stays at the largest number
    double Latency() const { return latency_; }
    void Latency(double seconds) { latency_ = seconds; }

private:
    enum class Quantity
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
    static constexpr size_t quantityCount = 10;

    struct Tuning
    {
        double since = 0;
        SeededNoise noise{0, 0};
        Reception reception;
        Acquisition acquisition;
        std::array<uint64_t, quantityCount> readings{};  ///< so that each draws its own noise
    };

    struct HeldTuning
    {
        Tuning tuning;
        double at = 0;
    };

    struct Range
    {
        double min;
        double max;
    };

    void Begin(std::wstring_view operation, Access access);
    bool HasOption(std::wstring_view option) const;
    ReceiverSettings BasicState() const;
    /// The SAW filter that the receiver takes when it is asked for one, none where it refuses. Of 6 and 7 MHz, which
    /// have one place, it takes the one that is fitted; with swapped filters it takes the nearest of all.
    std::optional<int32_t> FilterFor(int32_t megahertz) const;

    void Tune();
    void CountErrors();
    template <class Value>
    void Change(Value ReceiverSettings::*setting, Value value);

    const Tuning& View() const { return held_ ? held_->tuning : tuning_; }
    double ViewTime() { return held_ ? held_->at : time_.Seconds(); }
    bool Locked(Stage stage);

    double Noise(Quantity quantity, double spread);
    double Show(double value, Range range);
    double ReadQuality(Quantity quantity, double value, double spread, Range range);
    std::optional<BitErrorCount::Progress> BerProgress();

    SimulatedTime& time_;
    NetworkModel model_;
    ReceiverSettings settings_;
    FaultScript faults_;
    double latency_ = 0;
    uint64_t operations_ = 0;
    bool online_ = false;

    Tuning tuning_;
    std::optional<HeldTuning> held_;
    ErrorCounter counter_;
    double countedUntil_ = 0;
    double referenceSince_ = 0;
    std::optional<BitErrorCount> ber_;
    std::wstring status_;
};

}  // namespace tvn2x
