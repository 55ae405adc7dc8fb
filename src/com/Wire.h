#pragma once

#include <windows.h>

#include <oleauto.h>

#include <cstdint>
#include <string>
#include <type_traits>

namespace tvn2x::com {

/// The type in which a value of the core goes through an interface: Wire<bool> is VARIANT_BOOL.
template <class Value>
struct WireType;
template <>
struct WireType<bool>
{
    using Type = VARIANT_BOOL;
};
template <>
struct WireType<int32_t>
{
    using Type = LONG;
};
template <>
struct WireType<double>
{
    using Type = DOUBLE;
};
template <>
struct WireType<std::wstring>
{
    using Type = BSTR;
};
template <class Value>
using Wire = typename WireType<Value>::Type;

/// A flag or a number as it goes through an interface.
template <class Value>
Wire<Value> ToWire(Value value)
{
    if constexpr (std::is_same_v<Value, bool>) {
        return value ? VARIANT_TRUE : VARIANT_FALSE;
    } else {
        return value;
    }
}

/// The flag or number that has come through an interface: every VARIANT_BOOL but VARIANT_FALSE is true.
template <class Value>
Value FromWire(Wire<Value> value)
{
    if constexpr (std::is_same_v<Value, bool>) {
        return value != VARIANT_FALSE;
    } else {
        return value;
    }
}

}  // namespace tvn2x::com
