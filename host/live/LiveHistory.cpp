#include <algorithm>

#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/judge/VerdictText.h"
#include "host/live/LivePage.h"
#include "host/live/LiveParts.h"
#include "host/report/Chart.h"
#include "host/report/HtmlParts.h"
#include "host/report/Markup.h"
#include "host/report/RunGrid.h"
#include "host/run/UserNumber.h"

namespace tvn2x {
namespace {

/// What is drawn of a channel over time.
struct HistoryKind
{
    int32_t parameter;
    std::optional<float> LivePoint::*value;
    const wchar_t* title;
    const wchar_t* caption;
};
constexpr HistoryKind kinds[] = {
    {MP_RFLEV, &LivePoint::level, L"RF level over time", L"RF level (dBµV)"},
    {MP_MER, &LivePoint::mer, L"Modulation error ratio over time", L"MER (dB)"},
    {MP_BER, &LivePoint::ber, L"Bit error ratio before Reed-Solomon over time", L"BER before RS"}};

constexpr auto bounds = {&Limit::warnBelow, &Limit::warnAbove, &Limit::failBelow, &Limit::failAbove};

bool IsFailure(std::optional<double> Limit::*bound)
{
    return bound == &Limit::failBelow || bound == &Limit::failAbove;
}

/// Where one reading is by itself.
Verdict VerdictOf(const LivePoint& point, double value, const Limit* limit)
{
    Verdict verdict = point.verdict == Verdict::error ? point.verdict : Verdict::pass;
    for (const auto bound : bounds) {
        if (!limit || !(limit->*bound)) {
            continue;
        }
        const bool isLower = bound == &Limit::failBelow || bound == &Limit::warnBelow;
        if (isLower ? value < *(limit->*bound) : value > *(limit->*bound)) {
            verdict = std::max(verdict, IsFailure(bound) ? Verdict::fail : Verdict::warning);
        }
    }
    return verdict;
}

double SecondsOf(const LivePoint& point)
{
    return static_cast<double>(point.began) / 1e3;
}

ChartAxis TimeAxis(const LiveHistory& history)
{
    constexpr double room = 0.02;
    const double first = SecondsOf(history.front()), last = SecondsOf(history.back());
    const double margin = std::max(1.0, (last - first) * room);
    return {.caption = L"Local time", .low = first - margin, .high = last + margin, .isTime = true};
}

ChartAxis ValueAxis(const LiveHistory& history, const HistoryKind& kind, const Limit* limit)
{
    constexpr double roomForArrow = 3;
    constexpr int ticks = 5;
    const bool isRatio = kind.parameter == MP_BER;
    std::vector<double> values;
    for (const LivePoint& point : history) {
        const auto value = point.*kind.value;
        if (value && (!isRatio || *value > 0)) {
            values.push_back(isRatio && point.isBerBound ? *value / roomForArrow : *value);
        }
    }
    for (const auto bound : bounds) {
        if (limit && limit->*bound) {
            values.push_back(*(limit->*bound));
        }
    }
    const auto [low, high] = std::ranges::minmax(values);
    ChartAxis axis{.caption = kind.caption, .low = low, .high = high, .isLogarithmic = isRatio};
    axis.Round(ticks);
    return axis;
}

/// `worst` is the pass in which the channel was worst.
std::string HistoryPlot(const LiveHistory& history, const HistoryKind& kind, const Limit* limit, int32_t worst)
{
    if (std::ranges::none_of(history, [&](const LivePoint& point) { return (point.*kind.value).has_value(); })) {
        return "";
    }
    const ChartAxis time = TimeAxis(history);
    Chart chart(kind.title, std::wstring(kind.title) + L", a mark for each measurement", time,
                ValueAxis(history, kind, limit));
    for (const auto bound : bounds) {
        if (limit && limit->*bound) {
            chart.LimitLine(time.low, time.high, *(limit->*bound), IsFailure(bound));
        }
    }
    for (const LivePoint& point : history) {
        const std::wstring label = point.pass == worst ? L"worst" : L"";
        if (const auto value = point.*kind.value) {
            const bool isBound = kind.parameter == MP_BER && point.isBerBound;
            chart.Point(SecondsOf(point), *value, VerdictOf(point, *value, limit),
                        isBound ? Bound::below : Bound::exact,
                        fmt::format(L"{}: {}", LocalText(UtcText(point.began)), NumberText(*value)), label);
        } else {
            chart.Missing(SecondsOf(point), label);
        }
    }
    return PlotFigure({.svg = chart.Svg(),
                       .caption = Escape(kind.caption) + ". Solid line: limit. Dashed line: warning. A cross is a "
                                                         "measurement without a value, an arrow down an upper bound."});
}

std::string Cell(const LiveMeasurementPtr& measurement, int32_t parameter)
{
    return fmt::format("<td class=\"number\">{}</td>",
                       measurement ? Escape(CellText(measurement->result, parameter)) : "");
}

/// What was read last, first and when the channel was worst.
std::string ReadingsTable(const LiveChannel& channel)
{
    std::string text =
        R"(<table class="readings"><thead><tr><th scope="col">Reading</th><th scope="col" class="number">Now</th>)"
        R"(<th scope="col" class="number">Margin</th><th scope="col" class="number">First</th>)"
        R"(<th scope="col" class="number">Worst</th></tr></thead><tbody>)";
    for (const Reading& reading : channel.latest->result.readings) {
        const ReadingKind* const kind = FindReadingKind(reading.parameter);
        if (!kind) {
            continue;
        }
        const Finding* const finding = channel.latest->judgement.Find(reading.parameter);
        text += fmt::format(R"(<tr><th scope="row">{}{}</th>{}<td class="number {}">{}</td>{}{}</tr>)",
                            Escape(kind->title), Escape(reading.unit.empty() ? L"" : L" (" + reading.unit + L")"),
                            Cell(channel.latest, reading.parameter), finding ? ClassOf(finding->verdict) : "",
                            finding && finding->margin ? Escape(MarginText(*finding)) : "",
                            Cell(channel.first, reading.parameter), Cell(channel.worst, reading.parameter));
    }
    return text + "</tbody></table>\n";
}

std::string Summary(const LiveChannel& channel)
{
    const LiveMeasurement& latest = *channel.latest;
    const Verdict verdict = latest.judgement.verdict;
    std::string text =
        fmt::format("<p class=\"verdict {}\"><b>{}</b>{}{}</p>\n", ClassOf(verdict), Escape(VerdictName(verdict)),
                    channel.badSince.empty() ? "" : " since " + TimeElement(channel.badSince),
                    latest.judgement.reason.empty() ? "" : ": " + Escape(latest.judgement.reason));
    text += fmt::format("<p>Measured last at {} (pass {}), {} {}", TimeElement(latest.result.began), latest.result.pass,
                        channel.measurements, channel.measurements == 1 ? "time" : "times");
    text += channel.errors == 0 ? "." : fmt::format("; the instrument failed {} of them.", channel.errors);
    const LiveMeasurement& worst = *channel.worst;
    if (worst.judgement.verdict != Verdict::pass) {
        text += fmt::format(" Worst at {} (pass {}): {}.", TimeElement(worst.result.began), worst.result.pass,
                            Escape(worst.judgement.reason));
    }
    return text + "</p>\n";
}

}  // namespace

std::string LiveChannelPage(const LiveState& state, int32_t number)
{
    const auto channel =
        std::ranges::find_if(state.channels, [&](const LiveChannel& known) { return known.planned.number == number; });
    if (channel == state.channels.end()) {
        return "";
    }
    const std::string name = NameOf(state, *channel);
    std::string text =
        PageHead(name) + fmt::format("<main id=\"channel\" data-channel=\"{}\">\n<h1>{}</h1>\n", number, name);
    if (channel->latest) {
        text += Summary(*channel) + "<div class=\"plots\">\n";
        for (const HistoryKind& kind : kinds) {
            const Limit* const limit = state.limits ? state.limits->Find(kind.parameter, channel->orderOfQam) : nullptr;
            text += HistoryPlot(*channel->history, kind, limit, channel->worst->result.pass);
        }
        text += "</div>\n" + ReadingsTable(*channel);
    } else {
        text += "<p>The channel has not been measured yet.</p>\n";
    }
    return text + "<p class=\"links\"><a href=\"/\">All channels</a></p>\n</main>\n</body>\n</html>\n";
}

}  // namespace tvn2x
