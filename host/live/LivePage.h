#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "host/live/LiveState.h"

namespace tvn2x {

/// The page of a run that goes on, as it is at this moment; `age` is the state's in seconds. Needs nothing but
/// /live.css and /live.js of the same origin, has neither script nor style of its own in it, and shows the whole state
/// without script.
std::string LivePage(const LiveState& state, double age);

/// What the page shows of one channel, by itself; "" where the run has no such channel.
std::string LiveChannelPage(const LiveState& state, int32_t number);

std::string_view LiveStyle();   ///< /live.css
std::string_view LiveScript();  ///< /live.js

}  // namespace tvn2x
