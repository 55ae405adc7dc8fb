#include "plugin/ComReceiver.h"

#include "com/Errors.h"
#include "com/Text.h"

namespace tvn2x {
namespace {

using com::Bstr;
using com::Check;

template <class Value>
Value Ask(IReceiver* driver, HRESULT (STDMETHODCALLTYPE IReceiver::*operation)(Value*))
{
    Value value{};
    Check((driver->*operation)(&value), driver);
    return value;
}

bool AskFlag(IReceiver* driver, HRESULT (STDMETHODCALLTYPE IReceiver::*operation)(VARIANT_BOOL*))
{
    return Ask(driver, operation) != VARIANT_FALSE;
}

std::wstring AskText(IReceiver* driver, HRESULT (STDMETHODCALLTYPE IReceiver::*operation)(BSTR*))
{
    Bstr text;
    Check((driver->*operation)(text.Put()), driver);
    return std::wstring(text.View());
}

double AskCounter(IErrorCounters* counters, HRESULT (STDMETHODCALLTYPE IErrorCounters::*counter)(double*))
{
    double seconds = 0;
    Check((counters->*counter)(&seconds), counters);
    return seconds;
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
    return AskText(driver_.Get(), &IReceiver::get_ValueStatus);
}

std::wstring ComReceiver::BerState()
{
    return AskText(driver_.Get(), &IReceiver::get_BerState);
}

std::wstring ComReceiver::BerResult()
{
    return AskText(driver_.Get(), &IReceiver::get_BerResult);
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
    com::ComPtr<IErrorCounters> counters;
    Check(driver_->get_ErrorCounters(counters.Put()), driver_.Get());
    ErrorCounters result;
    result.syncErrors = AskCounter(counters.Get(), &IErrorCounters::get_SyncErrors);
    result.dataErrors = AskCounter(counters.Get(), &IErrorCounters::get_DataErrors);
    result.unavailable = AskCounter(counters.Get(), &IErrorCounters::get_Unavailable);
    return result;
}

void ComReceiver::ResetErrorCounters()
{
    Check(driver_->ResetErrorCounters(), driver_.Get());
}

int32_t ComReceiver::BerSamples()
{
    return Ask(driver_.Get(), &IReceiver::get_BerSamples);
}

void ComReceiver::BerSamples(int32_t samples)
{
    Check(driver_->put_BerSamples(samples), driver_.Get());
}

int32_t ComReceiver::RollOffFactor()
{
    return Ask(driver_.Get(), &IReceiver::get_RollOffFactor);
}

void ComReceiver::RollOffFactor(int32_t hundredths)
{
    Check(driver_->put_RollOffFactor(hundredths), driver_.Get());
}

int32_t ComReceiver::OrderOfQam()
{
    return Ask(driver_.Get(), &IReceiver::get_OrderOfQam);
}

void ComReceiver::OrderOfQam(int32_t order)
{
    Check(driver_->put_OrderOfQam(order), driver_.Get());
}

double ComReceiver::SymbolRate()
{
    return Ask(driver_.Get(), &IReceiver::get_SymbolRate);
}

void ComReceiver::SymbolRate(double symbolsPerSecond)
{
    Check(driver_->put_SymbolRate(symbolsPerSecond), driver_.Get());
}

int32_t ComReceiver::SawBandwidth()
{
    return Ask(driver_.Get(), &IReceiver::get_SawBandwidth);
}

void ComReceiver::SawBandwidth(int32_t megahertz)
{
    Check(driver_->put_SawBandwidth(megahertz), driver_.Get());
}

int32_t ComReceiver::ReferenceSource()
{
    return Ask(driver_.Get(), &IReceiver::get_ReferenceSource);
}

void ComReceiver::ReferenceSource(int32_t source)
{
    Check(driver_->put_ReferenceSource(source), driver_.Get());
}

int32_t ComReceiver::LevelUnit()
{
    return Ask(driver_.Get(), &IReceiver::get_LevelUnit);
}

void ComReceiver::LevelUnit(int32_t code)
{
    Check(driver_->put_LevelUnit(code), driver_.Get());
}

int32_t ComReceiver::InputRoute()
{
    return Ask(driver_.Get(), &IReceiver::get_InputRoute);
}

void ComReceiver::InputRoute(int32_t route)
{
    Check(driver_->put_InputRoute(route), driver_.Get());
}

int32_t ComReceiver::Mode()
{
    return Ask(driver_.Get(), &IReceiver::get_Mode);
}

void ComReceiver::Mode(int32_t mode)
{
    Check(driver_->put_Mode(mode), driver_.Get());
}

bool ComReceiver::Hold()
{
    return AskFlag(driver_.Get(), &IReceiver::get_Hold);
}

void ComReceiver::Hold(bool hold)
{
    Check(driver_->put_Hold(hold ? VARIANT_TRUE : VARIANT_FALSE), driver_.Get());
}

double ComReceiver::Frequency()
{
    return Ask(driver_.Get(), &IReceiver::get_Frequency);
}

void ComReceiver::Frequency(double hertz)
{
    Check(driver_->put_Frequency(hertz), driver_.Get());
}

void ComReceiver::InputAttenuation(int32_t decibels)
{
    Check(driver_->put_InputAttenuation(decibels), driver_.Get());
}

void ComReceiver::DemodulatorGainControl(int32_t mode)
{
    Check(driver_->put_DemodulatorGainControl(mode), driver_.Get());
}

void ComReceiver::Equaliser(int32_t mode)
{
    Check(driver_->put_Equaliser(mode), driver_.Get());
}

void ComReceiver::Initialise()
{
    Check(driver_->Initialise(), driver_.Get());
}

std::wstring ComReceiver::SerialNumber()
{
    return AskText(driver_.Get(), &IReceiver::get_SerialNumber);
}

std::wstring ComReceiver::FirmwareVersion()
{
    return AskText(driver_.Get(), &IReceiver::get_FirmwareVersion);
}

std::wstring ComReceiver::InstalledOptions()
{
    return AskText(driver_.Get(), &IReceiver::get_InstalledOptions);
}

}  // namespace tvn2x
