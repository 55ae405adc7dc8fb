#include "host/run/FinishedRun.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <map>
#include <numeric>

#include "fmt/format.h"
#include "fmt/xchar.h"
#include "util/RaisedError.h"

namespace tvn2x {
namespace {

/// The number of a bound such as "<1.7E-8": the receiver tells it in this text alone, so that nothing else has it.
std::optional<double> BoundIn(std::wstring_view text, const Locale& locale)
{
    if (!text.starts_with(L'<') && !text.starts_with(L'>')) {
        return std::nullopt;
    }
    try {
        return ParseNumber(text.substr(1), locale);
    } catch (const RaisedError&) {
        return std::nullopt;
    }
}

double SixDigits(double value)
{
    const std::string digits = fmt::format("{:.6g}", value);
    std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return value;
}

}  // namespace

Reading MakeReading(int32_t parameter, std::wstring_view cell, std::optional<double> measured,
                    std::wstring_view levelUnit, const Locale& locale)
{
    Reading reading{.parameter = parameter, .text = std::wstring(cell)};
    const ReadingKind* kind = FindReadingKind(parameter);
    if (!kind || kind->isLock) {
        return reading;
    }
    reading.unit = parameter == MP_RFLEV ? levelUnit : std::wstring_view(kind->unit);
    if (cell == L"UNDER" || cell.starts_with(L'<')) {
        reading.bound = Bound::below;
    } else if (cell == L"OVER" || cell.starts_with(L'>')) {
        reading.bound = Bound::above;
    }
    if (reading.bound != Bound::exact) {
        reading.value = BoundIn(cell, locale);
    } else if (measured) {
        reading.value = SixDigits(*measured);
    }
    return reading;
}

const Reading* ChannelResult::Find(int32_t parameter) const
{
    const auto found = std::ranges::find(readings, parameter, &Reading::parameter);
    return found == readings.end() ? nullptr : &*found;
}

std::optional<double> ChannelResult::Value(int32_t parameter) const
{
    const Reading* reading = Find(parameter);
    return reading && reading->bound == Bound::exact ? reading->value : std::nullopt;
}

std::wstring ChannelName(const std::wstring& label, double frequency)
{
    const std::wstring megahertz = fmt::format(L"{:g} MHz", frequency);
    return label.empty() || label == megahertz ? megahertz : label + L" " + megahertz;
}

void RunProtocol::Take(const RunProtocol& later)
{
    for (const auto text :
         {&RunProtocol::site, &RunProtocol::outlet, &RunProtocol::by, &RunProtocol::order, &RunProtocol::remark}) {
        if (!(later.*text).empty()) {
            this->*text = later.*text;
        }
    }
}

double FinishedRun::Seconds() const
{
    return std::accumulate(channels.begin(), channels.end(), 0.0,
                           [](double sum, const ChannelResult& channel) { return sum + channel.seconds; });
}

bool FinishedRun::IsOnePass() const
{
    return std::ranges::all_of(Latest(),
                               [this](size_t position) { return channels[position].pass == channels.back().pass; });
}

std::vector<size_t> FinishedRun::Latest() const
{
    std::map<int32_t, size_t> latest;
    for (size_t i = 0; i < channels.size(); ++i) {
        const auto [entry, isNew] = latest.try_emplace(channels[i].number, i);
        if (!isNew && channels[i].outcome != ChannelOutcome::unmeasured) {
            entry->second = i;
        }
    }
    std::vector<size_t> positions;
    std::ranges::transform(latest, std::back_inserter(positions), [](const auto& entry) { return entry.second; });
    return positions;
}

std::wstring UtcText(int64_t millisecondsSince1970)
{
    using namespace std::chrono;
    const sys_time<milliseconds> time{milliseconds(millisecondsSince1970)};
    const auto day = floor<days>(time);
    const year_month_day date(day);
    const hh_mm_ss clock(time - day);
    return fmt::format(L"{:04}-{:02}-{:02}T{:02}:{:02}:{:02}.{:03}Z", static_cast<int>(date.year()),
                       static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()), clock.hours().count(),
                       clock.minutes().count(), clock.seconds().count(), clock.subseconds().count());
}

}  // namespace tvn2x
