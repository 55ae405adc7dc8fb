#include "com/Dispatch.h"

#include <oleauto.h>

#include <vector>

#include "com/ComPtr.h"
#include "com/Errors.h"
#include "com/TypeLibrary.h"

namespace tvn2x::com {
namespace {

constexpr VARTYPE variantReference = VT_BYREF | VT_VARIANT;
constexpr WORD assignments = DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF;

bool HasVariantReference(const DISPPARAMS& parameters)
{
    for (UINT i = 0; i < parameters.cArgs; ++i) {
        if (parameters.rgvarg[i].vt == variantReference) {
            return true;
        }
    }
    return false;
}

/// Calls `visit` with each function of a member that is called in one of these ways, until it answers true.
template <class Visit>
void ForFunctions(ITypeInfo* info, DISPID member, WORD flags, Visit visit)
{
    FUNCDESC* function = nullptr;
    bool enough = false;
    for (UINT i = 0; !enough && SUCCEEDED(info->GetFuncDesc(i, &function)); ++i) {
        if (function->memid == member && (function->invkind & flags)) {
            enough = visit(*function);
        }
        info->ReleaseFuncDesc(function);
    }
}

/// The flags of a call as the member understands them: an assignment of either kind becomes the one that it has.
WORD UnderstoodFlags(ITypeInfo* info, DISPID member, WORD flags)
{
    if (!(flags & DISPATCH_PROPERTYPUT)) {
        return flags;
    }
    WORD offered = 0;
    ForFunctions(info, member, assignments, [&](const FUNCDESC& function) {
        offered |= static_cast<WORD>(function.invkind);
        return offered == assignments;
    });
    const bool one = offered == DISPATCH_PROPERTYPUT || offered == DISPATCH_PROPERTYPUTREF;
    return one ? static_cast<WORD>((flags & ~assignments) | offered) : flags;
}

/// Whether an assignment by reference says null: that is how some languages say that there is no object.
bool AssignsNull(const DISPPARAMS& parameters, WORD flags)
{
    if (flags != DISPATCH_PROPERTYPUTREF || parameters.cArgs == 0) {
        return false;
    }
    const VARIANT& value = parameters.rgvarg[0];
    return value.vt == VT_NULL || (value.vt == variantReference && value.pvarVal && value.pvarVal->vt == VT_NULL);
}

/// The type behind each reference parameter of a member, in order; VT_EMPTY for a parameter taken by value.
std::vector<VARTYPE> ReferenceTypes(ITypeInfo* info, DISPID member, WORD flags)
{
    std::vector<VARTYPE> types;
    ForFunctions(info, member, flags, [&](const FUNCDESC& function) {
        for (SHORT p = 0; p < function.cParams; ++p) {
            const TYPEDESC& type = function.lprgelemdescParam[p].tdesc;
            types.push_back(type.vt == VT_PTR ? type.lptdesc->vt : VARTYPE{VT_EMPTY});
        }
        return true;
    });
    return types;
}

/// The place of an argument among the parameters of the member, from 0; none for the value of an assignment.
size_t PositionOf(const DISPPARAMS& parameters, UINT argument)
{
    // The named ones stand first, in any order; the others behind them in reverse order.
    if (argument < parameters.cNamedArgs) {
        return static_cast<size_t>(parameters.rgdispidNamedArgs[argument]);
    }
    return parameters.cArgs - 1 - argument;
}

/// The arguments of one call with typed references in place of references to VARIANTs, and no object in place of null.
class TypedArguments
{
public:
    TypedArguments(const DISPPARAMS& parameters, WORD flags, const std::vector<VARTYPE>& types)
        : arguments_(parameters.rgvarg, parameters.rgvarg + parameters.cArgs),
          values_(parameters.cArgs),
          call(parameters)
    {
        for (UINT i = 0; i < parameters.cArgs; ++i) {
            VariantInit(&values_[i]);
            if (arguments_[i].vt != variantReference) {
                continue;
            }
            const size_t position = PositionOf(parameters, i);
            const VARTYPE type = position < types.size() ? types[position] : VARTYPE{VT_EMPTY};
            if (IsLeftOut(arguments_[i])) {
                arguments_[i] = *arguments_[i].pvarVal;
            } else if (type != VT_EMPTY && type != VT_VARIANT) {
                Convert(i, type);
            }
        }
        if (AssignsNull(parameters, flags)) {
            VariantInit(arguments_.data());
            arguments_.front().vt = VT_DISPATCH;
        }
        call.rgvarg = arguments_.data();
    }
    TypedArguments(const TypedArguments&) = delete;
    TypedArguments& operator=(const TypedArguments&) = delete;

    ~TypedArguments()
    {
        for (VARIANT& value : values_) {
            VariantClear(&value);
        }
    }

    HRESULT HandBack(const DISPPARAMS& parameters)
    {
        for (size_t i = 0; i < arguments_.size(); ++i) {
            const HRESULT copied =
                values_[i].vt == VT_EMPTY ? S_OK : VariantCopy(parameters.rgvarg[i].pvarVal, &values_[i]);
            if (FAILED(copied)) {
                return copied;
            }
        }
        return S_OK;
    }

private:
    void Convert(UINT i, VARTYPE type)
    {
        VARIANT& passed = *arguments_[i].pvarVal;
        if (passed.vt == (VT_BYREF | type)) {
            arguments_[i] = passed;  // the variable is one of this type itself
        } else if (SUCCEEDED(VariantChangeType(&values_[i], &passed, 0, type))) {
            arguments_[i].vt = VT_BYREF | type;
            arguments_[i].byref = &values_[i].byref;
        }
        // Otherwise the call itself will name the argument that does not fit.
    }

    std::vector<VARIANT> arguments_;
    std::vector<VARIANT> values_;

public:
    DISPPARAMS call;
};

HRESULT InvokeTyped(ITypeInfo* info, IDispatch* object, DISPID member, WORD flags, DISPPARAMS* parameters,
                    VARIANT* result, EXCEPINFO* exception, UINT* argument)
{
    flags = UnderstoodFlags(info, member, flags);
    if (!HasVariantReference(*parameters) && !AssignsNull(*parameters, flags)) {
        return info->Invoke(object, member, flags, parameters, result, exception, argument);
    }
    TypedArguments typed(*parameters, flags, ReferenceTypes(info, member, flags));
    const HRESULT outcome = info->Invoke(object, member, flags, &typed.call, result, exception, argument);
    return SUCCEEDED(outcome) ? typed.HandBack(*parameters) : outcome;
}

}  // namespace

bool IsLeftOut(const VARIANT& argument) noexcept
{
    const VARIANT& passed = argument.vt == variantReference && argument.pvarVal ? *argument.pvarVal : argument;
    return passed.vt == VT_ERROR && passed.scode == DISP_E_PARAMNOTFOUND;
}

HRESULT DispatchTypeInfo(REFIID interfaceId, UINT index, ITypeInfo** out) noexcept
{
    if (!out) {
        return Refuse(E_POINTER);
    }
    *out = nullptr;
    if (index != 0) {
        return Refuse(DISP_E_BADINDEX);
    }
    return Guard(interfaceId, [&] { *out = ComPtr(TypeInfoOf(interfaceId)).Detach(); });
}

HRESULT DispatchNames(REFIID interfaceId, REFIID reserved, LPOLESTR* names, UINT count, DISPID* ids) noexcept
{
    if (reserved != IID_NULL) {
        return Refuse(DISP_E_UNKNOWNINTERFACE);
    }
    if (!names || !ids) {
        return Refuse(E_POINTER);
    }
    HRESULT outcome = E_UNEXPECTED;
    const HRESULT guarded =
        Guard(interfaceId, [&] { outcome = TypeInfoOf(interfaceId)->GetIDsOfNames(names, count, ids); });
    if (FAILED(guarded)) {
        return guarded;
    }
    return FAILED(outcome) ? Refuse(outcome) : outcome;
}

HRESULT DispatchInvoke(REFIID interfaceId, IDispatch* object, DISPID member, REFIID reserved, WORD flags,
                       DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception, UINT* argument) noexcept
{
    if (reserved != IID_NULL) {
        return Refuse(DISP_E_UNKNOWNINTERFACE);
    }
    if (!parameters) {
        return Refuse(E_INVALIDARG);
    }
    // What the member raises is left where it is; what the call fails with on the way there has nothing to tell.
    SetErrorInfo(0, nullptr);
    HRESULT outcome = E_UNEXPECTED;
    const HRESULT guarded = Guard(interfaceId, [&] {
        outcome = InvokeTyped(TypeInfoOf(interfaceId), object, member, flags, parameters, result, exception, argument);
    });
    return FAILED(guarded) ? guarded : outcome;
}

}  // namespace tvn2x::com
