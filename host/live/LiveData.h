#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "host/live/LiveState.h"

namespace tvn2x {

// JSON as docs/live.schema.json describes it; records are those of the result file.

/// The run, the verdict on the latest measurements, and where the scan is; `age` is the state's, in seconds.
std::string RunData(const LiveState& state, double age);
/// The latest measurement of each channel.
std::string ChannelsData(const LiveState& state);
/// One channel with its first and worst measurement and its history; "" where the run has no such channel.
std::string ChannelData(const LiveState& state, int32_t number);

std::string_view LiveSchema();    ///< docs/live.schema.json
std::string_view ResultSchema();  ///< docs/result.schema.json

}  // namespace tvn2x
