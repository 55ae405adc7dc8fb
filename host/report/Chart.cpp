#include "host/report/Chart.h"

#include <algorithm>
#include <cmath>

#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/report/Markup.h"
#include "host/run/UserNumber.h"
#include "host/terminal/Words.h"
#include "util/LocalTime.h"

namespace tvn2x {
namespace {

constexpr double width = 720, height = 250;
constexpr double left = 58, right = 12, top = 30, bottom = 40;

/// Colours that stay apart for every kind of colour vision, by Verdict; the page's style sheet has the same names.
struct VerdictStyle
{
    const char* name;
    const char* colour;
};
constexpr VerdictStyle styles[verdicts] = {
    {"pass", "#0072B2"}, {"warning", "#E69F00"}, {"unmeasured", "#777777"}, {"error", "#CC79A7"}, {"fail", "#D55E00"}};

const VerdictStyle& StyleOf(Verdict verdict)
{
    return styles[static_cast<size_t>(verdict)];
}

double Step(double span, int ticks)
{
    const double rough = span / ticks;
    const double power = std::pow(10, std::floor(std::log10(rough)));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (rough <= factor * power * 1.0001) {
            return factor * power;
        }
    }
    return 10 * power;
}

/// Seconds between the marks of a time axis: what divides minutes, hours or days evenly.
double TimeStep(double span, int ticks)
{
    constexpr double minute = 60, hour = 3600, day = 86400;
    for (const double step : {1.0, 5.0, 15.0, minute, 5 * minute, 15 * minute, hour, 3 * hour, 6 * hour, day, 7 * day,
                              28 * day, 84 * day}) {
        if (span <= step * ticks) {
            return step;
        }
    }
    return 365 * day;
}

/// "13:59", of a span of minutes "13:59:05", of one of days "11-21", of years "2026-11-21"; at midnight the date.
std::string TimeText(double seconds, double span)
{
    constexpr double minutes = 600, days = 259'200, years = 31'536'000;
    const DateTime time = LocalTimeOf(std::llround(seconds)).time;
    if (span > years) {
        return fmt::format("{:04}-{:02}-{:02}", time.year, time.month, time.day);
    }
    if (span > days || (time.hour == 0 && time.minute == 0 && time.second == 0)) {
        return fmt::format("{:02}-{:02}", time.month, time.day);
    }
    return span > minutes ? fmt::format("{:02}:{:02}", time.hour, time.minute)
                          : fmt::format("{:02}:{:02}:{:02}", time.hour, time.minute, time.second);
}

std::string TickText(double value, const ChartAxis& axis)
{
    if (axis.isTime) {
        return TimeText(value, axis.high - axis.low);
    }
    if (!axis.isLogarithmic) {
        return Escape(WithUserMark(fmt::format(L"{:g}", std::abs(value) < 1e-9 ? 0 : value)));
    }
    return fmt::format("10<tspan dy=\"-5\" font-size=\"8\">{}</tspan>", std::lround(std::log10(value)));
}

}  // namespace

void ChartAxis::Round(int ticks)
{
    if (isLogarithmic) {
        low = std::pow(10, std::floor(std::log10(low) + 1e-9));
        high = std::pow(10, std::ceil(std::log10(high) - 1e-9));
        high = std::max(high, low * 10);
        return;
    }
    if (high <= low) {
        low -= 1;
        high += 1;
    }
    const double step = Step(high - low, ticks);
    low = std::floor(low / step + 1e-9) * step;
    high = std::ceil(high / step - 1e-9) * step;
}

std::vector<double> ChartAxis::Ticks(int about) const
{
    std::vector<double> ticks;
    if (isLogarithmic) {
        for (long decade = std::lround(std::log10(low)); decade <= std::lround(std::log10(high)); ++decade) {
            ticks.push_back(std::pow(10, decade));
        }
        return ticks;
    }
    if (isTime) {
        const double step = TimeStep(high - low, about);
        const double ahead = 60.0 * LocalTimeOf(std::llround(low)).minutesAhead;  // marks are at whole local hours
        const double first = std::ceil((low + ahead) / step) * step - ahead;
        const long marks = std::lround(std::floor((high - first) / step));
        for (long mark = 0; mark <= marks; ++mark) {
            ticks.push_back(first + static_cast<double>(mark) * step);
        }
        return ticks;
    }
    const double step = Step(high - low, about);
    const long last = std::lround(std::floor(high / step + 1e-9));
    for (long tick = std::lround(std::ceil(low / step - 1e-9)); tick <= last; ++tick) {
        ticks.push_back(static_cast<double>(tick) * step);
    }
    return ticks;
}

double ChartAxis::Position(double value) const
{
    const double position = isLogarithmic ? std::log10(std::max(value, 1e-300) / low) / std::log10(high / low)
                                          : (value - low) / (high - low);
    return std::clamp(position, 0.0, 1.0);
}

Chart::Chart(std::wstring title, std::wstring description, ChartAxis x, ChartAxis y)
    : title_(std::move(title)), description_(std::move(description)), x_(std::move(x)), y_(std::move(y))
{
}

double Chart::Left(double x) const
{
    return left + x_.Position(x) * (width - left - right);
}

double Chart::Top(double y) const
{
    return height - bottom - y_.Position(y) * (height - top - bottom);
}

void Chart::LimitLine(double from, double to, double y, bool isFailure)
{
    if (y < y_.low || y > y_.high) {
        return;
    }
    body_ += fmt::format(
        R"(<line class="{0}-line" x1="{1:g}" x2="{2:g}" y1="{3:.1f}" y2="{3:.1f}" stroke="{4}" stroke-width="1.5"{5}/>)"
        "\n",
        StyleOf(isFailure ? Verdict::fail : Verdict::warning).name, Left(from), Left(to), Top(y),
        StyleOf(isFailure ? Verdict::fail : Verdict::warning).colour, isFailure ? "" : R"( stroke-dasharray="6 4")");
}

void Chart::Curve(const std::vector<std::pair<double, double>>& points)
{
    std::string path;
    for (const auto& [x, y] : points) {
        path += fmt::format("{}{:.1f},{:.1f}", path.empty() ? "" : " ", Left(x), Top(y));
    }
    body_ += "<polyline class=\"fit\" points=\"" + path +
             "\" fill=\"none\" stroke=\"#009E73\" stroke-width=\"2\" stroke-dasharray=\"2 3\"/>\n";
}

void Chart::Bar(double x, double barWidth, double y, Verdict verdict, std::wstring_view hint)
{
    const double from = Left(x - barWidth / 2);
    const double zero = Top(0);
    body_ += fmt::format(
        R"(<rect class="{}" x="{:.1f}" y="{:.1f}" width="{:.1f}" height="{:.1f}" fill="{}"><title>{}</title></rect>)"
        "\n",
        StyleOf(verdict).name, from, std::min(zero, Top(y)), std::max(1.0, Left(x + barWidth / 2) - from),
        std::max(0.8, std::abs(zero - Top(y))), StyleOf(verdict).colour, Escape(hint));
}

std::string Mark(double x, double y, Verdict verdict, std::wstring_view hint)
{
    const auto& [name, colour] = StyleOf(verdict);
    const std::string title = hint.empty() ? "" : "<title>" + Escape(hint) + "</title>";
    switch (verdict) {
        case Verdict::pass:
            return fmt::format(R"(<circle class="{}" cx="{:.1f}" cy="{:.1f}" r="3.5" fill="{}">{}</circle>)", name, x,
                               y, colour, title);
        case Verdict::warning:
            return fmt::format(
                R"(<polygon class="{}" points="{:.1f},{:.1f} {:.1f},{:.1f} {:.1f},{:.1f}" fill="{}">{}</polygon>)",
                name, x - 5, y + 4, x + 5, y + 4, x, y - 5, colour, title);
        case Verdict::fail:
        case Verdict::error:
            return fmt::format(R"(<rect class="{}" x="{:.1f}" y="{:.1f}" width="8" height="8" fill="{}">{}</rect>)",
                               name, x - 4, y - 4, colour, title);
        case Verdict::notMeasured:
            break;
    }
    return fmt::format(
        R"(<path class="{}-line" d="M{:.1f},{:.1f}l8,8m0,-8l-8,8" stroke="{}" stroke-width="2">{}</path>)", name, x - 4,
        y - 4, colour, title);
}

void Chart::Point(double x, double y, Verdict verdict, Bound bound, std::wstring_view hint, std::wstring_view label)
{
    const double across = Left(x), down = Top(y);
    if (bound == Bound::exact) {
        body_ += Mark(across, down, verdict, hint) + "\n";
    } else {
        const double way = bound == Bound::below ? 1 : -1;
        body_ +=
            fmt::format(R"(<path class="{}-line" d="M{:.1f},{:.1f}h8m-4,0v{}m-3,{}l3,{}l3,{}" fill="none" stroke="{}" )"
                        R"(stroke-width="1.5"><title>{}</title></path>)"
                        "\n",
                        StyleOf(verdict).name, across - 4, down, 9 * way, -3 * way, 3 * way, -3 * way,
                        StyleOf(verdict).colour, Escape(hint));
    }
    if (!label.empty()) {
        Label(across, down, label);
    }
}

void Chart::Missing(double x, std::wstring_view label)
{
    const double across = Left(x), down = height - bottom;
    body_ += Mark(across, down, Verdict::notMeasured, std::wstring(label) + L": no value") + "\n";
    Label(across, down, label);
}

/// Above its mark, or below where there is no room; farther from it where it would cover a label that is there already.
/// Long ones are shortened, and one that finds no place is left out: its mark's hint has it.
void Chart::Label(double x, double y, std::wstring_view text)
{
    constexpr double lineHeight = 12, letter = 6, gap = 3;
    constexpr double above = 7, below = 15;
    constexpr int32_t mostColumns = 16;
    const std::wstring shown = Shortened(text, mostColumns);
    const double half = DisplayWidth(shown) * letter / 2;
    const bool isBelow = y - above < top + lineHeight / 2;
    Place place{.centre = std::clamp(x, left + half, width - right - half),
                .half = half,
                .base = isBelow ? y + below : y - above};
    const auto covers = [&](const Place& other) {
        return std::abs(other.centre - place.centre) < other.half + place.half + gap &&
               std::abs(other.base - place.base) < lineHeight - 1;
    };
    while (std::ranges::any_of(labels_, covers)) {
        place.base += isBelow ? lineHeight : -lineHeight;
        if (place.base < top || place.base > height - bottom) {
            return;
        }
    }
    labels_.push_back(place);
    body_ +=
        fmt::format(R"(<text x="{:.1f}" y="{:.1f}" font-size="10" text-anchor="middle" fill="currentColor">{}</text>)"
                    "\n",
                    place.centre, place.base, Escape(shown));
}

std::string Chart::Axes() const
{
    constexpr int xTicks = 10, yTicks = 5;
    std::string text;
    for (const double tick : y_.Ticks(yTicks)) {
        text += fmt::format(R"(<line class="grid" x1="{0}" x2="{1}" y1="{2:.1f}" y2="{2:.1f}" stroke="#cccccc"/>)"
                            R"(<text x="{3}" y="{4:.1f}" text-anchor="end" fill="currentColor">{5}</text>)"
                            "\n",
                            left, width - right, Top(tick), left - 6, Top(tick) + 4, TickText(tick, y_));
    }
    for (const double tick : x_.Ticks(xTicks)) {
        text += fmt::format(R"(<line class="grid" x1="{0:.1f}" x2="{0:.1f}" y1="{1}" y2="{2}" stroke="#cccccc"/>)"
                            R"(<text x="{0:.1f}" y="{3}" text-anchor="middle" fill="currentColor">{4}</text>)"
                            "\n",
                            Left(tick), height - bottom, height - bottom + 5, height - bottom + 17, TickText(tick, x_));
    }
    text += fmt::format(
        R"(<text x="{}" y="{}" text-anchor="middle" fill="currentColor">{}</text>)"
        R"x(<text transform="translate(13 {}) rotate(-90)" text-anchor="middle" fill="currentColor">{}</text>)x"
        "\n",
        (left + width - right) / 2, height - 6, Escape(x_.caption), (top + height - bottom) / 2, Escape(y_.caption));
    return text;
}

std::string Chart::Svg() const
{
    return fmt::format(
        R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {0} {1}" width="{0}" height="{1}" role="img" )"
        R"(font-family="sans-serif" font-size="11"><title>{2}</title><desc>{3}</desc>)"
        "\n"
        R"(<text x="{4}" y="16" font-size="13" font-weight="bold" fill="currentColor">{2}</text>)"
        "\n{5}{6}</svg>\n",
        width, height, Escape(title_), Escape(description_), left, Axes(), body_);
}

}  // namespace tvn2x
