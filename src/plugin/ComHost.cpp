#include "plugin/ComHost.h"

#include <oleauto.h>

#include "com/Call.h"
#include "com/Wire.h"
#include "plugin/CreateObject.h"

namespace tvn2x {
namespace {

using com::Bstr;
using com::Call;
using com::Check;

constexpr int32_t memberMissing = 438;

template <class Value>
VARIANT Typed(VARTYPE type, Value VARIANT::*member, Value value)
{
    VARIANT variant{};
    variant.vt = type;
    variant.*member = value;
    return variant;
}

VARIANT Typed(double value)
{
    return Typed(VT_R8, &VARIANT::dblVal, value);
}

VARIANT Typed(int16_t value)
{
    return Typed(VT_I2, &VARIANT::iVal, value);
}

VARIANT Typed(int32_t value)
{
    return Typed(VT_I4, &VARIANT::lVal, LONG{value});
}

VARIANT Typed(bool value)
{
    return Typed(VT_BOOL, &VARIANT::boolVal, com::ToWire(value));
}

/// How an optional argument that is left out travels.
VARIANT LeftOut()
{
    VARIANT variant{};
    variant.vt = VT_ERROR;
    variant.scode = DISP_E_PARAMNOTFOUND;
    return variant;
}

}  // namespace

bool ComRunControl::StopFlag()
{
    return com::Ask(control_.Get(), &IRunControl::get_StopFlag) != VARIANT_FALSE;
}

void ComRunControl::Pause(float seconds)
{
    Call(control_.Get(), &IRunControl::Pause, seconds);
}

void ComErrorReporter::Report(int32_t number, const std::wstring& source, const std::wstring& description, bool raise)
{
    if (!report_) {
        report_ = CreateObject<IErrorReport>(CLSID_clsErrorReport, L"XKTR2x.clsErrorReport", source.c_str());
    }
    Call(report_.Get(), &IErrorReport::Report, number, Bstr(source).Get(), Bstr(description).Get(), Typed(raise));
}

ComParent::ComParent(IDispatch* object)
{
    // Whoever answers neither is called as the plain object that it is.
    if (SUCCEEDED(com::Query(object, early_))) {
        return;
    }
    late_ = com::ComPtr<IDispatch>(object);
    com::Query(object, script_);
    ResolveNames();
}

void ComParent::ResolveNames()
{
    static constexpr std::array<const wchar_t*, lateMembers> names = {L"Status", L"Progress", L"CellChanged",
                                                                      L"ChannelStart"};
    for (size_t i = 0; i < names.size(); ++i) {
        if (FAILED(IdOf(names[i], &ids_[i]))) {
            throw RaisedError(memberMissing, L"clsSetup.Parent",
                              std::wstring(L"The parent object has no member ") + names[i]);
        }
    }
}

HRESULT ComParent::IdOf(const wchar_t* name, DISPID* id)
{
    const Bstr copy(name);
    LPOLESTR plain = copy.Get();
    return com::AtTheHost([&] {
        return script_ ? script_->GetDispID(copy.Get(), fdexNameCaseInsensitive, id)
                       : late_->GetIDsOfNames(IID_NULL, &plain, 1, LOCALE_USER_DEFAULT, id);
    });
}

template <class... Parameters, class... Arguments>
void ComParent::CallEarly(HRESULT (STDMETHODCALLTYPE IMeasureParent::*member)(Parameters...), Arguments... arguments)
{
    Check(com::AtTheHost([&] { return (early_.Get()->*member)(arguments...); }), early_.Get());
}

void ComParent::CallLate(LateMember member, std::array<VARIANT, 2>& reversedArguments, UINT count)
{
    DISPPARAMS parameters{reversedArguments.data(), nullptr, count, 0};
    EXCEPINFO exception{};
    const HRESULT result = com::AtTheHost([&] {
        return script_ ? script_->InvokeEx(ids_[member], LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr,
                                           &exception, nullptr)
                       : late_->Invoke(ids_[member], IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                                       nullptr, &exception, nullptr);
    });
    if (FAILED(result)) {
        com::ThrowInvokeFailure(result, exception);
    }
}

void ComParent::Status(const std::wstring& text)
{
    const Bstr copy(text);
    if (early_) {
        return CallEarly(&IMeasureParent::Status, copy.Get());
    }
    VARIANT argument{};
    argument.vt = VT_BSTR;
    argument.bstrVal = copy.Get();
    std::array<VARIANT, 2> arguments = {argument, {}};
    CallLate(lateStatus, arguments, 1);
}

void ComParent::ProgressWith(double value, const VARIANT& steps)
{
    if (early_) {
        return CallEarly(&IMeasureParent::Progress, value, steps);
    }
    // A script's procedure has no optional arguments: it gets both, the second one marked as left out.
    std::array<VARIANT, 2> arguments = {steps, Typed(value)};
    CallLate(lateProgress, arguments, 2);
}

void ComParent::Progress(double value)
{
    ProgressWith(value, LeftOut());
}

void ComParent::Progress(double value, int16_t steps)
{
    ProgressWith(value, Typed(steps));
}

void ComParent::CellChanged(int32_t channel, int16_t column)
{
    if (early_) {
        return CallEarly(&IMeasureParent::CellChanged, channel, column);
    }
    std::array<VARIANT, 2> arguments = {Typed(column), Typed(channel)};
    CallLate(lateCellChanged, arguments, 2);
}

void ComParent::ChannelStart(double hertz, double symbolsPerSecond)
{
    if (early_) {
        return CallEarly(&IMeasureParent::ChannelStart, hertz, Typed(symbolsPerSecond));
    }
    std::array<VARIANT, 2> arguments = {Typed(symbolsPerSecond), Typed(hertz)};
    CallLate(lateChannelStart, arguments, 2);
}

}  // namespace tvn2x
