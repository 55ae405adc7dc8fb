#include "receivers/driver/clsRunControl.h"

#include <algorithm>
#include <cmath>

#include "com/Errors.h"

namespace tvn2x {
namespace {

/// Lets the thread's windows and its other apartments' calls in, so that somebody can set the stop flag. False once the
/// program is asked to quit.
bool HandleMessages()
{
    const OwnFloatingPointAfterwards after;
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) {
            PostQuitMessage(static_cast<int>(message.wParam));
            return false;
        }
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return true;
}

}  // namespace

clsRunControl::~clsRunControl()
{
    const std::lock_guard lock(state_->runControlGuard);
    if (state_->runControl == this) {
        state_->runControl = nullptr;
    }
}

HRESULT clsRunControl::Create(REFIID interfaceId, void** out)
{
    return OfThread()->QueryInterface(interfaceId, out);
}

com::ComPtr<clsRunControl> clsRunControl::OfThread()
{
    const std::shared_ptr<ThreadState> state = StateOfThread();
    {
        const std::lock_guard lock(state->runControlGuard);
        if (state->runControl && state->runControl->AddRefWhileAlive()) {
            return com::ComPtr<clsRunControl>::Attach(state->runControl);
        }
    }
    com::ComPtr<clsRunControl> object(new clsRunControl(state));
    object->BecomeFreeThreaded();
    const std::lock_guard lock(state->runControlGuard);
    state->runControl = object.Get();
    return object;
}

/// The marshaler counts on this object, so it is asked while somebody holds that, and its answer is not kept counted.
void clsRunControl::BecomeFreeThreaded()
{
    com::Check(CoCreateFreeThreadedMarshaler(static_cast<IRunControl*>(this), marshaler_.Put()), marshaler_.Get());
    com::Check(marshaler_->QueryInterface(IID_IMarshal, reinterpret_cast<void**>(&marshal_)), marshaler_.Get());
    marshal_->Release();
}

void* clsRunControl::FindInterface(REFIID id) noexcept
{
    return id == IID_IMarshal ? marshal_ : nullptr;
}

HRESULT clsRunControl::get_StopFlag(VARIANT_BOOL* value) noexcept
{
    return Get(value, [&] { return state_->stop.load(); });
}

HRESULT clsRunControl::put_StopFlag(VARIANT_BOOL value) noexcept
{
    return Do([&] { state_->stop = value != VARIANT_FALSE; });
}

HRESULT clsRunControl::Pause(FLOAT sngSeconds) noexcept
{
    constexpr double longest = 86400;
    constexpr double slice = 10;  // milliseconds until the stop flag is looked at again
    return Do([&] {
        if (!(sngSeconds >= 0 && sngSeconds <= longest)) {
            throw RaisedError(error::invalidPropertyValue, L"clsRunControl.Pause",
                              L"A pause is from 0 to 86400 seconds long");
        }
        // A handled message may release the last reference to this object.
        const com::ComPtr<clsRunControl> self(this);
        const ULONGLONG start = GetTickCount64();
        const double total = sngSeconds * state_->timeScale * 1000;
        while (!state_->stop && HandleMessages()) {
            const double left = total - static_cast<double>(GetTickCount64() - start);
            if (left <= 0) {
                return;
            }
            MsgWaitForMultipleObjectsEx(0, nullptr, static_cast<DWORD>(std::ceil(std::min(left, slice))), QS_ALLINPUT,
                                        MWMO_INPUTAVAILABLE);
        }
    });
}

}  // namespace tvn2x
