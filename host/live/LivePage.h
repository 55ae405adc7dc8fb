#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "host/live/LiveState.h"

namespace tvn2x {

/// The page of a run that goes on, as it is at this moment; `age` is the state's in seconds. Needs nothing but
/// /live.css and /live.js of the same origin, has neither script nor style of its own in it, and shows the whole state
/// without script. The script asks for /events?after=ID with the EventId of what it has; after a lost connection the
/// browser sends the later one that it knows by then as Last-Event-ID.
std::string LivePage(const LiveState& state, double age);

/// /channel/N, what the page shows of one channel over time; "" where the run has no such channel.
std::string LiveChannelPage(const LiveState& state, int32_t number);

/// /plots, the part of the page with the pictures over frequency. The script asks for it, because they are too large to
/// be sent with each channel.
std::string LivePlotsPart(const LiveState& state);

std::string_view LiveStyle();   ///< /live.css
std::string_view LiveScript();  ///< /live.js

}  // namespace tvn2x
