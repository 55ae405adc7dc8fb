#include "host/run/RunRecords.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

#include "fmt/xchar.h"
#include "host/run/UserNumber.h"
#include "nlohmann/json.hpp"
#include "text/InputError.h"
#include "text/RichText.h"
#include "text/TextInput.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

/// Keys stay in the order in which they are written.
using Json = nlohmann::ordered_json;

constexpr int32_t format = 1;

std::string Line(const Json& record, std::string_view further = {})
{
    std::string line = record.dump(-1, ' ', false, Json::error_handler_t::replace);
    if (!further.empty()) {
        line.insert(line.size() - 1, "," + std::string(further));
    }
    return line + "\n";
}

constexpr struct
{
    ChannelOutcome outcome;
    const char* name;
} outcomes[] = {
    {ChannelOutcome::unmeasured, "not measured"},
    {ChannelOutcome::synchronised, "synchronised"},
    {ChannelOutcome::notSynchronised, "not synchronised"},
    {ChannelOutcome::error, "error"},
};

constexpr struct
{
    Bound bound;
    const char* name;
} bounds[] = {{Bound::below, "below"}, {Bound::above, "above"}};

Json Text(std::wstring_view text)
{
    return ToUtf8(text);
}

Json ReadingJson(const Reading& reading)
{
    Json json{{"text", Text(reading.text)}};
    json["value"] = reading.value ? Json(*reading.value) : Json();
    for (const auto& known : bounds) {
        if (reading.bound == known.bound) {
            json["bound"] = known.name;
        }
    }
    json["unit"] = Text(reading.unit);
    return json;
}

Json SetupJson(const RunSetup& setup)
{
    return {{"path", Text(setup.path)},
            {"sha256", Text(setup.sha256)},
            {"notes", Text(setup.notes)},
            {"firstChannel", setup.firstChannel},
            {"orderOfQam", setup.settings.orderOfQam},
            {"rollOffFactor", setup.settings.rollOffFactor},
            {"sawBandwidthMHz", setup.settings.sawBandwidth},
            {"inputRoute", setup.settings.inputRoute},
            {"referenceSource", setup.settings.referenceSource},
            {"berSamples", setup.settings.berSamples},
            {"maxSettlingTimeSeconds", setup.settings.maxSettlingTime},
            {"levelUnit", Text(setup.settings.levelUnit)}};
}

/// A record of a file that anybody may have written: whatever is not as it should be is refused.
class Record
{
public:
    explicit Record(const Json& json) : json_(json) {}

    const Json& At(const char* key) const
    {
        const auto found = json_.find(key);
        if (found == json_.end()) {
            Refuse(key, L"is missing");
        }
        return *found;
    }
    bool Has(const char* key) const { return json_.contains(key); }

    Record Object(const char* key) const { return Record(Typed(key, &Json::is_object, L"an object")); }
    const Json& Array(const char* key) const { return Typed(key, &Json::is_array, L"a list"); }
    bool Flag(const char* key) const { return Typed(key, &Json::is_boolean, L"true or false").get<bool>(); }
    std::string Bytes(const char* key) const { return Typed(key, &Json::is_string, L"a text").get<std::string>(); }
    std::wstring Text(const char* key) const { return FromUtf8(Bytes(key)); }
    double Number(const char* key) const { return Typed(key, &Json::is_number, L"a number").get<double>(); }

    int32_t Whole(const char* key, int32_t lowest = std::numeric_limits<int32_t>::min()) const
    {
        const Json& value = Typed(key, &Json::is_number_integer, L"a whole number");
        const bool isLarge = value.is_number_unsigned() && value.get<uint64_t>() > INT32_MAX;
        if (isLarge || value.get<int64_t>() < lowest || value.get<int64_t>() > INT32_MAX) {
            Refuse(key, L"is outside " + std::to_wstring(lowest) + L" to " + std::to_wstring(INT32_MAX));
        }
        return value.get<int32_t>();
    }

    [[noreturn]] static void Refuse(const std::string& key, const std::wstring& what)
    {
        throw RaisedError(unusableInput, L"", Excerpt(key) + L" " + what);
    }

    const Json& Self() const { return json_; }

private:
    const Json& Typed(const char* key, bool (Json::*isRight)() const noexcept, const std::wstring& wanted) const
    {
        const Json& value = At(key);
        if (!(value.*isRight)()) {
            Refuse(key, L"has to be " + wanted);
        }
        return value;
    }

    const Json& json_;
};

template <class Table, class Value>
Value Named(const Table& table, Value std::remove_extent_t<Table>::*member, const char* key, const std::string& name)
{
    for (const auto& known : table) {
        if (name == known.name) {
            return known.*member;
        }
    }
    Record::Refuse(key, L"is " + Excerpt(name) + L", which is not known");
}

int32_t NamedParameter(const std::string& name)
{
    const auto found = std::ranges::find(ReadingKinds(), std::string_view(name), &ReadingKind::name);
    if (found == ReadingKinds().end()) {
        Record::Refuse(name, L"is no parameter");
    }
    return found->parameter;
}

Reading ReadReading(const std::string& name, const Record& json)
{
    // Whoever measured it may have had another decimal mark than who reads it.
    Reading reading{
        .parameter = NamedParameter(name), .text = WithUserMark(json.Text("text")), .unit = json.Text("unit")};
    if (!json.At("value").is_null()) {
        reading.value = json.Number("value");
    }
    if (json.Has("bound")) {
        reading.bound = Named(bounds, &std::remove_extent_t<decltype(bounds)>::bound, "bound", json.Bytes("bound"));
    }
    return reading;
}

ChannelResult ReadChannel(const Record& json)
{
    ChannelResult channel{.pass = json.Whole("pass", 1),
                          .number = json.Whole("number", 1),
                          .label = json.Text("label"),
                          .frequency = json.Number("frequencyMHz"),
                          .symbolRate = json.Number("symbolRateMSymbs"),
                          .outcome = Named(outcomes, &std::remove_extent_t<decltype(outcomes)>::outcome, "outcome",
                                           json.Bytes("outcome")),
                          .status = json.Text("status"),
                          .timeStamp = json.Text("timeStamp"),
                          .began = json.Text("began"),
                          .seconds = json.Number("seconds"),
                          .readings = {}};
    const Json& locks = json.Object("locks").Self();
    const Json& readings = json.Object("readings").Self();
    // The parameters' own order, which is that of the readings before they were written.
    for (const ReadingKind& kind : ReadingKinds()) {
        if (kind.isLock && locks.contains(kind.name)) {
            channel.readings.push_back({.parameter = kind.parameter, .text = Record(locks).Text(kind.name)});
        } else if (!kind.isLock && readings.contains(kind.name)) {
            channel.readings.push_back(ReadReading(kind.name, Record(readings).Object(kind.name)));
        }
    }
    if (channel.outcome != ChannelOutcome::unmeasured) {
        channel.outcome = OutcomeOf(channel.status, channel.readings);
    }
    return channel;
}

RunSetup ReadRunSetup(const Record& json)
{
    return {.path = json.Text("path"),
            .sha256 = json.Text("sha256"),
            .notes = PlainText(json.Text("notes")),  // rich text in early files
            .firstChannel = json.Has("firstChannel") ? json.Whole("firstChannel", 1) : 1,
            .settings = {.orderOfQam = json.Whole("orderOfQam"),
                         .rollOffFactor = json.Whole("rollOffFactor"),
                         .sawBandwidth = json.Whole("sawBandwidthMHz"),
                         .inputRoute = json.Whole("inputRoute"),
                         .referenceSource = json.Whole("referenceSource"),
                         .berSamples = json.Whole("berSamples"),
                         .maxSettlingTime = json.Whole("maxSettlingTimeSeconds"),
                         .levelUnit = json.Text("levelUnit")}};
}

/// The setups in the order in which their channels are counted; early files have one, and not as a list.
std::vector<RunSetup> ReadRunSetups(const Record& json)
{
    if (!json.Has("setups")) {
        return {ReadRunSetup(json.Object("setup"))};
    }
    std::vector<RunSetup> setups;
    for (const Json& setup : json.Array("setups")) {
        setups.push_back(ReadRunSetup(Record(setup)));
    }
    const auto falls = std::ranges::adjacent_find(setups, std::ranges::greater_equal(), &RunSetup::firstChannel);
    if (setups.empty() || setups.front().firstChannel != 1 || falls != setups.end()) {
        Record::Refuse("setups", L"has to name setups, by \"firstChannel\" from 1 on");
    }
    return setups;
}

/// Symbols as a list of whole numbers, in phase and in quadrature by turns.
std::vector<Symbol> ReadSymbols(const Json& numbers)
{
    std::vector<Symbol> symbols;
    for (size_t i = 0; i + 1 < numbers.size(); i += 2) {
        if (!numbers[i].is_number_integer() || !numbers[i + 1].is_number_integer()) {
            Record::Refuse("constellation", L"has to hold whole numbers");
        }
        symbols.push_back(
            {static_cast<int32_t>(numbers[i].get<int64_t>()), static_cast<int32_t>(numbers[i + 1].get<int64_t>())});
    }
    return symbols;
}

PlannedChannel ReadPlanned(const Record& json)
{
    return {.number = json.Whole("number", 1),
            .label = json.Text("label"),
            .frequency = json.Number("frequencyMHz"),
            .symbolRate = json.Number("symbolRateMSymbs")};
}

void RequireAscending(const std::vector<PlannedChannel>& selection)
{
    const auto falls = std::ranges::adjacent_find(selection, std::ranges::greater_equal(), &PlannedChannel::number);
    if (selection.empty() || falls != selection.end()) {
        Record::Refuse("selection", L"has to name channels, by number and each once");
    }
}

/// Whoever adds, leaves out or doubles lines of a run gets no verdict on the rest.
void RequirePlanned(const ChannelResult& channel, const FinishedRun& run)
{
    if (!std::ranges::binary_search(run.selection, channel.number, {}, &PlannedChannel::number)) {
        Record::Refuse("number", L"is " + std::to_wstring(channel.number) + L", which was not to be measured");
    }
    if (run.passes != 0 && channel.pass > run.passes) {
        Record::Refuse("pass", L"is " + std::to_wstring(channel.pass) + L" of " + std::to_wstring(run.passes));
    }
}

void ReadHead(const Record& json, FinishedRun& run)
{
    if (json.Whole("format") != format) {
        Record::Refuse("format", L"is " + std::to_wstring(json.Whole("format")) + L", this program reads " +
                                     std::to_wstring(format));
    }
    run.program = json.Text("program");
    run.setups = ReadRunSetups(json);
    const Record receiver = json.Object("receiver");
    run.receiver = {.identity = receiver.Text("identity"),
                    .hardware = receiver.Text("hardware"),
                    .serialNumber = receiver.Text("serialNumber"),
                    .firmware = receiver.Text("firmware"),
                    .options = receiver.Text("options"),
                    .simulation = {}};
    if (receiver.Has("simulation")) {
        const Record simulation = receiver.Object("simulation");
        run.receiver.simulation = {
            .model = simulation.Text("model"), .sha256 = simulation.Text("sha256"), .seed = simulation.Text("seed")};
    }
    if (receiver.Has("recordings")) {
        const Record recordings = receiver.Object("recordings");
        run.receiver.recordings = {.folder = recordings.Text("folder"), .bands = recordings.Text("bands")};
    }
    if (json.Has("protocol")) {  // early files have none
        const Record protocol = json.Object("protocol");
        run.protocol = {.site = protocol.Text("site"),
                        .outlet = protocol.Text("outlet"),
                        .by = protocol.Text("by"),
                        .order = protocol.Text("order"),
                        .remark = protocol.Text("remark")};
    }
    for (const Json& column : json.Array("columns")) {
        run.columns.push_back({Record(column).Whole("parameter"), Record(column).Text("caption")});
    }
    for (const Json& channel : json.Array("selection")) {
        run.selection.push_back(ReadPlanned(Record(channel)));
    }
    RequireAscending(run.selection);
    run.passes = json.Whole("passes", 0);
    run.interval = json.Number("intervalSeconds");
    run.began = json.Text("began");
}

void ReadRecord(const Json& json, bool isFirst, FinishedRun& run)
{
    if (!json.is_object()) {
        throw RaisedError(unusableInput, L"", L"that is no record of a result");
    }
    const Record record(json);
    const std::string kind = record.Bytes("record");
    if ((kind == "run") != isFirst) {
        throw RaisedError(unusableInput, L"", L"a result begins with its record \"run\", and has one");
    }
    if (kind == "run") {
        ReadHead(record, run);
    } else if (kind == "channel") {
        ChannelResult& channel = run.channels.emplace_back(ReadChannel(record));
        RequirePlanned(channel, run);
        if (record.Has("details")) {
            const Record details = record.Object("details");
            channel.details = {.remark = details.Text("remark"),
                               .hasUnknownLevel = details.Flag("levelUnknown"),
                               .symbols = ReadSymbols(details.Array("constellation"))};
        }
        channel.orderOfQam = run.setups[run.SetupOf(channel.number)].settings.orderOfQam;
    } else if (kind == "resumed") {
        run.resumed.push_back(record.Text("at"));
        run.stopped = false;
        run.ended.clear();
    } else if (kind == "end") {
        run.ended = record.Text("at");
        run.stopped = record.Flag("stopped");
    } else if (kind != "verdict") {
        Record::Refuse("record", L"is " + Excerpt(kind) + L"; known are run, channel, resumed, end and verdict");
    }
}

const std::wstring remedy = L". Give a result file (scan --json) or a journal (scan --journal) as it was written.";

void RequireOnce(const FinishedRun& run, const std::wstring& path)
{
    std::set<std::pair<int32_t, int32_t>> places;
    for (const ChannelResult& channel : run.channels) {
        if (channel.outcome != ChannelOutcome::unmeasured && !places.emplace(channel.pass, channel.number).second) {
            RaiseInput(
                fmt::format(L"{}: channel {} of pass {} is there twice{}", path, channel.number, channel.pass, remedy));
        }
    }
}

}  // namespace

std::string RunLine(const FinishedRun& run)
{
    Json setups = Json::array();
    for (const RunSetup& setup : run.setups) {
        setups.push_back(SetupJson(setup));
    }
    Json columns = Json::array();
    for (const RunColumn& column : run.columns) {
        columns.push_back({{"parameter", column.parameter}, {"caption", Text(column.caption)}});
    }
    Json selection = Json::array();
    for (const PlannedChannel& channel : run.selection) {
        selection.push_back({{"number", channel.number},
                             {"label", Text(channel.label)},
                             {"frequencyMHz", channel.frequency},
                             {"symbolRateMSymbs", channel.symbolRate}});
    }
    Json receiver{{"identity", Text(run.receiver.identity)},
                  {"hardware", Text(run.receiver.hardware)},
                  {"serialNumber", Text(run.receiver.serialNumber)},
                  {"firmware", Text(run.receiver.firmware)},
                  {"options", Text(run.receiver.options)}};
    if (const auto& simulation = run.receiver.simulation) {
        receiver["simulation"] = {
            {"model", Text(simulation->model)}, {"sha256", Text(simulation->sha256)}, {"seed", Text(simulation->seed)}};
    }
    if (const auto& recordings = run.receiver.recordings) {
        receiver["recordings"] = {{"folder", Text(recordings->folder)}, {"bands", Text(recordings->bands)}};
    }
    return Line({{"record", "run"},
                 {"format", format},
                 {"program", Text(run.program)},
                 {"began", Text(run.began)},
                 {"setups", std::move(setups)},
                 {"receiver", std::move(receiver)},
                 {"protocol",
                  {{"site", Text(run.protocol.site)},
                   {"outlet", Text(run.protocol.outlet)},
                   {"by", Text(run.protocol.by)},
                   {"order", Text(run.protocol.order)},
                   {"remark", Text(run.protocol.remark)}}},
                 {"columns", std::move(columns)},
                 {"selection", std::move(selection)},
                 {"passes", run.passes},
                 {"intervalSeconds", run.interval}});
}

std::string ChannelLine(const ChannelResult& channel, std::string_view further)
{
    Json locks = Json::object();
    Json readings = Json::object();
    for (const Reading& reading : channel.readings) {
        if (const ReadingKind* kind = FindReadingKind(reading.parameter)) {
            (kind->isLock ? locks : readings)[kind->name] = kind->isLock ? Text(reading.text) : ReadingJson(reading);
        }
    }
    Json json{{"record", "channel"},
              {"pass", channel.pass},
              {"number", channel.number},
              {"label", Text(channel.label)},
              {"frequencyMHz", channel.frequency},
              {"symbolRateMSymbs", channel.symbolRate},
              {"orderOfQam", channel.orderOfQam}};
    for (const auto& known : outcomes) {
        if (known.outcome == channel.outcome) {
            json["outcome"] = known.name;
        }
    }
    json["status"] = Text(channel.status);
    json["timeStamp"] = Text(channel.timeStamp);
    json["began"] = Text(channel.began);
    json["seconds"] = channel.seconds;
    json["locks"] = std::move(locks);
    json["readings"] = std::move(readings);
    if (!channel.details.IsEmpty()) {
        Json numbers = Json::array();
        for (const Symbol& symbol : channel.details.symbols) {
            numbers.push_back(symbol.inPhase);
            numbers.push_back(symbol.quadrature);
        }
        json["details"] = {{"remark", Text(channel.details.remark)},
                           {"levelUnknown", channel.details.hasUnknownLevel},
                           {"constellation", std::move(numbers)}};
    }
    return Line(json, further);
}

std::string ResumedLine(const std::wstring& time)
{
    return Line({{"record", "resumed"}, {"at", Text(time)}});
}

std::string EndLine(const FinishedRun& run)
{
    return Line({{"record", "end"}, {"at", Text(run.ended)}, {"stopped", run.stopped}, {"seconds", run.Seconds()}});
}

StoredRun ReadRun(std::string_view content, const std::wstring& path)
{
    StoredRun stored;
    int32_t line = 0;
    while (stored.wholeBytes < content.size()) {
        const size_t end = content.find('\n', stored.wholeBytes);
        if (end == std::string_view::npos) {
            stored.isTorn = true;
            break;
        }
        ++line;
        const std::string_view text = TrimLine(content.substr(stored.wholeBytes, end - stored.wholeBytes));
        try {
            if (!text.empty()) {
                ReadRecord(Json::parse(text), stored.run.began.empty(), stored.run);
            }
        } catch (const nlohmann::json::exception&) {
            RaiseInput(AtLine(path, line) + Excerpt(text) + L" is no JSON" + remedy);
        } catch (const RaisedError& error) {
            RaiseInput(AtLine(path, line) + error.description + remedy);
        }
        stored.wholeBytes = end + 1;
    }
    RequireOnce(stored.run, path);
    if (stored.run.began.empty()) {
        RaiseInput(path + (content.empty() ? L" is empty" : L" has no whole line") + remedy);
    }
    return stored;
}

}  // namespace tvn2x
