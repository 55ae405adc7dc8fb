#include "receivers/driver/clsErrorReport.h"

#include "com/ComPtr.h"

namespace tvn2x {
namespace {

/// An argument that is left out asks for the error to be raised.
bool WantsRaise(VARIANT& argument)
{
    if (argument.vt == VT_EMPTY || com::IsLeftOut(argument)) {
        return true;
    }
    VARIANT flag;
    VariantInit(&flag);
    if (FAILED(VariantChangeType(&flag, &argument, 0, VT_BOOL))) {
        throw RaisedError(error::typeMismatch, L"clsErrorReport.Report", L"Type mismatch");
    }
    return flag.boolVal != VARIANT_FALSE;
}

}  // namespace

clsErrorReport::clsErrorReport(std::shared_ptr<ThreadState> state) : state_(std::move(state))
{
    state_->errorReport = this;
}

clsErrorReport::~clsErrorReport()
{
    state_->errorReport = nullptr;
}

HRESULT clsErrorReport::Create(REFIID interfaceId, void** out)
{
    const std::shared_ptr<ThreadState> state = StateOfThread();
    const com::ComPtr<clsErrorReport> object(state->errorReport ? state->errorReport : new clsErrorReport(state));
    return object->QueryInterface(interfaceId, out);
}

HRESULT clsErrorReport::Report(LONG lNumber, BSTR sSource, BSTR sDescription, VARIANT vRaise) noexcept
{
    return Do([&] {
        const bool raise = WantsRaise(vRaise);
        RaisedError reported(lNumber, std::wstring(com::ViewOf(sSource)), std::wstring(com::ViewOf(sDescription)));
        state_->errorNumber = reported.number;
        state_->errorSource = reported.source;
        state_->errorDescription = reported.description;
        ++state_->errorCount;
        if (raise) {
            throw reported;
        }
    });
}

HRESULT clsErrorReport::get_Number(LONG* value) noexcept
{
    return Get(value, [&] { return state_->errorNumber; });
}

HRESULT clsErrorReport::get_Source(BSTR* value) noexcept
{
    return Get(value, [&] { return state_->errorSource; });
}

HRESULT clsErrorReport::get_Description(BSTR* value) noexcept
{
    return Get(value, [&] { return state_->errorDescription; });
}

HRESULT clsErrorReport::get_Count(LONG* value) noexcept
{
    return Get(value, [&] { return state_->errorCount; });
}

HRESULT clsErrorReport::Clear() noexcept
{
    return Do([&] {
        state_->errorNumber = 0;
        state_->errorSource.clear();
        state_->errorDescription.clear();
        state_->errorCount = 0;
    });
}

}  // namespace tvn2x
