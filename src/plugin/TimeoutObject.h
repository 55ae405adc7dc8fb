#pragma once

#include <windows.h>

#include "TVN2x.h"
#include "com/Object.h"
#include "util/clsTimeout.h"

namespace tvn2x {

/// The published class clsTimeout: the timer of the core behind its interface.
class TimeoutObject final : public com::Object<_clsTimeout, ::clsTimeout>
{
public:
    HRESULT STDMETHODCALLTYPE get_Interval(FLOAT* value) noexcept override
    {
        return Get(value, [&] { return timeout_.Interval(); });
    }
    HRESULT STDMETHODCALLTYPE put_Interval(FLOAT sngNewValue) noexcept override
    {
        return Do([&] { timeout_.Interval(sngNewValue); });
    }
    HRESULT STDMETHODCALLTYPE Start(FLOAT sngInterval) noexcept override
    {
        return Do([&] { timeout_.Start(sngInterval); });
    }
    HRESULT STDMETHODCALLTYPE get_State(LONG* value) noexcept override
    {
        return Get(value, [&] { return int32_t{timeout_.State()}; });
    }
    HRESULT STDMETHODCALLTYPE Clear() noexcept override
    {
        return Do([&] { timeout_.Clear(); });
    }

private:
    clsTimeout timeout_{SystemClock()};
};

}  // namespace tvn2x
