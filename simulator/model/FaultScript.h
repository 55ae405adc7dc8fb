#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "util/RaisedError.h"

namespace tvn2x {

/// How an operation is called. A property's two halves share one name.
enum class Access
{
    get,
    let,
    call
};

/// Errors that the receiver raises on demand, to try what its users do then.
class FaultScript
{
public:
    /// operation: "*" is any, "Frequency" both halves of a property, "get Frequency" or "let Frequency" one of them.
    /// The count-th such call from now on raises `error`, once. Raises 380 where count < 1 or nothing has that name.
    void FailAt(std::wstring_view operation, int32_t count, RaisedError error);
    void Clear() { faults_.clear(); }

    /// Told of every call, before it does anything; throws the error whose turn it is.
    void Check(std::wstring_view name, Access access);

private:
    /// An error that is still to be raised.
    struct Fault
    {
        std::wstring operation;
        int32_t callsLeft;
        RaisedError error;
    };

    std::vector<Fault> faults_;
};

}  // namespace tvn2x
