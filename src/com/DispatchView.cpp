#include "com/DispatchView.h"

#include "com/ComPtr.h"
#include "com/Counted.h"

namespace tvn2x::com {
namespace {

class DispatchView final : public Counted<IDispatch>
{
public:
    explicit DispatchView(IDispatch* viewed) : viewed_(viewed) {}

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override
    {
        return viewed_->GetTypeInfoCount(count);
    }

    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** out) noexcept override
    {
        return viewed_->GetTypeInfo(index, locale, out);
    }

    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID id, LPOLESTR* names, UINT count, LCID locale,
                                            DISPID* ids) noexcept override
    {
        return viewed_->GetIDsOfNames(id, names, count, locale, ids);
    }

    HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID id, LCID locale, WORD flags, DISPPARAMS* parameters,
                                     VARIANT* result, EXCEPINFO* exception, UINT* argument) noexcept override
    {
        // A call may release the last reference to this view.
        const ComPtr<IDispatch> viewed(viewed_);
        return viewed->Invoke(member, id, locale, flags, parameters, result, exception, argument);
    }

private:
    ComPtr<IDispatch> viewed_;
};

}  // namespace

IDispatch* NewDispatchView(IDispatch* viewed)
{
    return new DispatchView(viewed);
}

}  // namespace tvn2x::com
