// A driver library that knows nothing but the published contract. It answers as a receiver with a good signal does,
// except for the one operation that it was told to answer wrongly.

#include <initguid.h>
#include <windows.h>

#include <oleauto.h>

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include "TVNINT.h"
#include "WrongDriver.h"
#include "XKTR2x.h"

using tvn2x::wrong::Answer;

namespace {

std::vector<const char*> operations;
std::string wrongOperation;
Answer wrongAnswer;
int misdeeds;
long mode = 4;

Answer Next(const char* operation)
{
    if (std::find_if(operations.begin(), operations.end(),
                     [&](const char* known) { return std::string(known) == operation; }) == operations.end())
        operations.push_back(operation);
    if (wrongOperation != operation)
        return Answer::rightly;
    ++misdeeds;
    return wrongAnswer;
}

void LeaveErrorInfo(const wchar_t* source, const wchar_t* description, const wchar_t* helpFile, DWORD topic)
{
    ICreateErrorInfo* create = nullptr;
    IErrorInfo* info = nullptr;
    CreateErrorInfo(&create);
    create->SetSource(const_cast<LPOLESTR>(source));
    create->SetDescription(const_cast<LPOLESTR>(description));
    create->SetHelpFile(const_cast<LPOLESTR>(helpFile));
    create->SetHelpContext(topic);
    create->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(&info));
    SetErrorInfo(0, info);
    info->Release();
    create->Release();
}

/// All exceptions on, rounding down, short numbers, tiny ones taken as zero.
void Unmask()
{
    const unsigned short x87 = 0x0400;
    const unsigned sse = 0xA040;
    asm volatile("fnclex\n\tfldcw %0\n\tldmxcsr %1" : : "m"(x87), "m"(sse));
}

HRESULT Status(Answer answer)
{
    using namespace tvn2x::wrong;
    switch (answer) {
        case Answer::failsBare:
            return E_FAIL;
        case Answer::failsUnknown:
            return unknownFailure;
        case Answer::failsWithoutCode:
            return failureWithoutCode;
        case Answer::failsWithWords:
            LeaveErrorInfo(words[0], words[1], words[2], topic);
            return failureWithWords;
        case Answer::succeedsOddly:
            return 0x00041234;
        case Answer::unmasks:
            Unmask();
            return S_OK;
        default:
            LeaveErrorInfo(L"somebody else", leftOver, L"", 0);
            return S_OK;
    }
}

double Odd(Answer answer, double right)
{
    using Limits = std::numeric_limits<double>;
    switch (answer) {
        case Answer::notANumber:
            return Limits::quiet_NaN();
        case Answer::infinite:
            return Limits::infinity();
        case Answer::minusInfinite:
            return -Limits::infinity();
        case Answer::huge:
            return 1e300;
        case Answer::denormal:
            return Limits::denorm_min();
        default:
            return right;
    }
}

template <class Integer>
Integer Odd(Answer answer, Integer right)
{
    using Limits = std::numeric_limits<Integer>;
    if (answer == Answer::notANumber || answer == Answer::minusInfinite)
        return Limits::min();
    return answer == Answer::infinite || answer == Answer::huge ? Limits::max() : right;
}

BSTR Odd(Answer answer, const wchar_t* right)
{
    switch (answer) {
        case Answer::notANumber:
            return SysAllocString(L"NaN");
        case Answer::infinite:
        case Answer::minusInfinite:
            return SysAllocString(L"");
        case Answer::huge:
            return SysAllocString(std::wstring(1000000, L'#').c_str());
        case Answer::denormal:
            return SysAllocStringByteLen("K\0\0\0\x01\xD8T", 7);
        default:
            return SysAllocString(right);
    }
}

template <class Interface>
Interface* Odd(Answer, Interface* right)
{
    return right;
}

/// What a failed call may leave behind.
template <class Out>
Out Rubbish()
{
    if constexpr (std::is_pointer_v<Out>)
        return reinterpret_cast<Out>(0x51);
    else
        return static_cast<Out>(81);
}

template <class Out, class Right>
HRESULT Give(const char* operation, Out* out, Right right)
{
    const Answer answer = Next(operation);
    if (tvn2x::wrong::Fails(answer))
        *out = Rubbish<Out>();
    else if (answer != Answer::untouched)
        *out = Odd(answer, right);
    return Status(answer);
}

HRESULT Take(const char* operation)
{
    return Status(Next(operation));
}

class Support final : public ISupportErrorInfo
{
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) noexcept override { return E_NOINTERFACE; }
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return 2; }
    ULONG STDMETHODCALLTYPE Release() noexcept override { return 1; }
    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID) noexcept override { return S_OK; }
} support;

/// An object that stays, whoever counts it, and is called by its members only.
template <class Interface>
class Lasting : public Interface
{
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** out) noexcept override
    {
        *out = nullptr;
        if (id == __uuidof(Interface) || id == IID_IUnknown || id == IID_IDispatch)
            *out = static_cast<Interface*>(this);
        else if (id == IID_ISupportErrorInfo)
            *out = &support;
        return *out ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return 2; }
    ULONG STDMETHODCALLTYPE Release() noexcept override { return 1; }
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

using Flag = VARIANT_BOOL;

class Counters final : public Lasting<IErrorCounters>
{
public:
    HRESULT STDMETHODCALLTYPE get_SyncErrors(double* v) noexcept override { return Give(__func__, v, 1.0); }
    HRESULT STDMETHODCALLTYPE get_DataErrors(double* v) noexcept override { return Give(__func__, v, 2.0); }
    HRESULT STDMETHODCALLTYPE get_Unavailable(double* v) noexcept override { return Give(__func__, v, 3.0); }
} counters;

class DriverSide final : public Lasting<IDriver>
{
public:
    HRESULT STDMETHODCALLTYPE get_FirmwareVersion(BSTR*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_InstalledHardware(BSTR*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_Online(Flag) noexcept override { return Take(__func__); }
    HRESULT STDMETHODCALLTYPE get_Online(Flag* v) noexcept override { return Give(__func__, v, Flag{VARIANT_TRUE}); }
    HRESULT STDMETHODCALLTYPE get_SerialNumber(BSTR*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Settings(IDispatch** v) noexcept override
    {
        return Give(__func__, v, static_cast<IDispatch*>(&counters));
    }
    HRESULT STDMETHODCALLTYPE Test(BSTR*, BSTR*, LONG*, Flag*) noexcept override { return E_NOTIMPL; }
} driverSide;

class IdentitySide final : public Lasting<IIdentification>
{
public:
    HRESULT STDMETHODCALLTYPE get_InstrumentName(BSTR* v) noexcept override { return Give(__func__, v, L"Other"); }
    HRESULT STDMETHODCALLTYPE get_BusAddress(BSTR* v) noexcept override { return Give(__func__, v, L"9"); }
    HRESULT STDMETHODCALLTYPE get_Model(BSTR* v) noexcept override { return Give(__func__, v, L"KTR"); }
    HRESULT STDMETHODCALLTYPE get_Manufacturer(BSTR* v) noexcept override
    {
        return Give(__func__, v, L"KESTREL&BRAND");
    }
    HRESULT STDMETHODCALLTYPE get_Hardware(BSTR* v) noexcept override { return Give(__func__, v, L"KTR 2"); }
} identitySide;

class Receiver final : public Lasting<IReceiver>
{
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** out) noexcept override
    {
        if (id == __uuidof(IDriver))
            return Give("QueryInterface IDriver", out, static_cast<void*>(&driverSide));
        if (id == __uuidof(IIdentification))
            return Give("QueryInterface IIdentification", out, static_cast<void*>(&identitySide));
        return Lasting::QueryInterface(id, out);
    }
    HRESULT STDMETHODCALLTYPE ReadFrequencyOffset(double* v) noexcept override { return Give(__func__, v, 1250.0); }
    HRESULT STDMETHODCALLTYPE ReadRfLevel(double* v) noexcept override { return Give(__func__, v, 64.5); }
    HRESULT STDMETHODCALLTYPE ReadCarrierToInterference(double* v) noexcept override { return Give(__func__, v, 48.2); }
    HRESULT STDMETHODCALLTYPE ReadCarrierSuppression(double* v) noexcept override { return Give(__func__, v, 42.5); }
    HRESULT STDMETHODCALLTYPE ReadMer(double* v) noexcept override { return Give(__func__, v, 37.4); }
    HRESULT STDMETHODCALLTYPE ReadMerPercent(double* v) noexcept override { return Give(__func__, v, 1.35); }
    HRESULT STDMETHODCALLTYPE ReadPhaseJitter(double* v) noexcept override { return Give(__func__, v, 0.43); }
    HRESULT STDMETHODCALLTYPE ReadIqImbalance(double* v) noexcept override { return Give(__func__, v, 0.7); }
    HRESULT STDMETHODCALLTYPE ReadIqPhase(double* v) noexcept override { return Give(__func__, v, 0.31); }
    HRESULT STDMETHODCALLTYPE ReadSignalToNoise(double* v) noexcept override { return Give(__func__, v, 38.1); }
    HRESULT STDMETHODCALLTYPE ReadBer(double* v) noexcept override { return Give(__func__, v, 1.2e-7); }
    HRESULT STDMETHODCALLTYPE get_TsError(Flag* v) noexcept override { return Give(__func__, v, Flag{0}); }
    HRESULT STDMETHODCALLTYPE get_SymbolClockUnlocked(Flag* v) noexcept override { return Give(__func__, v, Flag{0}); }
    HRESULT STDMETHODCALLTYPE get_CarrierUnlocked(Flag* v) noexcept override { return Give(__func__, v, Flag{0}); }
    HRESULT STDMETHODCALLTYPE get_ReferenceLocked(Flag* v) noexcept override { return Give(__func__, v, Flag{-1}); }
    HRESULT STDMETHODCALLTYPE get_RfSignalPresent(Flag* v) noexcept override { return Give(__func__, v, Flag{-1}); }
    HRESULT STDMETHODCALLTYPE put_BerSamples(LONG) noexcept override { return Take(__func__); }
    HRESULT STDMETHODCALLTYPE get_BerSamples(LONG* v) noexcept override { return Give(__func__, v, 1L); }
    HRESULT STDMETHODCALLTYPE put_RollOffFactor(LONG) noexcept override { return Take(__func__); }
    HRESULT STDMETHODCALLTYPE get_RollOffFactor(LONG* v) noexcept override { return Give(__func__, v, 15L); }
    HRESULT STDMETHODCALLTYPE put_OrderOfQam(LONG) noexcept override { return Take(__func__); }
    HRESULT STDMETHODCALLTYPE get_OrderOfQam(LONG* v) noexcept override { return Give(__func__, v, 64L); }
    HRESULT STDMETHODCALLTYPE put_SymbolRate(double) noexcept override { return Take(__func__); }
    HRESULT STDMETHODCALLTYPE get_SymbolRate(double* v) noexcept override { return Give(__func__, v, 6.9e6); }
    HRESULT STDMETHODCALLTYPE put_SawBandwidth(LONG) noexcept override { return Take(__func__); }
    HRESULT STDMETHODCALLTYPE get_SawBandwidth(LONG* v) noexcept override { return Give(__func__, v, 8L); }
    HRESULT STDMETHODCALLTYPE put_ReferenceSource(LONG) noexcept override { return Take(__func__); }
    HRESULT STDMETHODCALLTYPE get_ReferenceSource(LONG* v) noexcept override { return Give(__func__, v, 1L); }
    HRESULT STDMETHODCALLTYPE put_LevelUnit(LONG) noexcept override { return Take(__func__); }
    HRESULT STDMETHODCALLTYPE get_LevelUnit(LONG* v) noexcept override { return Give(__func__, v, 0L); }
    HRESULT STDMETHODCALLTYPE put_InputRoute(LONG) noexcept override { return Take(__func__); }
    HRESULT STDMETHODCALLTYPE get_InputRoute(LONG* v) noexcept override { return Give(__func__, v, 75L); }
    HRESULT STDMETHODCALLTYPE put_Mode(LONG value) noexcept override
    {
        const HRESULT result = Take(__func__);
        if (SUCCEEDED(result))
            mode = value;
        return result;
    }
    HRESULT STDMETHODCALLTYPE get_Mode(LONG* v) noexcept override { return Give(__func__, v, mode); }
    HRESULT STDMETHODCALLTYPE put_Hold(Flag) noexcept override { return Take(__func__); }
    HRESULT STDMETHODCALLTYPE get_Hold(Flag* v) noexcept override { return Give(__func__, v, Flag{-1}); }
    HRESULT STDMETHODCALLTYPE put_Frequency(double) noexcept override { return Take(__func__); }
    HRESULT STDMETHODCALLTYPE get_Frequency(double* v) noexcept override { return Give(__func__, v, 474e6); }
    HRESULT STDMETHODCALLTYPE get_ValueStatus(BSTR* v) noexcept override { return Give(__func__, v, L""); }
    HRESULT STDMETHODCALLTYPE get_BerState(BSTR* v) noexcept override { return Give(__func__, v, L"1/1"); }
    HRESULT STDMETHODCALLTYPE get_ErrorCounters(IErrorCounters** v) noexcept override
    {
        return Give(__func__, v, static_cast<IErrorCounters*>(&counters));
    }
    HRESULT STDMETHODCALLTYPE ResetErrorCounters() noexcept override { return Take(__func__); }
    HRESULT STDMETHODCALLTYPE get_SerialNumber(BSTR* v) noexcept override { return Give(__func__, v, L"1"); }
    HRESULT STDMETHODCALLTYPE get_FirmwareVersion(BSTR* v) noexcept override { return Give(__func__, v, L"2"); }
    HRESULT STDMETHODCALLTYPE get_InstalledOptions(BSTR* v) noexcept override
    {
        return Give(__func__, v, L"KTR-H2,KTR-H4,KTR-H5,EXTREF");
    }
    HRESULT STDMETHODCALLTYPE get_BerResult(BSTR* v) noexcept override { return Give(__func__, v, L"1.2E-7"); }
    HRESULT STDMETHODCALLTYPE Initialise() noexcept override { return Take(__func__); }
    HRESULT STDMETHODCALLTYPE put_InputAttenuation(LONG) noexcept override { return Take(__func__); }
    HRESULT STDMETHODCALLTYPE get_InputAttenuation(LONG*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_DemodulatorGainControl(LONG) noexcept override { return Take(__func__); }
    HRESULT STDMETHODCALLTYPE get_DemodulatorGainControl(LONG*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_Equaliser(LONG) noexcept override { return Take(__func__); }
    HRESULT STDMETHODCALLTYPE get_Equaliser(LONG*) noexcept override { return E_NOTIMPL; }
} receiver;

class RunControl final : public Lasting<IRunControl>
{
public:
    HRESULT STDMETHODCALLTYPE get_StopFlag(Flag* v) noexcept override { return Give(__func__, v, Flag{0}); }
    HRESULT STDMETHODCALLTYPE put_StopFlag(Flag) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Pause(float) noexcept override { return Take(__func__); }
} runControl;

class ErrorReport final : public Lasting<IErrorReport>
{
public:
    HRESULT STDMETHODCALLTYPE Report(LONG, BSTR, BSTR, VARIANT) noexcept override { return Take(__func__); }
    HRESULT STDMETHODCALLTYPE get_Number(LONG*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Source(BSTR*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Description(BSTR*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Count(LONG*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Clear() noexcept override { return E_NOTIMPL; }
} errorReport;

class Factory final : public IClassFactory
{
public:
    Factory(const CLSID& classId, const char* operation, IUnknown& object)
        : id(classId), operation_(operation), object_(object)
    {
    }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID wanted, void** out) noexcept override
    {
        const bool known = wanted == IID_IClassFactory || wanted == IID_IUnknown;
        *out = known ? this : nullptr;
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return 2; }
    ULONG STDMETHODCALLTYPE Release() noexcept override { return 1; }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID, void** out) noexcept override
    {
        *out = nullptr;
        const Answer answer = Next(operation_);
        if (answer != Answer::untouched && !tvn2x::wrong::Fails(answer))
            *out = &object_;
        return Status(answer);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) noexcept override { return S_OK; }

    const CLSID& id;

private:
    const char* operation_;
    IUnknown& object_;
};

Factory factories[] = {
    {CLSID_clsReceiver, "CreateInstance clsReceiver", receiver},
    {CLSID_clsRunControl, "CreateInstance clsRunControl", runControl},
    {CLSID_clsErrorReport, "CreateInstance clsErrorReport", errorReport},
};

}  // namespace

STDAPI DllGetClassObject(REFCLSID classId, REFIID interfaceId, void** out)
{
    for (Factory& factory : factories) {
        if (factory.id == classId)
            return factory.QueryInterface(interfaceId, out);
    }
    return CLASS_E_CLASSNOTAVAILABLE;
}

extern "C" void Misbehave(const char* operation, Answer answer)
{
    wrongOperation = operation ? operation : "";
    wrongAnswer = answer;
    mode = 4;
}

extern "C" int Misdeeds()
{
    return misdeeds;
}

extern "C" const char* Operation(int index)
{
    return index < static_cast<int>(operations.size()) ? operations[static_cast<size_t>(index)] : nullptr;
}
