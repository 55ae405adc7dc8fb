#include "host/report/HtmlPlots.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <tuple>

#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/judge/SignalAnalysis.h"
#include "host/judge/VerdictText.h"
#include "host/report/Chart.h"
#include "host/report/Markup.h"
#include "host/run/UserNumber.h"
#include "host/terminal/Words.h"

namespace tvn2x {
namespace {

constexpr double halfChannel = 4;  // MHz

ChartAxis FrequencyAxis(const std::vector<ReportRow>& rows)
{
    return {.caption = L"Centre frequency (MHz)",
            .low = rows.front().channel.frequency - 2 * halfChannel,
            .high = rows.back().channel.frequency + 2 * halfChannel};
}

/// A part of the frequency axis whose channels have one limit, or none.
struct Stretch
{
    double from = 0;
    double to = 0;
    const Limit* limit = nullptr;
};

/// From end to end of the axis: each order of QAM has limits of its own.
std::vector<Stretch> Stretches(const std::vector<ReportRow>& rows, int32_t parameter, const Limits* limits)
{
    const ChartAxis axis = FrequencyAxis(rows);
    std::vector<Stretch> stretches;
    double before = axis.low;
    for (const ReportRow& row : rows) {
        const double frequency = row.channel.frequency;
        const Limit* const limit = limits ? limits->Find(parameter, row.channel.orderOfQam) : nullptr;
        if (stretches.empty()) {
            stretches.push_back({axis.low, axis.high, limit});
        } else if (stretches.back().limit != limit) {
            stretches.back().to = (before + frequency) / 2;
            stretches.push_back({stretches.back().to, axis.high, limit});
        }
        before = frequency;
    }
    return stretches;
}

std::vector<double> Bounds(const std::vector<Stretch>& stretches)
{
    std::vector<double> bounds;
    for (const auto bound : {&Limit::failBelow, &Limit::warnBelow, &Limit::warnAbove, &Limit::failAbove}) {
        for (const Stretch& stretch : stretches) {
            if (stretch.limit && stretch.limit->*bound) {
                bounds.push_back(*(stretch.limit->*bound));
            }
        }
    }
    return bounds;
}

/// `sign` is -1 for the limits below 0 of what is judged without its sign.
void DrawLimits(Chart& chart, const std::vector<Stretch>& stretches, double sign = 1)
{
    for (const auto bound : {&Limit::warnBelow, &Limit::warnAbove, &Limit::failBelow, &Limit::failAbove}) {
        const bool isFailure = bound == &Limit::failBelow || bound == &Limit::failAbove;
        for (const Stretch& stretch : stretches) {
            if (stretch.limit && stretch.limit->*bound) {
                chart.LimitLine(stretch.from, stretch.to, sign * *(stretch.limit->*bound), isFailure);
            }
        }
    }
}

std::wstring LabelOf(const ChannelResult& channel)
{
    return channel.label.empty() ? MegahertzText(channel.frequency) : channel.label;
}

/// How a reading is marked. What a channel without its locks reads is never shown as good.
Verdict VerdictOf(const ReportRow& row, int32_t parameter)
{
    if (row.channel.outcome != ChannelOutcome::synchronised) {
        return row.judgement.verdict;
    }
    const Finding* finding = row.judgement.Find(parameter);
    return finding ? finding->verdict : Verdict::pass;
}

std::wstring SignedTenths(double number)
{
    return WithUserMark(fmt::format(L"{:+.1f}", number));
}

std::wstring Hint(const ReportRow& row, int32_t parameter)
{
    return row.channel.Name() + L": " + ReadingText(*row.channel.Find(parameter));
}

/// The value in the unit of the limits.
std::optional<double> Plotted(const ChannelResult& channel, int32_t parameter)
{
    if (parameter == MP_RFLEV) {
        return LevelOf(channel);
    }
    const Reading* reading = channel.Find(parameter);
    return reading ? reading->value : std::nullopt;
}

bool IsMeasured(const std::vector<ReportRow>& rows, int32_t parameter)
{
    return std::ranges::any_of(rows, [&](const ReportRow& row) { return Plotted(row.channel, parameter).has_value(); });
}

/// An axis that holds all values and bounds.
ChartAxis ValueAxis(const std::vector<ReportRow>& rows, int32_t parameter, const std::vector<Stretch>& stretches,
                    std::wstring caption, bool isLogarithmic)
{
    constexpr double roomForArrow = 3;
    std::vector<double> values = Bounds(stretches);
    for (const ReportRow& row : rows) {
        const auto value = Plotted(row.channel, parameter);
        if (value && (!isLogarithmic || *value > 0)) {
            const bool isBelow = row.channel.Find(parameter)->bound == Bound::below;
            values.push_back(isLogarithmic && isBelow ? *value / roomForArrow : *value);
        }
    }
    constexpr double lowestRatio = 1e-9;
    const auto [low, high] = std::ranges::minmax(values.empty() ? std::vector<double>{lowestRatio, 1} : values);
    ChartAxis axis{std::move(caption), low, high, isLogarithmic};
    constexpr int ticks = 5;
    axis.Round(ticks);
    return axis;
}

void DrawPoints(Chart& chart, const std::vector<ReportRow>& rows, int32_t parameter)
{
    for (const ReportRow& row : rows) {
        const ChannelResult& channel = row.channel;
        const auto value = Plotted(channel, parameter);
        if (row.isAwaited) {
            continue;
        }
        if (!value) {
            chart.Missing(channel.frequency, LabelOf(channel));
            continue;
        }
        const Verdict verdict = VerdictOf(row, parameter);
        chart.Point(channel.frequency, *value, verdict, channel.Find(parameter)->bound, Hint(row, parameter),
                    verdict == Verdict::pass ? L"" : LabelOf(channel));
    }
}

/// A limit and the orders of QAM that it holds for: "64/256".
using HeldLimit = std::pair<const Limit*, std::wstring>;

/// Each limit of the rows' orders of QAM once; null where an order has none.
std::vector<HeldLimit> HeldLimits(const std::vector<ReportRow>& rows, int32_t parameter, const Limits* limits)
{
    std::set<int32_t> orders;
    for (const ReportRow& row : rows) {
        orders.insert(row.channel.orderOfQam);
    }
    std::vector<HeldLimit> held;
    for (const int32_t order : orders) {
        const Limit* const limit = limits ? limits->Find(parameter, order) : nullptr;
        const auto same = std::ranges::find_if(held, [&](const HeldLimit& known) {
            return known.first == limit || (known.first && limit && *known.first == *limit);
        });
        if (same == held.end()) {
            held.emplace_back(limit, std::to_wstring(order));
        } else {
            same->second += L"/" + std::to_wstring(order);
        }
    }
    return held;
}

/// "Limit (solid line): at least 26 dB (64-QAM), at least 32 dB (256-QAM)."
std::string LimitsText(const std::vector<HeldLimit>& held, const wchar_t* unit)
{
    const auto range = [&](const std::optional<double>& low, const std::optional<double>& high) {
        if (low && high) {
            return NumberText(*low) + L" to " + NumberText(*high) + unit;
        }
        return low ? L"at least " + NumberText(*low) + unit : L"at most " + NumberText(*high) + unit;
    };
    std::wstring text;
    for (const auto& [what, below, above] : {std::tuple(L" Limit (solid line): ", &Limit::failBelow, &Limit::failAbove),
                                             {L" Warning (dashed line): ", &Limit::warnBelow, &Limit::warnAbove}}) {
        std::wstring ranges;
        for (const auto& [limit, orders] : held) {
            if (limit && (limit->*below || limit->*above)) {
                ranges += (ranges.empty() ? what : L", ") + range(limit->*below, limit->*above) +
                          (held.size() > 1 ? L" (" + orders + L"-QAM)" : L"");
            }
        }
        text += ranges.empty() ? L"" : ranges + L".";
    }
    return Escape(text);
}

/// The colours of the impairments, as the style sheet has them by name.
struct ImpairmentStyle
{
    const char* name;
    const char* colour;
};
constexpr ImpairmentStyle impairmentStyles[impairments] = {
    {"noise", "#56B4E9"},     {"interference", "#D55E00"}, {"jitter", "#E69F00"}, {"suppression", "#009E73"},
    {"imbalance", "#F0E442"}, {"quadrature", "#CC79A7"},   {"other", "#999999"}};

/// A channel's name in a column of a picture: of a long label the front, and the frequency whole.
std::wstring PictureName(const ChannelResult& channel, int32_t columns)
{
    std::wstring name = channel.Name();
    if (DisplayWidth(name) <= columns) {
        return name;
    }
    const std::wstring frequency = L" " + ChannelName(L"", channel.frequency);
    return Shortened(channel.label, columns - DisplayWidth(frequency)) + frequency;
}

std::string BudgetRow(const ChannelResult& channel, const ErrorBudget& budget, double top)
{
    constexpr double barLeft = 210, barWidth = 320, barHeight = 15, least = 28;
    constexpr int32_t nameColumns = 24;
    std::string text = fmt::format(R"(<text x="0" y="{0}" fill="currentColor">{1}</text>)"
                                   R"(<text x="{2}" y="{0}" text-anchor="end" fill="currentColor">{3} dB</text>)",
                                   top + 12, Escape(PictureName(channel, nameColumns)), barLeft - 8,
                                   Escape(WithUserMark(fmt::format(L"{:.1f}", budget.mer))));
    double from = barLeft;
    for (size_t i = 0; i < impairments; ++i) {
        const double width = budget.share[i] * barWidth;
        const int percent = static_cast<int>(std::lround(budget.share[i] * 100));
        text += fmt::format(
            R"(<rect class="{}" x="{:.1f}" y="{}" width="{:.1f}" height="{}" fill="{}" stroke="#ffffff" stroke-width="0.7">)"
            R"(<title>{}: {} %</title></rect>)",
            impairmentStyles[i].name, from, top, width, barHeight, impairmentStyles[i].colour,
            ImpairmentName(static_cast<Impairment>(i)), percent);
        if (width >= least) {
            text +=
                fmt::format(R"(<text x="{:.1f}" y="{}" text-anchor="middle" font-size="10" fill="#000000">{} %</text>)",
                            from + width / 2, top + 11.5, percent);
        }
        from += width;
    }
    const Impairment largest = budget.Largest();
    return text + fmt::format(R"(<text x="{}" y="{}" fill="currentColor">mostly {}</text>)"
                              "\n",
                              barLeft + barWidth + 8, top + 12,
                              largest == Impairment::other ? "other causes" : ImpairmentName(largest));
}

std::string BudgetLegend()
{
    std::string text;
    double at = 0;
    for (size_t i = 0; i < impairments; ++i) {
        const std::string name = ImpairmentName(static_cast<Impairment>(i));
        text += fmt::format(R"(<rect class="{}" x="{:.1f}" y="26" width="11" height="11" fill="{}"/>)"
                            R"(<text x="{:.1f}" y="35.5" fill="currentColor">{}</text>)",
                            impairmentStyles[i].name, at, impairmentStyles[i].colour, at + 15, name);
        at += 34 + 6.1 * static_cast<double>(name.size());
    }
    return text + "\n";
}

}  // namespace

ReportPlot LevelPlot(const std::vector<ReportRow>& rows, const Limits* limits)
{
    if (!IsMeasured(rows, MP_RFLEV)) {
        return {};
    }
    std::vector<const ChannelResult*> channels;
    channels.reserve(rows.size());
    for (const ReportRow& row : rows) {
        channels.push_back(&row.channel);
    }
    const auto tilt = FitTilt(channels);
    std::string caption = "RF level in dBµV.";
    const std::vector<Stretch> stretches = Stretches(rows, MP_RFLEV, limits);
    Chart chart(L"RF level", L"RF level of each channel over its centre frequency", FrequencyAxis(rows),
                ValueAxis(rows, MP_RFLEV, stretches, L"RF level (dBµV)", false));
    DrawLimits(chart, stretches);
    if (tilt) {
        constexpr int pieces = 40;
        std::vector<std::pair<double, double>> curve;
        for (int i = 0; i <= pieces; ++i) {
            const double frequency =
                tilt->lowestFrequency + i * (tilt->highestFrequency - tilt->lowestFrequency) / pieces;
            curve.emplace_back(frequency, tilt->At(frequency));
        }
        chart.Curve(curve);
        caption += Escape(fmt::format(
            L" Tilt (dotted line, fitted over the square root of the frequency): {} dB from {} to {}; the levels "
            L"spread {} dB round it.",
            SignedTenths(tilt->Tilt()), WithUserMark(fmt::format(L"{:g}", tilt->lowestFrequency)),
            MegahertzText(tilt->highestFrequency), WithUserMark(fmt::format(L"{:.1f}", tilt->spread))));
    }
    DrawPoints(chart, rows, MP_RFLEV);
    return {chart.Svg(), caption + LimitsText(HeldLimits(rows, MP_RFLEV, limits), L" dBµV")};
}

ReportPlot StepPlot(const std::vector<ReportRow>& rows, const Limits* limits)
{
    const ReportRow* largest = nullptr;
    for (const ReportRow& row : rows) {
        if (row.step && (!largest || std::abs(*row.step) > std::abs(*largest->step))) {
            largest = &row;
        }
    }
    if (!largest) {
        return {};
    }
    double reach = std::abs(*largest->step);
    const std::vector<Stretch> stretches = Stretches(rows, levelStep, limits);
    for (const double bound : Bounds(stretches)) {
        reach = std::max(reach, bound);
    }
    ChartAxis axis{L"Step (dB)", -reach, reach};
    constexpr int ticks = 5;
    axis.Round(ticks);
    Chart chart(L"Level steps between adjacent channels", L"Level of each channel above that of its lower neighbour",
                FrequencyAxis(rows), axis);
    for (const double sign : {1.0, -1.0}) {
        DrawLimits(chart, stretches, sign);
    }
    for (const ReportRow& row : rows) {
        if (row.step) {
            chart.Bar(row.channel.frequency, halfChannel, *row.step, VerdictOf(row, levelStep),
                      fmt::format(L"{}: {} dB", row.channel.Name(), SignedTenths(*row.step)));
        }
    }
    return {chart.Svg(),
            Escape(fmt::format(L"Level of each channel above its lower neighbour; the largest step is {} dB at {}.",
                               SignedTenths(*largest->step), largest->channel.Name())) +
                LimitsText(HeldLimits(rows, levelStep, limits), L" dB")};
}

ReportPlot MerPlot(const std::vector<ReportRow>& rows, const Limits* limits)
{
    if (!IsMeasured(rows, MP_MER)) {
        return {};
    }
    const std::vector<Stretch> stretches = Stretches(rows, MP_MER, limits);
    Chart chart(L"Modulation error ratio", L"MER of each channel over its centre frequency", FrequencyAxis(rows),
                ValueAxis(rows, MP_MER, stretches, L"MER (dB)", false));
    DrawLimits(chart, stretches);
    DrawPoints(chart, rows, MP_MER);
    return {chart.Svg(), "MER in dB; a cross on the axis is a channel without a value." +
                             LimitsText(HeldLimits(rows, MP_MER, limits), L" dB")};
}

ReportPlot BerPlot(const std::vector<ReportRow>& rows, const Limits* limits)
{
    if (!IsMeasured(rows, MP_BER)) {
        return {};
    }
    const std::vector<Stretch> stretches = Stretches(rows, MP_BER, limits);
    Chart chart(L"Bit error ratio before Reed-Solomon", L"Bit error ratio of each channel, on a logarithmic axis",
                FrequencyAxis(rows), ValueAxis(rows, MP_BER, stretches, L"BER before RS", true));
    DrawLimits(chart, stretches);
    DrawPoints(chart, rows, MP_BER);
    return {chart.Svg(), "BER before Reed-Solomon; an arrow down is a count without errors: the ratio is below." +
                             LimitsText(HeldLimits(rows, MP_BER, limits), L"")};
}

ReportPlot BudgetPlot(const std::vector<ReportRow>& rows)
{
    constexpr size_t most = 12;
    std::vector<std::pair<ErrorBudget, const ChannelResult*>> budgets;
    for (const ReportRow& row : rows) {
        if (const auto budget = BudgetOf(row.channel)) {
            budgets.emplace_back(*budget, &row.channel);
        }
    }
    if (budgets.empty()) {
        return {};
    }
    std::ranges::stable_sort(budgets, {}, [](const auto& entry) { return entry.first.mer; });
    budgets.resize(std::min(budgets.size(), most), {ErrorBudget{}, nullptr});
    constexpr double rowHeight = 21, firstRow = 48;
    const double height = firstRow + rowHeight * static_cast<double>(budgets.size());
    std::string svg = fmt::format(
        R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 720 {0}" width="720" height="{0}" role="img" )"
        R"(font-family="sans-serif" font-size="11"><title>Error budget</title>)"
        R"(<desc>Shares of the error power by its causes, of the channels with the lowest MER</desc>)"
        "\n"
        R"(<text x="0" y="14" font-size="13" font-weight="bold" fill="currentColor">What eats the MER</text>)"
        "\n",
        height);
    svg += BudgetLegend();
    double top = firstRow;
    for (const auto& [budget, channel] : budgets) {
        svg += BudgetRow(*channel, budget, top);
        top += rowHeight;
    }
    return {svg + "</svg>\n",
            fmt::format("Error power of the {} with the lowest MER, by cause, reckoned from the readings. \"other\" is "
                        "what no reading accounts for: the head end, or an echo beyond the equaliser.",
                        budgets.size() == 1 ? "channel" : fmt::format("{} channels", budgets.size()))};
}

}  // namespace tvn2x
