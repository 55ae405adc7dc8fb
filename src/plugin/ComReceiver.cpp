#include "plugin/ComReceiver.h"

#include "com/Call.h"

namespace tvn2x {
namespace {

using com::Ask;
using com::Call;

bool AskFlag(IReceiver* driver, HRESULT (STDMETHODCALLTYPE IReceiver::*question)(VARIANT_BOOL*))
{
    return Ask(driver, question) != VARIANT_FALSE;
}

}  // namespace

double ComReceiver::ReadFrequencyOffset()
{
    return Ask(driver_.Get(), &IReceiver::ReadFrequencyOffset);
}

double ComReceiver::ReadRfLevel()
{
    return Ask(driver_.Get(), &IReceiver::ReadRfLevel);
}

double ComReceiver::ReadCarrierToInterference()
{
    return Ask(driver_.Get(), &IReceiver::ReadCarrierToInterference);
}

double ComReceiver::ReadCarrierSuppression()
{
    return Ask(driver_.Get(), &IReceiver::ReadCarrierSuppression);
}

double ComReceiver::ReadMer()
{
    return Ask(driver_.Get(), &IReceiver::ReadMer);
}

double ComReceiver::ReadMerPercent()
{
    return Ask(driver_.Get(), &IReceiver::ReadMerPercent);
}

double ComReceiver::ReadPhaseJitter()
{
    return Ask(driver_.Get(), &IReceiver::ReadPhaseJitter);
}

double ComReceiver::ReadIqImbalance()
{
    return Ask(driver_.Get(), &IReceiver::ReadIqImbalance);
}

double ComReceiver::ReadIqPhase()
{
    return Ask(driver_.Get(), &IReceiver::ReadIqPhase);
}

double ComReceiver::ReadSignalToNoise()
{
    return Ask(driver_.Get(), &IReceiver::ReadSignalToNoise);
}

double ComReceiver::ReadBer()
{
    return Ask(driver_.Get(), &IReceiver::ReadBer);
}

std::wstring ComReceiver::ValueStatus()
{
    return Ask(driver_.Get(), &IReceiver::get_ValueStatus);
}

std::wstring ComReceiver::BerState()
{
    return Ask(driver_.Get(), &IReceiver::get_BerState);
}

std::wstring ComReceiver::BerResult()
{
    return Ask(driver_.Get(), &IReceiver::get_BerResult);
}

bool ComReceiver::TsError()
{
    return AskFlag(driver_.Get(), &IReceiver::get_TsError);
}

bool ComReceiver::SymbolClockUnlocked()
{
    return AskFlag(driver_.Get(), &IReceiver::get_SymbolClockUnlocked);
}

bool ComReceiver::CarrierUnlocked()
{
    return AskFlag(driver_.Get(), &IReceiver::get_CarrierUnlocked);
}

bool ComReceiver::ReferenceLocked()
{
    return AskFlag(driver_.Get(), &IReceiver::get_ReferenceLocked);
}

bool ComReceiver::RfSignalPresent()
{
    return AskFlag(driver_.Get(), &IReceiver::get_RfSignalPresent);
}

ErrorCounters ComReceiver::ReadErrorCounters()
{
    const OwnFloatingPointAfterwards after;  // of the object's end too
    const auto counters = Ask(driver_.Get(), &IReceiver::get_ErrorCounters);
    if (!counters)
        throw RaisedError(error::objectMissing, L"clsSetup.Driver", L"The instrument driver gives no error counters");
    ErrorCounters result;
    result.syncErrors = Ask(counters.Get(), &IErrorCounters::get_SyncErrors);
    result.dataErrors = Ask(counters.Get(), &IErrorCounters::get_DataErrors);
    result.unavailable = Ask(counters.Get(), &IErrorCounters::get_Unavailable);
    return result;
}

void ComReceiver::ResetErrorCounters()
{
    Call(driver_.Get(), &IReceiver::ResetErrorCounters);
}

int32_t ComReceiver::BerSamples()
{
    return Ask(driver_.Get(), &IReceiver::get_BerSamples);
}

void ComReceiver::BerSamples(int32_t samples)
{
    Call(driver_.Get(), &IReceiver::put_BerSamples, samples);
}

int32_t ComReceiver::RollOffFactor()
{
    return Ask(driver_.Get(), &IReceiver::get_RollOffFactor);
}

void ComReceiver::RollOffFactor(int32_t hundredths)
{
    Call(driver_.Get(), &IReceiver::put_RollOffFactor, hundredths);
}

int32_t ComReceiver::OrderOfQam()
{
    return Ask(driver_.Get(), &IReceiver::get_OrderOfQam);
}

void ComReceiver::OrderOfQam(int32_t order)
{
    Call(driver_.Get(), &IReceiver::put_OrderOfQam, order);
}

double ComReceiver::SymbolRate()
{
    return Ask(driver_.Get(), &IReceiver::get_SymbolRate);
}

void ComReceiver::SymbolRate(double symbolsPerSecond)
{
    Call(driver_.Get(), &IReceiver::put_SymbolRate, symbolsPerSecond);
}

int32_t ComReceiver::SawBandwidth()
{
    return Ask(driver_.Get(), &IReceiver::get_SawBandwidth);
}

void ComReceiver::SawBandwidth(int32_t megahertz)
{
    Call(driver_.Get(), &IReceiver::put_SawBandwidth, megahertz);
}

int32_t ComReceiver::ReferenceSource()
{
    return Ask(driver_.Get(), &IReceiver::get_ReferenceSource);
}

void ComReceiver::ReferenceSource(int32_t source)
{
    Call(driver_.Get(), &IReceiver::put_ReferenceSource, source);
}

int32_t ComReceiver::LevelUnit()
{
    return Ask(driver_.Get(), &IReceiver::get_LevelUnit);
}

void ComReceiver::LevelUnit(int32_t code)
{
    Call(driver_.Get(), &IReceiver::put_LevelUnit, code);
}

int32_t ComReceiver::InputRoute()
{
    return Ask(driver_.Get(), &IReceiver::get_InputRoute);
}

void ComReceiver::InputRoute(int32_t route)
{
    Call(driver_.Get(), &IReceiver::put_InputRoute, route);
}

int32_t ComReceiver::Mode()
{
    return Ask(driver_.Get(), &IReceiver::get_Mode);
}

void ComReceiver::Mode(int32_t mode)
{
    Call(driver_.Get(), &IReceiver::put_Mode, mode);
}

bool ComReceiver::Hold()
{
    return AskFlag(driver_.Get(), &IReceiver::get_Hold);
}

void ComReceiver::Hold(bool hold)
{
    Call(driver_.Get(), &IReceiver::put_Hold, hold ? VARIANT_TRUE : VARIANT_FALSE);
}

double ComReceiver::Frequency()
{
    return Ask(driver_.Get(), &IReceiver::get_Frequency);
}

void ComReceiver::Frequency(double hertz)
{
    Call(driver_.Get(), &IReceiver::put_Frequency, hertz);
}

void ComReceiver::InputAttenuation(int32_t decibels)
{
    Call(driver_.Get(), &IReceiver::put_InputAttenuation, decibels);
}

void ComReceiver::DemodulatorGainControl(int32_t mode)
{
    Call(driver_.Get(), &IReceiver::put_DemodulatorGainControl, mode);
}

void ComReceiver::Equaliser(int32_t mode)
{
    Call(driver_.Get(), &IReceiver::put_Equaliser, mode);
}

void ComReceiver::Initialise()
{
    Call(driver_.Get(), &IReceiver::Initialise);
}

std::wstring ComReceiver::SerialNumber()
{
    return Ask(driver_.Get(), &IReceiver::get_SerialNumber);
}

std::wstring ComReceiver::FirmwareVersion()
{
    return Ask(driver_.Get(), &IReceiver::get_FirmwareVersion);
}

std::wstring ComReceiver::InstalledOptions()
{
    return Ask(driver_.Get(), &IReceiver::get_InstalledOptions);
}

}  // namespace tvn2x
