#pragma once

#include <windows.h>

#include <memory>

#include "XKTR2x.h"
#include "com/Object.h"
#include "simulator/server/SimulatedReceiver.h"
#include "simulator/server/clsReceiver_IDriver.h"
#include "simulator/server/clsReceiver_IIdentification.h"

namespace tvn2x {

/// The driver object of one simulated receiver. This file is its main interface; the host's view of an instrument and
/// the identification are member objects with a file of their own.
class clsReceiver final : public com::Object<IReceiver, ::clsReceiver>
{
public:
    clsReceiver();

    ReceiverModel& Model() { return receiver_->model; }
    const std::shared_ptr<SimulatedReceiver>& Shared() const { return receiver_; }

    HRESULT STDMETHODCALLTYPE ReadFrequencyOffset(DOUBLE* value) noexcept override;
    HRESULT STDMETHODCALLTYPE ReadRfLevel(DOUBLE* value) noexcept override;
    HRESULT STDMETHODCALLTYPE ReadCarrierToInterference(DOUBLE* value) noexcept override;
    HRESULT STDMETHODCALLTYPE ReadCarrierSuppression(DOUBLE* value) noexcept override;
    HRESULT STDMETHODCALLTYPE ReadMer(DOUBLE* value) noexcept override;
    HRESULT STDMETHODCALLTYPE ReadMerPercent(DOUBLE* value) noexcept override;
    HRESULT STDMETHODCALLTYPE ReadPhaseJitter(DOUBLE* value) noexcept override;
    HRESULT STDMETHODCALLTYPE ReadIqImbalance(DOUBLE* value) noexcept override;
    HRESULT STDMETHODCALLTYPE ReadIqPhase(DOUBLE* value) noexcept override;
    HRESULT STDMETHODCALLTYPE ReadSignalToNoise(DOUBLE* value) noexcept override;
    HRESULT STDMETHODCALLTYPE ReadBer(DOUBLE* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_TsError(VARIANT_BOOL* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_SymbolClockUnlocked(VARIANT_BOOL* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_CarrierUnlocked(VARIANT_BOOL* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ReferenceLocked(VARIANT_BOOL* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_RfSignalPresent(VARIANT_BOOL* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_BerSamples(LONG value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_BerSamples(LONG* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_RollOffFactor(LONG value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_RollOffFactor(LONG* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_OrderOfQam(LONG value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_OrderOfQam(LONG* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_SymbolRate(DOUBLE value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_SymbolRate(DOUBLE* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_SawBandwidth(LONG value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_SawBandwidth(LONG* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_ReferenceSource(LONG value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ReferenceSource(LONG* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_LevelUnit(LONG value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_LevelUnit(LONG* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_InputRoute(LONG value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_InputRoute(LONG* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Mode(LONG value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Mode(LONG* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Hold(VARIANT_BOOL value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Hold(VARIANT_BOOL* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Frequency(DOUBLE value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Frequency(DOUBLE* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ValueStatus(BSTR* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_BerState(BSTR* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ErrorCounters(IErrorCounters** value) noexcept override;
    HRESULT STDMETHODCALLTYPE ResetErrorCounters() noexcept override;
    HRESULT STDMETHODCALLTYPE get_SerialNumber(BSTR* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_FirmwareVersion(BSTR* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_InstalledOptions(BSTR* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_BerResult(BSTR* value) noexcept override;
    HRESULT STDMETHODCALLTYPE Initialise() noexcept override;
    HRESULT STDMETHODCALLTYPE put_InputAttenuation(LONG value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_InputAttenuation(LONG* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_DemodulatorGainControl(LONG value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_DemodulatorGainControl(LONG* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Equaliser(LONG value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Equaliser(LONG* value) noexcept override;

private:
    void* FindInterface(REFIID id) noexcept override;

    std::shared_ptr<SimulatedReceiver> receiver_;
    clsReceiver_IDriver driver_{*this};
    clsReceiver_IIdentification identification_{*this};
};

}  // namespace tvn2x
