#pragma once

#include <oleauto.h>

#include "TVNINT.h"
#include "XKTR2x.h"

namespace tvn2x::bench {

/// IUnknown of a static object: never counted, answers every interface that it is asked for with itself.
template <class Interface>
class NoDispatch : public Interface
{
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** out) noexcept override
    {
        const bool known = id == __uuidof(Interface) || id == IID_IUnknown;
        *out = known ? this : nullptr;
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return 2; }
    ULONG STDMETHODCALLTYPE Release() noexcept override { return 1; }
};

template <class Interface>
class Null : public NoDispatch<Interface>
{
public:
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) noexcept override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) noexcept override
    {
        return E_NOTIMPL;
    }
};

template <class Value>
HRESULT Answer(Value* out, Value value) noexcept
{
    *out = value;
    return S_OK;
}

inline HRESULT Answer(BSTR* out, const wchar_t* text) noexcept
{
    *out = SysAllocString(text);
    return S_OK;
}

class NullCounters final : public Null<IErrorCounters>
{
public:
    HRESULT STDMETHODCALLTYPE get_SyncErrors(double* value) noexcept override { return Answer(value, 0.0); }
    HRESULT STDMETHODCALLTYPE get_DataErrors(double* value) noexcept override { return Answer(value, 0.0); }
    HRESULT STDMETHODCALLTYPE get_Unavailable(double* value) noexcept override { return Answer(value, 0.0); }
};

/// A synchronised receiver that answers at once.
class NullDriver final : public Null<IReceiver>
{
public:
    HRESULT STDMETHODCALLTYPE ReadFrequencyOffset(double* value) noexcept override { return Answer(value, 1250.0); }
    HRESULT STDMETHODCALLTYPE ReadRfLevel(double* value) noexcept override { return Answer(value, 64.5); }
    HRESULT STDMETHODCALLTYPE ReadCarrierToInterference(double* value) noexcept override { return Answer(value, 48.2); }
    HRESULT STDMETHODCALLTYPE ReadCarrierSuppression(double* value) noexcept override { return Answer(value, 42.5); }
    HRESULT STDMETHODCALLTYPE ReadMer(double* value) noexcept override { return Answer(value, 37.4); }
    HRESULT STDMETHODCALLTYPE ReadMerPercent(double* value) noexcept override { return Answer(value, 1.35); }
    HRESULT STDMETHODCALLTYPE ReadPhaseJitter(double* value) noexcept override { return Answer(value, 0.43); }
    HRESULT STDMETHODCALLTYPE ReadIqImbalance(double* value) noexcept override { return Answer(value, 0.7); }
    HRESULT STDMETHODCALLTYPE ReadIqPhase(double* value) noexcept override { return Answer(value, 0.31); }
    HRESULT STDMETHODCALLTYPE ReadSignalToNoise(double* value) noexcept override { return Answer(value, 38.1); }
    HRESULT STDMETHODCALLTYPE ReadBer(double* value) noexcept override { return Answer(value, 1.2e-7); }
    HRESULT STDMETHODCALLTYPE get_TsError(VARIANT_BOOL* value) noexcept override
    {
        return Answer(value, VARIANT_BOOL{VARIANT_FALSE});
    }
    HRESULT STDMETHODCALLTYPE get_SymbolClockUnlocked(VARIANT_BOOL* value) noexcept override
    {
        return Answer(value, VARIANT_BOOL{VARIANT_FALSE});
    }
    HRESULT STDMETHODCALLTYPE get_CarrierUnlocked(VARIANT_BOOL* value) noexcept override
    {
        return Answer(value, VARIANT_BOOL{VARIANT_FALSE});
    }
    HRESULT STDMETHODCALLTYPE get_ReferenceLocked(VARIANT_BOOL* value) noexcept override
    {
        return Answer(value, VARIANT_BOOL{VARIANT_TRUE});
    }
    HRESULT STDMETHODCALLTYPE get_RfSignalPresent(VARIANT_BOOL* value) noexcept override
    {
        return Answer(value, VARIANT_BOOL{VARIANT_TRUE});
    }
    HRESULT STDMETHODCALLTYPE put_BerSamples(LONG) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE get_BerSamples(LONG* value) noexcept override { return Answer(value, LONG{0}); }
    HRESULT STDMETHODCALLTYPE put_RollOffFactor(LONG) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE get_RollOffFactor(LONG* value) noexcept override { return Answer(value, LONG{0}); }
    HRESULT STDMETHODCALLTYPE put_OrderOfQam(LONG) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE get_OrderOfQam(LONG* value) noexcept override { return Answer(value, LONG{0}); }
    HRESULT STDMETHODCALLTYPE put_SymbolRate(double) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE get_SymbolRate(double* value) noexcept override { return Answer(value, double{0}); }
    HRESULT STDMETHODCALLTYPE put_SawBandwidth(LONG) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE get_SawBandwidth(LONG* value) noexcept override { return Answer(value, LONG{0}); }
    HRESULT STDMETHODCALLTYPE put_ReferenceSource(LONG) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE get_ReferenceSource(LONG* value) noexcept override { return Answer(value, LONG{0}); }
    HRESULT STDMETHODCALLTYPE put_LevelUnit(LONG) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE get_LevelUnit(LONG* value) noexcept override { return Answer(value, LONG{0}); }
    HRESULT STDMETHODCALLTYPE put_InputRoute(LONG) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE get_InputRoute(LONG* value) noexcept override { return Answer(value, LONG{0}); }
    HRESULT STDMETHODCALLTYPE put_Mode(LONG) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE get_Mode(LONG* value) noexcept override { return Answer(value, LONG{0}); }
    HRESULT STDMETHODCALLTYPE put_Hold(VARIANT_BOOL) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE get_Hold(VARIANT_BOOL* value) noexcept override
    {
        return Answer(value, VARIANT_BOOL{VARIANT_FALSE});
    }
    HRESULT STDMETHODCALLTYPE put_Frequency(double) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE get_Frequency(double* value) noexcept override { return Answer(value, double{0}); }
    HRESULT STDMETHODCALLTYPE get_ValueStatus(BSTR* value) noexcept override { return Answer(value, L""); }
    HRESULT STDMETHODCALLTYPE get_BerState(BSTR* value) noexcept override { return Answer(value, L"---"); }
    HRESULT STDMETHODCALLTYPE get_ErrorCounters(IErrorCounters** value) noexcept override
    {
        return Answer<IErrorCounters*>(value, &counters_);
    }
    HRESULT STDMETHODCALLTYPE ResetErrorCounters() noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE get_SerialNumber(BSTR* value) noexcept override { return Answer(value, L""); }
    HRESULT STDMETHODCALLTYPE get_FirmwareVersion(BSTR* value) noexcept override { return Answer(value, L""); }
    HRESULT STDMETHODCALLTYPE get_InstalledOptions(BSTR* value) noexcept override { return Answer(value, L""); }
    HRESULT STDMETHODCALLTYPE get_BerResult(BSTR* value) noexcept override { return Answer(value, L""); }
    HRESULT STDMETHODCALLTYPE Initialise() noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE put_InputAttenuation(LONG) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE get_InputAttenuation(LONG* value) noexcept override { return Answer(value, LONG{0}); }
    HRESULT STDMETHODCALLTYPE put_DemodulatorGainControl(LONG) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE get_DemodulatorGainControl(LONG* value) noexcept override
    {
        return Answer(value, LONG{0});
    }
    HRESULT STDMETHODCALLTYPE put_Equaliser(LONG) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE get_Equaliser(LONG* value) noexcept override { return Answer(value, LONG{0}); }

private:
    NullCounters counters_;
};

class NullRun final : public Null<IRunControl>
{
public:
    HRESULT STDMETHODCALLTYPE get_StopFlag(VARIANT_BOOL* value) noexcept override
    {
        return Answer(value, VARIANT_BOOL{VARIANT_FALSE});
    }
    HRESULT STDMETHODCALLTYPE put_StopFlag(VARIANT_BOOL) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Pause(float) noexcept override { return S_OK; }
};

class NullHost final : public Null<IMeasureParent>
{
public:
    HRESULT STDMETHODCALLTYPE Status(BSTR) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Progress(double, VARIANT) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE CellChanged(LONG, SHORT) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE ChannelStart(double, VARIANT) noexcept override { return S_OK; }
};

}  // namespace tvn2x::bench
