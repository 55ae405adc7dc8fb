#pragma once

#include <cstdint>
#include <string>

#include "dvbc/ErroredTime.h"

namespace tvn2x {

/// What the product needs of a test receiver, one method per operation: the list has their units and ranges. Any
/// operation may raise a RaisedError.
class Receiver
{
public:
    virtual ~Receiver() = default;

#define RECEIVER_READING(name, parameter) virtual double name() = 0;
#define RECEIVER_STATE(Type, name) virtual Type name() = 0;
#define RECEIVER_SETTING(Type, name) \
    virtual Type name() = 0;         \
    virtual void name(Type value) = 0;
#define RECEIVER_ACTION(name) virtual void name() = 0;
#include "setup/catalogue/ReceiverOperations.h"
};

/// The receiver as an instrument among others: whether it is on line, and who it is. Any operation may raise an error.
class Instrument
{
public:
    virtual ~Instrument() = default;

#define INSTRUMENT_IDENTITY(name) virtual std::wstring name() = 0;
#define INSTRUMENT_SETTING(name) \
    virtual bool name() = 0;     \
    virtual void name(bool value) = 0;
#include "setup/catalogue/ReceiverOperations.h"
};

/// How the host asks a running operation to stop, and how an operation waits. Shared with the host.
class RunControl
{
public:
    virtual ~RunControl() = default;
    virtual bool StopFlag() = 0;
    virtual void Pause(float seconds) = 0;
};

/// The host's parent object. Any notice may raise an error.
class HostParent
{
public:
    virtual ~HostParent() = default;
    virtual void Status(const std::wstring& text) = 0;
    virtual void Progress(double value) = 0;
    virtual void Progress(double value, int16_t steps) = 0;
    virtual void CellChanged(int32_t channel, int16_t column) = 0;  ///< column -1 is the whole row
    virtual void ChannelStart(double hertz, double symbolsPerSecond) = 0;
};

/// Where an operation reports errors, for the host to look up. Shared with the host.
class ErrorReporter
{
public:
    virtual ~ErrorReporter() = default;
    /// Keeps the error for the host; with `raise` it also comes back as a RaisedError.
    virtual void Report(int32_t number, const std::wstring& source, const std::wstring& description, bool raise) = 0;
};

}  // namespace tvn2x
