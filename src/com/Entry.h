#pragma once

#include <windows.h>

#include "util/FloatingPoint.h"

namespace tvn2x::com {

/// One call of somebody else into this library: computes in our own floating-point state, and gives the caller its own
/// back. Entries of one thread nest.
class Entry
{
public:
    Entry() noexcept;
    Entry(const Entry&) = delete;
    Entry& operator=(const Entry&) = delete;
    ~Entry();

private:
    friend class HostsTurn;

    const OwnFloatingPoint floatingPoint_;
    const bool differs_;      ///< the caller computes in another state
    Entry* outer_ = nullptr;  ///< the next one below it that differs
};

/// While it lives, the thread computes as whoever called into this library does: for notices to the host, whose code is
/// made for the host's state. Our own state comes back with OwnFloatingPointAfterwards.
class HostsTurn
{
public:
    HostsTurn() noexcept;
    HostsTurn(const HostsTurn&) = delete;
    HostsTurn& operator=(const HostsTurn&) = delete;
    ~HostsTurn();

private:
    Entry* const entry_;  ///< null where the host computes as we do
};

}  // namespace tvn2x::com
