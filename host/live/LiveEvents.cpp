#include "host/live/LiveEvents.h"

#include <charconv>

#include "fmt/format.h"
#include "host/live/LiveParts.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

/// A text as the lines of an event.
std::string Data(std::string_view text)
{
    std::string lines = "data: ";
    for (const char c : text) {
        // A single CR would end a line as well.
        lines += c == '\n' ? "\ndata: " : c == '\r' ? "&#13;" : std::string{c};
    }
    return lines + "\n";
}

}  // namespace

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

std::string LiveEvents(const LiveState& state, uint64_t since, double age)
{
    std::string text;
    const std::vector<LivePart> parts = LiveParts(state, since, age);
    for (const LivePart& part : parts) {
        text += "event: part\ndata: " + part.id + "\n" + Data(part.html) + "\n";
    }
    return text + fmt::format("event: end\nid: {}\ndata: {}\n\n", EventId(state), parts.size() > 1 ? "rows" : "now");
}

}  // namespace tvn2x
