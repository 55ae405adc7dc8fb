#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "host/live/LiveState.h"

namespace tvn2x {

/// The identity of the last event that tells of a state: "2026-11-22T08:50:10.123Z/17".
std::string EventId(const LiveState& state);

/// The version that an identity stands for, 0 where it is none of this serving.
uint64_t VersionOf(const LiveState& state, std::string_view eventId);

/// What a reader who knows version `since` has to be told to know this state: server-sent events, the last of them with
/// the state's EventId. With 0 he knows nothing. However old his version is, he is told each thing once, so the text is
/// never longer than the whole state. `age` is the state's in seconds.
///
/// Each event "part" has the identity of an element of the page in its first line, and behind it the markup that takes
/// the element's place; "end" says "rows" where channels are among them, and "now" where only the progress is.
std::string LiveEvents(const LiveState& state, uint64_t since, double age = 0);

}  // namespace tvn2x
