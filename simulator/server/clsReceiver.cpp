#include "simulator/server/clsReceiver.h"

#include "simulator/server/ErrorCountersObject.h"
#include "simulator/server/ThreadState.h"

namespace tvn2x {

clsReceiver::clsReceiver() : receiver_(std::make_shared<SimulatedReceiver>())
{
    StateOfThread()->timeScale = receiver_->time.Scale();
}

void* clsReceiver::FindInterface(REFIID id) noexcept
{
    if (id == __uuidof(IDriver))
        return static_cast<IDriver*>(&driver_);
    if (id == __uuidof(IIdentification))
        return static_cast<IIdentification*>(&identification_);
    return nullptr;
}

HRESULT clsReceiver::ReadFrequencyOffset(DOUBLE* value) noexcept
{
    return Get(value, [&] { return Model().ReadFrequencyOffset(); });
}

HRESULT clsReceiver::ReadRfLevel(DOUBLE* value) noexcept
{
    return Get(value, [&] { return Model().ReadRfLevel(); });
}

HRESULT clsReceiver::ReadCarrierToInterference(DOUBLE* value) noexcept
{
    return Get(value, [&] { return Model().ReadCarrierToInterference(); });
}

HRESULT clsReceiver::ReadCarrierSuppression(DOUBLE* value) noexcept
{
    return Get(value, [&] { return Model().ReadCarrierSuppression(); });
}

HRESULT clsReceiver::ReadMer(DOUBLE* value) noexcept
{
    return Get(value, [&] { return Model().ReadMer(); });
}

HRESULT clsReceiver::ReadMerPercent(DOUBLE* value) noexcept
{
    return Get(value, [&] { return Model().ReadMerPercent(); });
}

HRESULT clsReceiver::ReadPhaseJitter(DOUBLE* value) noexcept
{
    return Get(value, [&] { return Model().ReadPhaseJitter(); });
}

HRESULT clsReceiver::ReadIqImbalance(DOUBLE* value) noexcept
{
    return Get(value, [&] { return Model().ReadIqImbalance(); });
}

HRESULT clsReceiver::ReadIqPhase(DOUBLE* value) noexcept
{
    return Get(value, [&] { return Model().ReadIqPhase(); });
}

HRESULT clsReceiver::ReadSignalToNoise(DOUBLE* value) noexcept
{
    return Get(value, [&] { return Model().ReadSignalToNoise(); });
}

HRESULT clsReceiver::ReadBer(DOUBLE* value) noexcept
{
    return Get(value, [&] { return Model().ReadBer(); });
}

HRESULT clsReceiver::get_TsError(VARIANT_BOOL* value) noexcept
{
    return Get(value, [&] { return Model().TsError(); });
}

HRESULT clsReceiver::get_SymbolClockUnlocked(VARIANT_BOOL* value) noexcept
{
    return Get(value, [&] { return Model().SymbolClockUnlocked(); });
}

HRESULT clsReceiver::get_CarrierUnlocked(VARIANT_BOOL* value) noexcept
{
    return Get(value, [&] { return Model().CarrierUnlocked(); });
}

HRESULT clsReceiver::get_ReferenceLocked(VARIANT_BOOL* value) noexcept
{
    return Get(value, [&] { return Model().ReferenceLocked(); });
}

HRESULT clsReceiver::get_RfSignalPresent(VARIANT_BOOL* value) noexcept
{
    return Get(value, [&] { return Model().RfSignalPresent(); });
}

HRESULT clsReceiver::put_BerSamples(LONG value) noexcept
{
    return Do([&] { Model().BerSamples(value); });
}

HRESULT clsReceiver::get_BerSamples(LONG* value) noexcept
{
    return Get(value, [&] { return Model().BerSamples(); });
}

HRESULT clsReceiver::put_RollOffFactor(LONG value) noexcept
{
    return Do([&] { Model().RollOffFactor(value); });
}

HRESULT clsReceiver::get_RollOffFactor(LONG* value) noexcept
{
    return Get(value, [&] { return Model().RollOffFactor(); });
}

HRESULT clsReceiver::put_OrderOfQam(LONG value) noexcept
{
    return Do([&] { Model().OrderOfQam(value); });
}

HRESULT clsReceiver::get_OrderOfQam(LONG* value) noexcept
{
    return Get(value, [&] { return Model().OrderOfQam(); });
}

HRESULT clsReceiver::put_SymbolRate(DOUBLE value) noexcept
{
    return Do([&] { Model().SymbolRate(value); });
}

HRESULT clsReceiver::get_SymbolRate(DOUBLE* value) noexcept
{
    return Get(value, [&] { return Model().SymbolRate(); });
}

HRESULT clsReceiver::put_SawBandwidth(LONG value) noexcept
{
    return Do([&] { Model().SawBandwidth(value); });
}

HRESULT clsReceiver::get_SawBandwidth(LONG* value) noexcept
{
    return Get(value, [&] { return Model().SawBandwidth(); });
}

HRESULT clsReceiver::put_ReferenceSource(LONG value) noexcept
{
    return Do([&] { Model().ReferenceSource(value); });
}

HRESULT clsReceiver::get_ReferenceSource(LONG* value) noexcept
{
    return Get(value, [&] { return Model().ReferenceSource(); });
}

HRESULT clsReceiver::put_LevelUnit(LONG value) noexcept
{
    return Do([&] { Model().LevelUnit(value); });
}

HRESULT clsReceiver::get_LevelUnit(LONG* value) noexcept
{
    return Get(value, [&] { return Model().LevelUnit(); });
}

HRESULT clsReceiver::put_InputRoute(LONG value) noexcept
{
    return Do([&] { Model().InputRoute(value); });
}

HRESULT clsReceiver::get_InputRoute(LONG* value) noexcept
{
    return Get(value, [&] { return Model().InputRoute(); });
}

HRESULT clsReceiver::put_Mode(LONG value) noexcept
{
    return Do([&] { Model().Mode(value); });
}

HRESULT clsReceiver::get_Mode(LONG* value) noexcept
{
    return Get(value, [&] { return Model().Mode(); });
}

HRESULT clsReceiver::put_Hold(VARIANT_BOOL value) noexcept
{
    return Do([&] { Model().Hold(value != VARIANT_FALSE); });
}

HRESULT clsReceiver::get_Hold(VARIANT_BOOL* value) noexcept
{
    return Get(value, [&] { return Model().Hold(); });
}

HRESULT clsReceiver::put_Frequency(DOUBLE value) noexcept
{
    return Do([&] { Model().Frequency(value); });
}

HRESULT clsReceiver::get_Frequency(DOUBLE* value) noexcept
{
    return Get(value, [&] { return Model().Frequency(); });
}

HRESULT clsReceiver::get_ValueStatus(BSTR* value) noexcept
{
    return Get(value, [&] { return Model().ValueStatus(); });
}

HRESULT clsReceiver::get_BerState(BSTR* value) noexcept
{
    return Get(value, [&] { return Model().BerState(); });
}

HRESULT clsReceiver::get_ErrorCounters(IErrorCounters** value) noexcept
{
    if (!value)
        return com::Refuse(E_POINTER);
    *value = nullptr;
    return Do([&] {
        *value = new ErrorCountersObject(Model().ErrorCounters());
        (*value)->AddRef();
    });
}

HRESULT clsReceiver::ResetErrorCounters() noexcept
{
    return Do([&] { Model().ResetErrorCounters(); });
}

HRESULT clsReceiver::get_SerialNumber(BSTR* value) noexcept
{
    return Get(value, [&] { return Model().SerialNumber(); });
}

HRESULT clsReceiver::get_FirmwareVersion(BSTR* value) noexcept
{
    return Get(value, [&] { return Model().FirmwareVersion(); });
}

HRESULT clsReceiver::get_InstalledOptions(BSTR* value) noexcept
{
    return Get(value, [&] { return Model().InstalledOptions(); });
}

HRESULT clsReceiver::get_BerResult(BSTR* value) noexcept
{
    return Get(value, [&] { return Model().BerResult(); });
}

HRESULT clsReceiver::Initialise() noexcept
{
    return Do([&] { Model().Initialise(); });
}

HRESULT clsReceiver::put_InputAttenuation(LONG value) noexcept
{
    return Do([&] { Model().InputAttenuation(value); });
}

HRESULT clsReceiver::get_InputAttenuation(LONG* value) noexcept
{
    return Get(value, [&] { return Model().InputAttenuation(); });
}

HRESULT clsReceiver::put_DemodulatorGainControl(LONG value) noexcept
{
    return Do([&] { Model().DemodulatorGainControl(value); });
}

HRESULT clsReceiver::get_DemodulatorGainControl(LONG* value) noexcept
{
    return Get(value, [&] { return Model().DemodulatorGainControl(); });
}

HRESULT clsReceiver::put_Equaliser(LONG value) noexcept
{
    return Do([&] { Model().Equaliser(value); });
}

HRESULT clsReceiver::get_Equaliser(LONG* value) noexcept
{
    return Get(value, [&] { return Model().Equaliser(); });
}

}  // namespace tvn2x
