#pragma once

#include <windows.h>

#include "XKTR2x.h"
#include "com/ComPtr.h"
#include "instrument/Receiver.h"

namespace tvn2x {

/// The receiver behind the driver library's main interface. Errors of the driver become RaisedErrors as they are.
class ComReceiver final : public Receiver
{
public:
    explicit ComReceiver(com::ComPtr<IReceiver> driver) : driver_(std::move(driver)) {}

#define RECEIVER_READING(name, parameter) double name() override;
#define RECEIVER_STATE(Type, name) Type name() override;
#define RECEIVER_SETTING(Type, name) \
    Type name() override;            \
    void name(Type value) override;
#define RECEIVER_ACTION(name) void name() override;
#include "setup/catalogue/ReceiverOperations.h"

private:
    com::ComPtr<IReceiver> driver_;
};

}  // namespace tvn2x
