#pragma once

#include <windows.h>

#include "XKTR2x.h"
#include "com/ComPtr.h"
#include "instrument/Receiver.h"

namespace tvn2x {

/// The receiver behind the driver library's main interface. Errors of the driver become RaisedErrors as they are.
class ComReceiver final : public Receiver
{
public:
    explicit ComReceiver(com::ComPtr<IReceiver> driver) : driver_(std::move(driver)) {}

    double ReadFrequencyOffset() override;
    double ReadRfLevel() override;
    double ReadCarrierToInterference() override;
    double ReadCarrierSuppression() override;
    double ReadMer() override;
    double ReadMerPercent() override;
    double ReadPhaseJitter() override;
    double ReadIqImbalance() override;
    double ReadIqPhase() override;
    double ReadSignalToNoise() override;
    double ReadBer() override;
    std::wstring ValueStatus() override;
    std::wstring BerState() override;
    std::wstring BerResult() override;

    bool TsError() override;
    bool SymbolClockUnlocked() override;
    bool CarrierUnlocked() override;
    bool ReferenceLocked() override;
    bool RfSignalPresent() override;
    ErrorCounters ReadErrorCounters() override;
    void ResetErrorCounters() override;

    int32_t BerSamples() override;
    void BerSamples(int32_t samples) override;
    int32_t RollOffFactor() override;
    void RollOffFactor(int32_t hundredths) override;
    int32_t OrderOfQam() override;
    void OrderOfQam(int32_t order) override;
    double SymbolRate() override;
    void SymbolRate(double symbolsPerSecond) override;
    int32_t SawBandwidth() override;
    void SawBandwidth(int32_t megahertz) override;
    int32_t ReferenceSource() override;
    void ReferenceSource(int32_t source) override;
    int32_t LevelUnit() override;
    void LevelUnit(int32_t code) override;
    int32_t InputRoute() override;
    void InputRoute(int32_t route) override;
    int32_t Mode() override;
    void Mode(int32_t mode) override;
    bool Hold() override;
    void Hold(bool hold) override;
    double Frequency() override;
    void Frequency(double hertz) override;
    void InputAttenuation(int32_t decibels) override;
    void DemodulatorGainControl(int32_t mode) override;
    void Equaliser(int32_t mode) override;
    void Initialise() override;

    std::wstring SerialNumber() override;
    std::wstring FirmwareVersion() override;
    std::wstring InstalledOptions() override;

private:
    com::ComPtr<IReceiver> driver_;
};

}  // namespace tvn2x
