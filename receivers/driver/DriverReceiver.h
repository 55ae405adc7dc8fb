#pragma once

#include <windows.h>

#include <oaidl.h>

#include <cstdint>
#include <string>

#include "dvbc/ErroredTime.h"

namespace tvn2x {

/// What answers the operations of a driver library's receiver: one method for each row of the list, in its units. Any
/// of them may raise an error.
class DriverReceiver
{
public:
    virtual ~DriverReceiver() = default;

#define RECEIVER_READING(name, parameter) virtual double name() = 0;
#define RECEIVER_STATE(Type, name) virtual Type name() = 0;
#define RECEIVER_SETTING(Type, name) \
    virtual Type name() = 0;         \
    virtual void name(Type value) = 0;
#define RECEIVER_ACTION(name) virtual void name() = 0;
#define INSTRUMENT_IDENTITY(name) RECEIVER_STATE(std::wstring, name)
#define INSTRUMENT_SETTING(name) RECEIVER_SETTING(bool, name)
#include "setup/catalogue/ReceiverOperations.h"

    /// A new settings object of the receiver, counted once.
    virtual IDispatch* NewSettings() = 0;
};

/// A receiver of which an object with the same methods, that knows nothing of COM, answers the operations.
template <class Modelled>
class ModelledReceiver : public DriverReceiver
{
public:
    explicit ModelledReceiver(Modelled& model) : model_(model) {}

#define RECEIVER_READING(name, parameter) \
    double name() override                \
    {                                     \
        return model_.name();             \
    }
#define RECEIVER_STATE(Type, name) \
    Type name() override           \
    {                              \
        return model_.name();      \
    }
#define RECEIVER_SETTING(Type, name) \
    RECEIVER_STATE(Type, name)       \
    void name(Type value) override   \
    {                                \
        model_.name(value);          \
    }
#define RECEIVER_ACTION(name) \
    void name() override      \
    {                         \
        model_.name();        \
    }
#define INSTRUMENT_IDENTITY(name) RECEIVER_STATE(std::wstring, name)
#define INSTRUMENT_SETTING(name) RECEIVER_SETTING(bool, name)
#include "setup/catalogue/ReceiverOperations.h"

private:
    Modelled& model_;
};

}  // namespace tvn2x
