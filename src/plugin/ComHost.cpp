#include "plugin/ComHost.h"

#include <oleauto.h>

#include "com/Errors.h"
#include "com/Text.h"
#include "plugin/CreateObject.h"

namespace tvn2x {
namespace {

using com::Bstr;
using com::Check;

constexpr int32_t memberMissing = 438;

VARIANT Typed(double value)
{
    VARIANT variant{};
    variant.vt = VT_R8;
    variant.dblVal = value;
    return variant;
}

VARIANT Typed(int16_t value)
{
    VARIANT variant{};
    variant.vt = VT_I2;
    variant.iVal = value;
    return variant;
}

VARIANT Typed(int32_t value)
{
    VARIANT variant{};
    variant.vt = VT_I4;
    variant.lVal = value;
    return variant;
}

VARIANT Typed(bool value)
{
    VARIANT variant{};
    variant.vt = VT_BOOL;
    variant.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
    return variant;
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
    VARIANT_BOOL stop = VARIANT_FALSE;
    Check(control_->get_StopFlag(&stop), control_.Get());
    return stop != VARIANT_FALSE;
}

void ComRunControl::Pause(float seconds)
{
    Check(control_->Pause(seconds), control_.Get());
}

void ComErrorReporter::Report(int32_t number, const std::wstring& source, const std::wstring& description, bool raise)
{
    if (!report_)
        report_ = CreateObject<IErrorReport>(CLSID_clsErrorReport, source.c_str());
    Check(report_->Report(number, Bstr(source).Get(), Bstr(description).Get(), Typed(raise)), report_.Get());
}

ComParent::ComParent(IDispatch* object) : early_(com::ComPtr<IDispatch>(object).As<IMeasureParent>())
{
    if (early_)
        return;
    late_ = com::ComPtr<IDispatch>(object);
    script_ = late_.As<IDispatchEx>();
    ResolveNames();
}

void ComParent::ResolveNames()
{
    static constexpr std::array<const wchar_t*, lateMembers> names = {L"Status", L"Progress", L"CellChanged",
                                                                      L"ChannelStart"};
    for (size_t i = 0; i < names.size(); ++i) {
        if (FAILED(IdOf(names[i], &ids_[i])))
            throw RaisedError(memberMissing, L"clsSetup.Parent",
                              std::wstring(L"The parent object has no member ") + names[i]);
    }
}

HRESULT ComParent::IdOf(const wchar_t* name, DISPID* id)
{
    if (script_)
        return script_->GetDispID(Bstr(name).Get(), fdexNameCaseInsensitive, id);
    auto* plain = const_cast<LPOLESTR>(name);
    return late_->GetIDsOfNames(IID_NULL, &plain, 1, LOCALE_USER_DEFAULT, id);
}

void ComParent::Call(LateMember member, std::array<VARIANT, 2>& reversedArguments, UINT count)
{
    DISPPARAMS parameters{reversedArguments.data(), nullptr, count, 0};
    EXCEPINFO exception{};
    const HRESULT result = script_ ? script_->InvokeEx(ids_[member], LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                                                       nullptr, &exception, nullptr)
                                   : late_->Invoke(ids_[member], IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                                                   &parameters, nullptr, &exception, nullptr);
    if (FAILED(result))
        com::ThrowInvokeFailure(result, exception);
}

void ComParent::Status(const std::wstring& text)
{
    const Bstr copy(text);
    if (early_)
        return Check(early_->Status(copy.Get()), early_.Get());
    VARIANT argument{};
    argument.vt = VT_BSTR;
    argument.bstrVal = copy.Get();
    std::array<VARIANT, 2> arguments = {argument, {}};
    Call(lateStatus, arguments, 1);
}

void ComParent::ProgressWith(double value, const VARIANT& steps)
{
    if (early_)
        return Check(early_->Progress(value, steps), early_.Get());
    // A script's procedure has no optional arguments: it gets both, the second one marked as left out.
    std::array<VARIANT, 2> arguments = {steps, Typed(value)};
    Call(lateProgress, arguments, 2);
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
    if (early_)
        return Check(early_->CellChanged(channel, column), early_.Get());
    std::array<VARIANT, 2> arguments = {Typed(column), Typed(channel)};
    Call(lateCellChanged, arguments, 2);
}

void ComParent::ChannelStart(double hertz, double symbolsPerSecond)
{
    if (early_)
        return Check(early_->ChannelStart(hertz, Typed(symbolsPerSecond)), early_.Get());
    std::array<VARIANT, 2> arguments = {Typed(symbolsPerSecond), Typed(hertz)};
    Call(lateChannelStart, arguments, 2);
}

}  // namespace tvn2x
