#include "host/live/LiveData.h"

#include <algorithm>
#include <cmath>

#include "fmt/format.h"
#include "host/judge/VerdictText.h"
#include "host/report/JsonReport.h"
#include "host/run/RunRecords.h"
#include "nlohmann/json.hpp"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

/// Keys stay in the order in which they are written.
using Json = nlohmann::ordered_json;

Json Text(std::wstring_view text)
{
    return ToUtf8(text);
}

std::string Dump(const Json& json)
{
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

const char* PhaseName(LivePhase phase)
{
    constexpr const char* names[] = {"preparing", "measuring", "waiting", "ended"};
    return names[static_cast<size_t>(phase)];
}

template <class Value>
void PutIf(Json& json, const char* key, const std::optional<Value>& value)
{
    if (value) {
        json[key] = *value;
    }
}

void PutIf(Json& json, const char* key, const std::wstring& text)
{
    if (!text.empty()) {
        json[key] = Text(text);
    }
}

/// With the digits that make a short number what it is: as a long one it would have ten more that mean nothing.
void PutIf(Json& json, const char* key, const std::optional<float>& number)
{
    if (number) {
        json[key] = std::stod(fmt::format("{}", *number));
    }
}

/// To the millisecond, which is as exact as anybody can use them.
void PutSeconds(Json& json, const char* key, const std::optional<double>& seconds)
{
    if (seconds) {
        json[key] = std::round(*seconds * 1e3) / 1e3;
    }
}

Json NowJson(const LiveState& state, double age)
{
    const LiveNow& now = state.now;
    Json json{{"phase", PhaseName(now.phase)}, {"pass", now.pass}, {"done", now.done}};
    PutSeconds(json, "ageSeconds", age);
    PutIf(json, "channel", now.channel);
    PutIf(json, "status", now.status);
    PutSeconds(json, "secondsLeft", now.left);
    PutSeconds(json, "nextPassInSeconds", now.nextPass);
    PutIf(json, "fault", now.fault);
    PutIf(json, "faultSince", now.faultSince);
    json["passesDone"] = state.passesDone;
    PutSeconds(json, "lastPassSeconds", state.lastPassSeconds);
    PutIf(json, "lastPassEnded", state.lastPassEnded);
    return json;
}

/// What a channel has besides its records.
Json ChannelJson(const LiveChannel& channel)
{
    Json json{{"number", channel.planned.number},          {"label", Text(channel.planned.label)},
              {"frequencyMHz", channel.planned.frequency}, {"orderOfQam", channel.orderOfQam},
              {"measurements", channel.measurements},      {"errors", channel.errors}};
    PutIf(json, "badSince", channel.badSince);
    return json;
}

Json PointJson(const LivePoint& point)
{
    Json json{
        {"pass", point.pass}, {"began", Text(UtcText(point.began))}, {"result", Text(VerdictName(point.verdict))}};
    PutIf(json, "levelDbuv", point.level);
    PutIf(json, "merDb", point.mer);
    PutIf(json, "ber", point.ber);
    if (point.isBerBound) {
        json["berIsBound"] = true;
    }
    return json;
}

/// Adds members that are JSON already behind the last one of an object.
void Insert(std::string& object, const std::string& members)
{
    object.insert(object.size() - 1, members);
}

std::string Record(const char* key, const LiveMeasurementPtr& measurement)
{
    return measurement ? std::string(",\"") + key + "\":" + ChannelRecord(measurement->result, measurement->judgement)
                       : "";
}

}  // namespace

std::string RunData(const LiveState& state, double age)
{
    const FinishedRun run = RunOf(state);
    std::string text =
        Dump({{"serving", Text(state.serving)}, {"version", state.version}, {"now", NowJson(state, age)}});
    Insert(text, ",\"run\":" + RunLine(*state.run));
    Insert(text, ",\"verdict\":" + VerdictRecord(run, Judge(run, state.limits.get())));
    return text + "\n";
}

std::string ChannelsData(const LiveState& state)
{
    std::string text = "[";
    for (const LiveChannel& channel : state.channels) {
        std::string object = Dump(ChannelJson(channel));
        Insert(object, Record("latest", channel.latest));
        text += (text.size() == 1 ? "" : ",\n") + object;
    }
    return text + "]\n";
}

std::string ChannelData(const LiveState& state, int32_t number)
{
    const auto channel =
        std::ranges::find_if(state.channels, [number](const LiveChannel& one) { return one.planned.number == number; });
    if (channel == state.channels.end()) {
        return {};
    }
    Json json = ChannelJson(*channel);
    json["history"] = Json::array();
    for (const LivePoint& point : *channel->history) {
        json["history"].push_back(PointJson(point));
    }
    std::string object = Dump(json);
    Insert(object,
           Record("latest", channel->latest) + Record("first", channel->first) + Record("worst", channel->worst));
    return object + "\n";
}

}  // namespace tvn2x
