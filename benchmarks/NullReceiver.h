#pragma once

#include "instrument/Receiver.h"

namespace tvn2x::bench {

/// A synchronised receiver that answers at once, so that a scan costs what the scan itself costs.
class NullReceiver final : public Receiver
{
public:
    double ReadFrequencyOffset() override { return 1250; }
    double ReadRfLevel() override { return 64.5; }
    double ReadCarrierToInterference() override { return 48.2; }
    double ReadCarrierSuppression() override { return 42.5; }
    double ReadMer() override { return 37.4; }
    double ReadMerPercent() override { return 1.35; }
    double ReadPhaseJitter() override { return 0.43; }
    double ReadIqImbalance() override { return 0.7; }
    double ReadIqPhase() override { return 0.31; }
    double ReadSignalToNoise() override { return 38.1; }
    double ReadBer() override { return 1.2e-7; }
    std::wstring ValueStatus() override { return {}; }
    std::wstring BerState() override { return L"---"; }
    std::wstring BerResult() override { return {}; }
    bool TsError() override { return false; }
    bool SymbolClockUnlocked() override { return false; }
    bool CarrierUnlocked() override { return false; }
    bool ReferenceLocked() override { return true; }
    bool RfSignalPresent() override { return true; }
    ErrorCounters ReadErrorCounters() override { return {}; }
    void ResetErrorCounters() override {}
    int32_t BerSamples() override { return 0; }
    void BerSamples(int32_t) override {}
    int32_t RollOffFactor() override { return 0; }
    void RollOffFactor(int32_t) override {}
    int32_t OrderOfQam() override { return 0; }
    void OrderOfQam(int32_t) override {}
    double SymbolRate() override { return 0; }
    void SymbolRate(double) override {}
    int32_t SawBandwidth() override { return 0; }
    void SawBandwidth(int32_t) override {}
    int32_t ReferenceSource() override { return 0; }
    void ReferenceSource(int32_t) override {}
    int32_t LevelUnit() override { return 0; }
    void LevelUnit(int32_t) override {}
    int32_t InputRoute() override { return 0; }
    void InputRoute(int32_t) override {}
    int32_t Mode() override { return 0; }
    void Mode(int32_t) override {}
    bool Hold() override { return false; }
    void Hold(bool) override {}
    double Frequency() override { return 0; }
    void Frequency(double) override {}
    void InputAttenuation(int32_t) override {}
    void DemodulatorGainControl(int32_t) override {}
    void Equaliser(int32_t) override {}
    void Initialise() override {}
    std::wstring SerialNumber() override { return {}; }
    std::wstring FirmwareVersion() override { return {}; }
    std::wstring InstalledOptions() override { return {}; }
};

class NullRunControl final : public RunControl
{
public:
    bool StopFlag() override { return false; }
    void Pause(float) override {}
};

class NullParent final : public HostParent
{
public:
    void Status(const std::wstring&) override {}
    void Progress(double) override {}
    void Progress(double, int16_t) override {}
    void CellChanged(int32_t, int16_t) override {}
    void ChannelStart(double, double) override {}
};

}  // namespace tvn2x::bench
