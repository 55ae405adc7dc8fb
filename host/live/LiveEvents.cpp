#include "host/live/LiveEvents.h"

#include <charconv>

#include "fmt/format.h"
#include "util/Encoding.h"

namespace tvn2x {

std::string EventId(const LiveState& state)
{
    return fmt::format("{}/{}", ToUtf8(state.serving), state.version);
}

uint64_t VersionOf(const LiveState& state, std::string_view eventId)
{
    const std::string mine = ToUtf8(state.serving) + "/";
    uint64_t version = 0;
    if (eventId.starts_with(mine)) {
        std::from_chars(eventId.data() + mine.size(), eventId.data() + eventId.size(), version);
    }
    return version <= state.version ? version : 0;
}

std::string LiveEvents(const LiveState& state, uint64_t since)
{
    std::string text;
    for (const LiveChannel& channel : state.channels) {
        if (channel.changed > since) {
            text += fmt::format("event: channel\ndata: {}\n\n", channel.planned.number);
        }
    }
    return text + fmt::format("event: now\nid: {}\ndata: {}\n\n", EventId(state), state.now.pass);
}

}  // namespace tvn2x
