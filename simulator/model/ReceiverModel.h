#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "simulator/model/FaultScript.h"
#include "simulator/model/ReceiverPhysics.h"
#include "simulator/model/SimulatedTime.h"

namespace tvn2x {

/// The test receiver at the end of its cable: every operation counts, takes the latency, and may raise an error, one
/// from the fault script or one that says that the receiver does not answer, before its physics has a turn.
class ReceiverModel
{
public:
    explicit ReceiverModel(SimulatedTime& time) : time_(time), physics_(time) {}

#define RECEIVER_READING(name, parameter)             \
    double name()                                     \
    {                                                 \
        return Begin(L"" #name, Access::call).name(); \
    }
#define RECEIVER_STATE(Type, name)                   \
    Type name()                                      \
    {                                                \
        return Begin(L"" #name, Access::get).name(); \
    }
#define RECEIVER_SETTING(Type, name)                 \
    Type name()                                      \
    {                                                \
        return Begin(L"" #name, Access::get).name(); \
    }                                                \
    void name(Type value)                            \
    {                                                \
        Begin(L"" #name, Access::let).name(value);   \
    }
#define RECEIVER_ACTION(name)                  \
    void name()                                \
    {                                          \
        Begin(L"" #name, Access::call).name(); \
    }
#define INSTRUMENT_IDENTITY(name) RECEIVER_STATE(std::wstring, name)
#define INSTRUMENT_SETTING(name) RECEIVER_SETTING(bool, name)
#include "setup/catalogue/ReceiverOperations.h"

    // The simulation itself: no operations of the receiver.
    ReceiverPhysics& Physics()
    {
        return physics_;
    }
    FaultScript& Faults()
    {
        return faults_;
    }
    int32_t Operations() const;  ///< since the object was made; stays at the largest number
    double Latency() const
    {
        return latency_;
    }
    void Latency(double seconds)
    {
        latency_ = seconds;
    }

private:
    ReceiverPhysics& Begin(std::wstring_view operation, Access access);

    SimulatedTime& time_;
    ReceiverPhysics physics_;
    FaultScript faults_;
    double latency_ = 0;  ///< seconds, at a time scale of 1
    uint64_t operations_ = 0;
};

}  // namespace tvn2x
