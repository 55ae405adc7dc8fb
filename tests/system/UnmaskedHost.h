#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <functional>

#include "util/FloatingPoint.h"

namespace tvn2x::client {

/// Invalid operations, denormal operands, divisions by zero and overflows are on, as some languages have them.
constexpr FloatingPointWords unmasked{0x0370, 0x1800};

/// A call out of a host that computes in that state, which the call must leave as it was.
inline HRESULT FromUnmaskedHost(const std::function<HRESULT()>& call)
{
    const FloatingPointWords before = FloatingPointWords::Now();
    unmasked.Load();
    const HRESULT result = call();
    const FloatingPointWords after = FloatingPointWords::Now();
    before.Load();
    EXPECT_EQ(after.x87, unmasked.x87);
    EXPECT_EQ(after.sse, unmasked.sse);
    return result;
}

}  // namespace tvn2x::client
