#pragma once

#include <windows.h>

#include <memory>

#include "XKTR2x.h"
#include "com/Object.h"
#include "com/Wire.h"
#include "receivers/driver/DriverReceiver.h"
#include "receivers/driver/clsReceiver_IDriver.h"
#include "receivers/driver/clsReceiver_IIdentification.h"

namespace tvn2x {

/// The driver object of one receiver, whoever answers its operations. This file is its main interface; the host's view
/// of an instrument and the identification are member objects with a file of their own.
class clsReceiver final : public com::Object<IReceiver, ::clsReceiver>
{
public:
    explicit clsReceiver(std::unique_ptr<DriverReceiver> receiver) : receiver_(std::move(receiver)) {}

    DriverReceiver& Served() { return *receiver_; }

#define RECEIVER_READING(name, parameter) HRESULT STDMETHODCALLTYPE name(DOUBLE* value) noexcept override;
#define RECEIVER_STATE(Type, name) HRESULT STDMETHODCALLTYPE get_##name(com::Wire<Type>* value) noexcept override;
#define RECEIVER_COUNTERS(name) HRESULT STDMETHODCALLTYPE get_##name(IErrorCounters** value) noexcept override;
#define RECEIVER_SETTING(Type, name)                                                \
    HRESULT STDMETHODCALLTYPE get_##name(com::Wire<Type>* value) noexcept override; \
    HRESULT STDMETHODCALLTYPE put_##name(com::Wire<Type> value) noexcept override;
#define RECEIVER_ACTION(name) HRESULT STDMETHODCALLTYPE name() noexcept override;
#include "setup/catalogue/ReceiverOperations.h"

private:
    void* FindInterface(REFIID id) noexcept override;

    std::unique_ptr<DriverReceiver> receiver_;
    clsReceiver_IDriver driver_{*this};
    clsReceiver_IIdentification identification_{*this};
};

}  // namespace tvn2x
