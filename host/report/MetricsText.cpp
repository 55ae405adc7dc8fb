#include "host/report/MetricsText.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <tuple>
#include <vector>

#include "fmt/format.h"
#include "host/judge/VerdictText.h"
#include "setup/catalogue/LevelUnits.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

constexpr const char* prefix = "tvn2x_";

/// A unit as the names of metrics have it, and what a number in it is multiplied by.
struct MetricUnit
{
    const wchar_t* unit;
    const char* suffix;
    double factor;
};
constexpr MetricUnit metricUnits[] = {{L"dBµV", "dbuv", 1}, {L"dB", "db", 1},      {L"Hz", "hertz", 1},
                                      {L"°", "degrees", 1}, {L"%", "ratio", 0.01}, {L"decades", "decades", 1},
                                      {L"", "ratio", 1}};

/// One that convention has no word for is left out of the name.
MetricUnit UnitOf(std::wstring_view unit)
{
    const auto found = std::ranges::find_if(metricUnits, [&](const MetricUnit& known) { return unit == known.unit; });
    return found == std::end(metricUnits) ? MetricUnit{L"", "", 1} : *found;
}

/// Six digits are all that a reading has.
std::string NumberOf(double value)
{
    return fmt::format("{:.7g}", value);
}

std::string TimeOf(double seconds)
{
    return fmt::format("{:.3f}", seconds);
}

std::string LabelValue(std::wstring_view text)
{
    std::string escaped;
    for (const char c : ToUtf8(text)) {
        escaped += c == '\n' ? "\\n" : c == '"' || c == '\\' ? std::string{'\\', c} : std::string{c};
    }
    return escaped;
}

/// `name="value"`, with a comma before it where others precede; "" for what was not said, which is how a label without
/// a value reads anyway.
void AddLabel(std::string& labels, const char* name, std::wstring_view value)
{
    if (!value.empty()) {
        labels += (labels.empty() ? "" : ",") + std::string(name) + "=\"" + LabelValue(value) + "\"";
    }
}

enum class MetricType
{
    gauge,
    counter,
    stateSet,
    info
};

/// What is written of all metrics of one name, before them.
struct MetricFamily
{
    std::string name;  ///< without the ending that its type has
    MetricType type;
    std::string unit;  ///< that the name ends with, "" for none
    std::string help;
};

/// The text, family by family. One without a sample leaves no trace.
class Exposition
{
public:
    explicit Exposition(MetricsFormat format) : format_(format) {}

    void Begin(MetricFamily family) { family_ = std::move(family), isBegun_ = false; }

    void Add(const std::string& labels, const std::string& value)
    {
        const std::string name = prefix + family_.name + Ending();
        if (!isBegun_) {
            isBegun_ = true;
            Describe();
        }
        text_ += name + (labels.empty() ? "" : "{" + labels + "}") + " " + value + "\n";
    }

    /// One sample for each state; its label is the metric's name.
    void AddState(const std::string& labels, std::wstring_view state, bool isIt)
    {
        std::string all = labels;
        AddLabel(all, (prefix + family_.name).c_str(), state);
        Add(all, isIt ? "1" : "0");
    }

    std::string Text() && { return std::move(text_) + (format_ == MetricsFormat::openMetrics ? "# EOF\n" : ""); }

private:
    const char* Ending() const
    {
        return family_.type == MetricType::counter ? "_total" : family_.type == MetricType::info ? "_info" : "";
    }

    void Describe()
    {
        const bool isOpen = format_ == MetricsFormat::openMetrics;
        constexpr const char* types[] = {"gauge", "counter", "stateset", "info"};
        const bool isOldType = family_.type == MetricType::gauge || family_.type == MetricType::counter;
        const std::string name = prefix + family_.name + (isOpen ? "" : Ending());
        text_ += fmt::format("# TYPE {} {}\n", name,
                             isOpen || isOldType ? types[static_cast<size_t>(family_.type)] : "gauge");
        if (isOpen && !family_.unit.empty()) {
            text_ += fmt::format("# UNIT {} {}\n", name, family_.unit);
        }
        text_ += fmt::format("# HELP {} {}\n", name, family_.help);
    }

    MetricsFormat format_;
    MetricFamily family_;
    bool isBegun_ = false;
    std::string text_;
};

/// A channel that was to be measured, with its labels.
struct MetricsRow
{
    const PlannedChannel& planned;
    std::string labels;
    const ChannelResult* result = nullptr;  ///< the latest one, null where it was never measured
    const ChannelJudgement* judgement = nullptr;
    std::optional<double> step{};
    ChannelCounts counts{};
};

std::wstring FrequencyLabel(double frequency)
{
    return FromUtf8(fmt::format("{}", frequency));
}

/// Two channels of one label, frequency and order are told apart by the number of the second, which otherwise is no
/// label, so that a setup to which a channel is added goes on with the same series.
std::vector<MetricsRow> Rows(const RunMetrics& metrics)
{
    const FinishedRun& run = metrics.run;
    std::map<int32_t, size_t> latest;
    for (const size_t position : run.Latest()) {
        latest[run.channels[position].number] = position;
    }
    const auto steps = LevelSteps(run);
    std::vector<MetricsRow> rows;
    std::set<std::string> taken;
    for (const PlannedChannel& planned : run.selection) {
        MetricsRow row{.planned = planned, .labels = {}};
        AddLabel(row.labels, "channel", planned.label);
        AddLabel(row.labels, "frequency", FrequencyLabel(planned.frequency));
        AddLabel(row.labels, "qam", std::to_wstring(run.setups[run.SetupOf(planned.number)].settings.orderOfQam));
        AddLabel(row.labels, "site", run.protocol.site);
        if (!taken.insert(row.labels).second) {
            AddLabel(row.labels, "number", std::to_wstring(planned.number));
        }
        const auto found = latest.find(planned.number);
        if (found != latest.end() && run.channels[found->second].outcome != ChannelOutcome::unmeasured) {
            row.result = &run.channels[found->second];
            row.judgement = &metrics.judgement.channels[found->second];
            row.step = steps[found->second];
        }
        if (const auto counts = metrics.counts.find(planned.number); counts != metrics.counts.end()) {
            row.counts = counts->second;
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

/// The number of a reading in the unit of its metric.
std::optional<double> ValueOf(const MetricsRow& row, const ReadingKind& kind)
{
    if (kind.parameter == levelStep) {
        return row.step;
    }
    const Reading* reading = row.result->Find(kind.parameter);
    if (!reading || !reading->value) {
        return std::nullopt;
    }
    return kind.parameter == MP_RFLEV ? LevelInDecibelMicrovolt(*reading->value, reading->unit) : reading->value;
}

/// "mer_db"
std::string NameWithUnit(const std::string& name, const MetricUnit& unit)
{
    return *unit.suffix == '\0' ? name : name + "_" + unit.suffix;
}

void AddReadings(const std::vector<MetricsRow>& rows, Exposition& text)
{
    for (const ReadingKind& kind : ReadingKinds()) {
        if (kind.isLock) {
            continue;
        }
        const MetricUnit unit = UnitOf(kind.unit);
        const std::string title = ToUtf8(kind.title);
        text.Begin({NameWithUnit(kind.name, unit), MetricType::gauge, unit.suffix,
                    kind.parameter == levelStep ? "Level above that of the channel below." : "The " + title + "."});
        for (const MetricsRow& row : rows) {
            if (const auto value = row.result ? ValueOf(row, kind) : std::nullopt) {
                text.Add(row.labels, NumberOf(*value * unit.factor));
            }
        }
        const MetricUnit difference = UnitOf(UnitOfDifference(kind));
        text.Begin({NameWithUnit(std::string(kind.name) + "_margin", difference), MetricType::gauge, difference.suffix,
                    "How far the " + title + " is on the good side of its limit, negative beyond it."});
        for (const MetricsRow& row : rows) {
            const Finding* finding = row.result ? row.judgement->Find(kind.parameter) : nullptr;
            if (finding && finding->margin) {
                text.Add(row.labels, NumberOf(*finding->margin * difference.factor));
            }
        }
    }
}

/// Each reading of each channel that is only a bound, and each lock.
void AddBoundsAndLocks(const std::vector<MetricsRow>& rows, Exposition& text)
{
    text.Begin({"bound", MetricType::gauge, "",
                "1 where a reading is only known to be below or above its value, or beyond the receiver's range."});
    for (const MetricsRow& row : rows) {
        for (const ReadingKind& kind : ReadingKinds()) {
            const Reading* reading = row.result ? row.result->Find(kind.parameter) : nullptr;
            if (reading && reading->bound != Bound::exact) {
                std::string labels = row.labels;
                AddLabel(labels, "reading", FromUtf8(kind.name));
                AddLabel(labels, "side", reading->bound == Bound::below ? L"below" : L"above");
                text.Add(labels, "1");
            }
        }
    }
    text.Begin({"lock", MetricType::gauge, "", "1 where a lock held throughout the measurement, 0 where it did not."});
    for (const MetricsRow& row : rows) {
        for (const ReadingKind& kind : ReadingKinds()) {
            const Reading* lock = row.result && kind.isLock ? row.result->Find(kind.parameter) : nullptr;
            if (lock && lock->text != L"---" && !lock->text.empty()) {
                std::string labels = row.labels;
                AddLabel(labels, "lock", FromUtf8(kind.name));
                text.Add(labels, lock->text == L"OK" ? "1" : "0");
            }
        }
    }
}

constexpr Verdict allVerdicts[] = {Verdict::pass, Verdict::warning, Verdict::notMeasured, Verdict::error,
                                   Verdict::fail};

void AddVerdicts(const std::vector<MetricsRow>& rows, const std::string& site, Exposition& text)
{
    const auto verdictOf = [](const MetricsRow& row) {
        return row.judgement ? row.judgement->verdict : Verdict::notMeasured;
    };
    text.Begin({"verdict", MetricType::stateSet, "", "The verdict on a channel's latest measurement."});
    for (const MetricsRow& row : rows) {
        for (const Verdict verdict : allVerdicts) {
            text.AddState(row.labels, VerdictName(verdict), verdictOf(row) == verdict);
        }
    }
    text.Begin({"channels", MetricType::gauge, "", "Channels by the verdict on their latest measurement."});
    for (const Verdict verdict : allVerdicts) {
        std::string labels = site;
        AddLabel(labels, "verdict", VerdictName(verdict));
        text.Add(labels, std::to_string(std::ranges::count(rows, verdict, verdictOf)));
    }
}

/// When a channel's measurement ended, in milliseconds since 1970.
std::optional<int64_t> EndOf(const ChannelResult& channel)
{
    const auto began = MillisecondsOf(channel.began);
    return began ? std::optional(*began + std::llround(channel.seconds * 1e3)) : std::nullopt;
}

void AddMeasurements(const std::vector<MetricsRow>& rows, Exposition& text)
{
    text.Begin(
        {"measurement_duration_seconds", MetricType::gauge, "seconds", "What a channel's latest measurement took."});
    for (const MetricsRow& row : rows) {
        if (row.result) {
            text.Add(row.labels, TimeOf(row.result->seconds));
        }
    }
    text.Begin({"measured_timestamp_seconds", MetricType::gauge, "seconds", "When a channel was measured last."});
    for (const MetricsRow& row : rows) {
        if (const auto end = row.result ? EndOf(*row.result) : std::nullopt) {
            text.Add(row.labels, TimeOf(static_cast<double>(*end) / 1e3));
        }
    }
    for (const auto& [name, count, help] :
         {std::tuple("measurements", &ChannelCounts::measurements, "Measurements in this run."),
          {"instrument_errors", &ChannelCounts::errors, "Measurements that the instrument failed at."}}) {
        text.Begin({name, MetricType::counter, "", help});
        for (const MetricsRow& row : rows) {
            text.Add(row.labels, std::to_string(row.counts.*count));
        }
    }
}

void AddRun(const RunMetrics& metrics, const std::string& site, Exposition& text)
{
    const FinishedRun& run = metrics.run;
    const auto gauge = [&](const char* name, const char* unit, const char* help, const std::string& value) {
        text.Begin({name, MetricType::gauge, unit, help});
        text.Add(site, value);
    };
    gauge("pass", "", "The pass that is measured or was measured last, from 1.", std::to_string(metrics.pass));
    if (const auto& last = metrics.lastPass) {
        gauge("pass_duration_seconds", "seconds", "What the latest whole pass took of measuring.",
              TimeOf(last->seconds));
        if (const auto ended = MillisecondsOf(last->ended)) {
            gauge("pass_timestamp_seconds", "seconds", "When the latest whole pass ended.",
                  TimeOf(static_cast<double>(*ended) / 1e3));
        }
    }
    if (run.interval > 0) {
        gauge("pass_interval_seconds", "seconds", "From the beginning of one pass to that of the next.",
              TimeOf(run.interval));
    }
    if (metrics.answers) {
        gauge("receiver_up", "", "1 where the receiver answers, 0 where it does not.", *metrics.answers ? "1" : "0");
    }
    std::string about = site;
    AddLabel(about, "outlet", run.protocol.outlet);
    AddLabel(about, "setup", SetupNames(run));
    AddLabel(about, "receiver", run.receiver.identity);
    AddLabel(about, "serial", run.receiver.serialNumber);
    AddLabel(about, "simulated", run.receiver.simulation ? L"true" : L"false");
    AddLabel(about, "limits", metrics.judgement.limits);
    AddLabel(about, "program", run.program);
    text.Begin({"run", MetricType::info, "", "What is measured, by what, and judged by which limits."});
    text.Add(about, "1");
}

}  // namespace

const char* ContentTypeOf(MetricsFormat format)
{
    return format == MetricsFormat::openMetrics ? "application/openmetrics-text; version=1.0.0; charset=utf-8"
                                                : "text/plain; version=0.0.4; charset=utf-8";
}

RunMetrics MetricsOf(const FinishedRun& run, const RunJudgement& judgement)
{
    RunMetrics metrics{.run = run, .judgement = judgement};
    std::map<int32_t, std::tuple<size_t, double, int64_t>> passes;
    for (const ChannelResult& channel : run.channels) {
        if (channel.outcome == ChannelOutcome::unmeasured) {
            continue;
        }
        ChannelCounts& counted = metrics.counts[channel.number];
        ++counted.measurements;
        counted.errors += channel.outcome == ChannelOutcome::error ? 1 : 0;
        metrics.pass = std::max(metrics.pass, channel.pass);
        auto& [measured, seconds, ended] = passes[channel.pass];
        seconds += channel.seconds;
        ended = std::max(ended, EndOf(channel).value_or(0));
        if (++measured == run.selection.size()) {
            metrics.lastPass = {.seconds = seconds, .ended = UtcText(ended)};
        }
    }
    return metrics;
}

std::string MetricsText(const RunMetrics& metrics, MetricsFormat format)
{
    const std::vector<MetricsRow> rows = Rows(metrics);
    std::string site;
    AddLabel(site, "site", metrics.run.protocol.site);
    Exposition text(format);
    AddReadings(rows, text);
    AddBoundsAndLocks(rows, text);
    AddVerdicts(rows, site, text);
    AddMeasurements(rows, text);
    AddRun(metrics, site, text);
    return std::move(text).Text();
}

}  // namespace tvn2x
