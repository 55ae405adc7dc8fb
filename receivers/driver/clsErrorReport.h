#pragma once

#include <windows.h>

#include "XKTR2x.h"
#include "com/Object.h"
#include "receivers/driver/ThreadState.h"

namespace tvn2x {

/// Error reporting of the thread that asks for it: keeps the last reported error and raises it.
class clsErrorReport final : public com::Object<IErrorReport, ::clsErrorReport>
{
public:
    /// The thread's object: the one that lives, or a new one.
    static HRESULT Create(REFIID interfaceId, void** out);

    HRESULT STDMETHODCALLTYPE Report(LONG lNumber, BSTR sSource, BSTR sDescription, VARIANT vRaise) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Number(LONG* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Source(BSTR* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Description(BSTR* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Count(LONG* value) noexcept override;
    HRESULT STDMETHODCALLTYPE Clear() noexcept override;

private:
    explicit clsErrorReport(std::shared_ptr<ThreadState> state);
    ~clsErrorReport() override;

    std::shared_ptr<ThreadState> state_;
};

}  // namespace tvn2x
