#include "com/Dispatch.h"

#include <oleauto.h>

#include <vector>

#include "com/ComPtr.h"
#include "com/Errors.h"
#include "com/TypeLibrary.h"

namespace tvn2x::com {
namespace {

constexpr VARTYPE variantReference = VT_BYREF | VT_VARIANT;

bool HasVariantReference(const DISPPARAMS& parameters)
{
    for (UINT i = 0; i < parameters.cArgs; ++i) {
        if (parameters.rgvarg[i].vt == variantReference)
            return true;
    }
    return false;
}

/// The type behind each reference parameter of a member, in order; VT_EMPTY for a parameter taken by value.
std::vector<VARTYPE> ReferenceTypes(ITypeInfo* info, DISPID member, WORD flags)
{
    std::vector<VARTYPE> types;
    FUNCDESC* function = nullptr;
    for (UINT i = 0; types.empty() && SUCCEEDED(info->GetFuncDesc(i, &function)); ++i) {
        if (function->memid == member && (function->invkind & flags)) {
            for (SHORT p = 0; p < function->cParams; ++p) {
                const TYPEDESC& type = function->lprgelemdescParam[p].tdesc;
                types.push_back(type.vt == VT_PTR ? type.lptdesc->vt : VARTYPE{VT_EMPTY});
            }
        }
        info->ReleaseFuncDesc(function);
    }
    return types;
}

/// The arguments of one call with typed references in place of references to VARIANTs.
class TypedArguments
{
public:
    TypedArguments(const DISPPARAMS& parameters, const std::vector<VARTYPE>& types)
        : arguments_(parameters.rgvarg, parameters.rgvarg + parameters.cArgs),
          values_(parameters.cArgs),
          call(parameters)
    {
        // Arguments stand in reverse order, behind the named ones.
        for (UINT i = parameters.cNamedArgs; i < parameters.cArgs; ++i) {
            const size_t position = parameters.cArgs - 1 - i;
            VariantInit(&values_[i]);
            if (arguments_[i].vt != variantReference || position >= types.size() || types[position] == VT_EMPTY ||
                types[position] == VT_VARIANT)
                continue;
            if (FAILED(VariantChangeType(&values_[i], arguments_[i].pvarVal, 0, types[position])))
                continue;  // the call itself will name the argument that does not fit
            arguments_[i].vt = VT_BYREF | types[position];
            arguments_[i].byref = &values_[i].byref;
        }
        call.rgvarg = arguments_.data();
    }

    ~TypedArguments()
    {
        for (VARIANT& value : values_)
            VariantClear(&value);
    }

    void HandBack(const DISPPARAMS& parameters)
    {
        for (size_t i = 0; i < arguments_.size(); ++i) {
            if (values_[i].vt != VT_EMPTY)
                VariantCopy(parameters.rgvarg[i].pvarVal, &values_[i]);
        }
    }

private:
    std::vector<VARIANT> arguments_;
    std::vector<VARIANT> values_;

public:
    DISPPARAMS call;
};

HRESULT InvokeTyped(ITypeInfo* info, IDispatch* object, DISPID member, WORD flags, DISPPARAMS* parameters,
                    VARIANT* result, EXCEPINFO* exception, UINT* argument)
{
    if (!HasVariantReference(*parameters))
        return info->Invoke(object, member, flags, parameters, result, exception, argument);
    TypedArguments typed(*parameters, ReferenceTypes(info, member, flags));
    const HRESULT outcome = info->Invoke(object, member, flags, &typed.call, result, exception, argument);
    if (SUCCEEDED(outcome))
        typed.HandBack(*parameters);
    return outcome;
}

}  // namespace

HRESULT DispatchTypeInfo(REFIID interfaceId, UINT index, ITypeInfo** out) noexcept
{
    if (!out)
        return E_POINTER;
    *out = nullptr;
    if (index != 0)
        return DISP_E_BADINDEX;
    return Guard(interfaceId, [&] { *out = ComPtr(TypeInfoOf(interfaceId)).Detach(); });
}

HRESULT DispatchNames(REFIID interfaceId, LPOLESTR* names, UINT count, DISPID* ids) noexcept
{
    ITypeInfo* info = nullptr;
    const HRESULT result = Guard(interfaceId, [&] { info = TypeInfoOf(interfaceId); });
    return FAILED(result) ? result : info->GetIDsOfNames(names, count, ids);
}

HRESULT DispatchInvoke(REFIID interfaceId, IDispatch* object, DISPID member, WORD flags, DISPPARAMS* parameters,
                       VARIANT* result, EXCEPINFO* exception, UINT* argument) noexcept
{
    if (!parameters)
        return E_INVALIDARG;
    HRESULT outcome = E_UNEXPECTED;
    const HRESULT guarded = Guard(interfaceId, [&] {
        outcome = InvokeTyped(TypeInfoOf(interfaceId), object, member, flags, parameters, result, exception, argument);
    });
    return FAILED(guarded) ? guarded : outcome;
}

}  // namespace tvn2x::com
