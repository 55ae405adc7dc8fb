#include "WrongDriver.h"

#include <limits>
#include <set>
#include <string>

#include "com/Errors.h"
#include "com/Wire.h"
#include "support/ReceiverAnswers.h"

namespace tvn2x::wrong {
namespace {

using com::FromWire;
using com::Wire;

std::set<std::string> operations;
std::string wrongOperation;
Answer wrongAnswer;
int misdeeds;

ReceiverAnswers RightAnswers()
{
    ReceiverAnswers right = GoodAnswers();
    right.ReferenceSource = 1;
    right.Hold = true;
    right.Frequency = 474e6;
    right.BerState = L"1/1";
    right.InstalledOptions = L"KTR-H2,KTR-H4,KTR-H5,EXTREF";
    return right;
}
ReceiverAnswers answers = RightAnswers();

Answer Next(const std::string& operation)
{
    operations.insert(operation);
    if (isLost && isLost()) {
        return Answer::failsWithWords;
    }
    if (wrongOperation != operation) {
        return Answer::rightly;
    }
    ++misdeeds;
    return wrongAnswer;
}

void LeaveErrorInfo(const wchar_t* source, const wchar_t* description, const wchar_t* helpFile, DWORD topic)
{
    RaisedError error(4711, source, description);
    error.helpFile = helpFile;
    error.helpContext = topic;
    com::Report(error, IID_NULL);
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
    if (answer == Answer::notANumber || answer == Answer::minusInfinite) {
        return Limits::min();
    }
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
    if constexpr (std::is_pointer_v<Out>) {
        return reinterpret_cast<Out>(0x51);
    } else {
        return static_cast<Out>(81);
    }
}

template <class Out, class Right>
HRESULT Give(const char* operation, Out* out, Right right)
{
    const Answer answer = Next(operation);
    if (Fails(answer)) {
        *out = Rubbish<Out>();
    } else if (answer != Answer::untouched) {
        *out = Odd(answer, right);
    }
    return Status(answer);
}

HRESULT Take(const char* operation)
{
    return Status(Next(operation));
}

template <class Setting>
HRESULT Take(const char* operation, Setting& setting, Setting value)
{
    const HRESULT result = Take(operation);
    if (SUCCEEDED(result)) {
        setting = value;
    }
    return result;
}

template <class Value>
auto Right(const Value& answer)
{
    if constexpr (std::is_same_v<Value, std::wstring>) {
        return answer.c_str();
    } else {
        return com::ToWire(answer);
    }
}

class Support final : public Lasting<ISupportErrorInfo>
{
public:
    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID) noexcept override { return S_OK; }
} support;

/// One of the driver library's objects, which is called by its members only.
template <class Interface>
class Member : public Lasting<Interface, EarlyBound<Interface>>
{
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** out) noexcept override
    {
        using Unsupported = Lasting<Interface, EarlyBound<Interface>>;
        return id == IID_ISupportErrorInfo ? support.QueryInterface(id, out) : Unsupported::QueryInterface(id, out);
    }
};

using Flag = VARIANT_BOOL;

class Counters final : public Member<IErrorCounters>
{
public:
    HRESULT STDMETHODCALLTYPE get_SyncErrors(double* v) noexcept override { return Give(__func__, v, 1.0); }
    HRESULT STDMETHODCALLTYPE get_DataErrors(double* v) noexcept override { return Give(__func__, v, 2.0); }
    HRESULT STDMETHODCALLTYPE get_Unavailable(double* v) noexcept override { return Give(__func__, v, 3.0); }
} counters;

class DriverSide final : public Member<IDriver>
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

class IdentitySide final : public Member<IIdentification>{
    public :
#define INSTRUMENT_IDENTITY(name)                                   \
    HRESULT STDMETHODCALLTYPE get_##name(BSTR* v) noexcept override \
    {                                                               \
        return Give(__func__, v, answers.name.c_str());             \
    }
#include "setup/catalogue/ReceiverOperations.h"
} identitySide;

class Receiver final : public Member<IReceiver>{
    public : HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** out) noexcept override{
        if (id == __uuidof(IDriver)){return Give("QueryInterface IDriver", out, static_cast<void*>(&driverSide));
}  // namespace
if (id == __uuidof(IIdentification)) {
    return Give("QueryInterface IIdentification", out, static_cast<void*>(&identitySide));
}
return Member::QueryInterface(id, out);
}  // namespace tvn2x::wrong
#define RECEIVER_READING(name, parameter)                       \
    HRESULT STDMETHODCALLTYPE name(double* v) noexcept override \
    {                                                           \
        return Give(__func__, v, answers.name);                 \
    }
#define RECEIVER_STATE(Type, name)                                        \
    HRESULT STDMETHODCALLTYPE get_##name(Wire<Type>* v) noexcept override \
    {                                                                     \
        return Give(__func__, v, Right(answers.name));                    \
    }
#define RECEIVER_COUNTERS(name)                                                \
    HRESULT STDMETHODCALLTYPE get_##name(IErrorCounters** v) noexcept override \
    {                                                                          \
        return Give(__func__, v, static_cast<IErrorCounters*>(&counters));     \
    }
#define RECEIVER_SETTING(Type, name)                                         \
    RECEIVER_STATE(Type, name)                                               \
    HRESULT STDMETHODCALLTYPE put_##name(Wire<Type> value) noexcept override \
    {                                                                        \
        return Take(__func__, answers.name, FromWire<Type>(value));          \
    }
#define RECEIVER_ACTION(name)                          \
    HRESULT STDMETHODCALLTYPE name() noexcept override \
    {                                                  \
        return Take(__func__);                         \
    }
#include "setup/catalogue/ReceiverOperations.h"
}
receiver;

class RunControl final : public Member<IRunControl>
{
public:
    HRESULT STDMETHODCALLTYPE get_StopFlag(Flag* v) noexcept override { return Give(__func__, v, Flag{0}); }
    HRESULT STDMETHODCALLTYPE put_StopFlag(Flag) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Pause(float) noexcept override { return Take(__func__); }
} runControl;

class ErrorReport final : public Member<IErrorReport>
{
public:
    HRESULT STDMETHODCALLTYPE Report(LONG, BSTR, BSTR, VARIANT) noexcept override { return Take(__func__); }
    HRESULT STDMETHODCALLTYPE get_Number(LONG*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Source(BSTR*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Description(BSTR*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Count(LONG*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Clear() noexcept override { return E_NOTIMPL; }
} errorReport;

class Factory final : public Lasting<IClassFactory>
{
public:
    Factory(std::string operation, IUnknown& object) : operation_(std::move(operation)), object_(object) {}

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID, void** out) noexcept override
    {
        const Answer answer = Next(operation_);
        *out = answer != Answer::untouched && !Fails(answer) ? &object_ : nullptr;
        return Status(answer);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) noexcept override { return S_OK; }

private:
    std::string operation_;
    IUnknown& object_;
};

Factory receivers("CreateInstance clsReceiver", receiver);
Factory runControls("CreateInstance clsRunControl", runControl);
Factory errorReports("CreateInstance clsErrorReport", errorReport);

}  // namespace

const std::pair<CLSID, IClassFactory*> factories[] = {
    {CLSID_clsReceiver, &receivers}, {CLSID_clsRunControl, &runControls}, {CLSID_clsErrorReport, &errorReports}};

bool (*isLost)() = nullptr;

void Misbehave(const std::string& operation, Answer answer)
{
    wrongOperation = operation;
    wrongAnswer = answer;
    answers = RightAnswers();
}

int Misdeeds()
{
    return misdeeds;
}

const std::set<std::string>& Operations()
{
    return operations;
}

}  // namespace tvn2x::wrong
