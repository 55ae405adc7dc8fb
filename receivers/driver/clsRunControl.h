#pragma once

#include <windows.h>

#include <objidl.h>

#include "XKTR2x.h"
#include "com/ComPtr.h"
#include "com/Object.h"
#include "receivers/driver/ThreadState.h"

namespace tvn2x {

/// Run control of the thread that asks for it: the host sets the stop flag, the running operation polls it and waits.
/// Every thread may call the object, and calls it directly: a stop must not wait until the busy thread takes calls.
class clsRunControl final : public com::Object<IRunControl, ::clsRunControl>
{
public:
    /// The thread's object: the one that lives, or a new one.
    static HRESULT Create(REFIID interfaceId, void** out);

    HRESULT STDMETHODCALLTYPE get_StopFlag(VARIANT_BOOL* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_StopFlag(VARIANT_BOOL value) noexcept override;
    /// Waits in simulated time, handles the thread's messages meanwhile, ends early when the stop flag is set.
    HRESULT STDMETHODCALLTYPE Pause(FLOAT sngSeconds) noexcept override;

private:
    explicit clsRunControl(std::shared_ptr<ThreadState> state) : state_(std::move(state)) {}
    ~clsRunControl() override;

    static com::ComPtr<clsRunControl> OfThread();
    void BecomeFreeThreaded();
    void* FindInterface(REFIID id) noexcept override;

    std::shared_ptr<ThreadState> state_;
    com::ComPtr<IUnknown> marshaler_;  ///< part of this object: answers IMarshal for it
    IMarshal* marshal_ = nullptr;      ///< of marshaler_, not counted
};

}  // namespace tvn2x
