#pragma once

#include <windows.h>

#include "XKTR2x.h"
#include "com/Object.h"
#include "dvbc/ErroredTime.h"

namespace tvn2x {

/// The error counters at the moment at which they were asked for.
class ErrorCountersObject final : public com::Object<IErrorCounters>
{
public:
    explicit ErrorCountersObject(const dvbc::ErroredTime& time) : time_(time) {}

    HRESULT STDMETHODCALLTYPE get_SyncErrors(DOUBLE* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_DataErrors(DOUBLE* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Unavailable(DOUBLE* value) noexcept override;

private:
    const dvbc::ErroredTime time_;
};

}  // namespace tvn2x
