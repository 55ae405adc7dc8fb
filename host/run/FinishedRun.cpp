#include "host/run/FinishedRun.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cwchar>
#include <map>
#include <numeric>
#include <set>

#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/run/UserNumber.h"
#include "util/LocalTime.h"
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

/// Those of which anything was measured, and the first.
std::set<int32_t> BegunPasses(const FinishedRun& run)
{
    std::set<int32_t> begun{1};
    for (const ChannelResult& channel : run.channels) {
        if (channel.outcome != ChannelOutcome::unmeasured) {
            begun.insert(channel.pass);
        }
    }
    return begun;
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

ChannelOutcome OutcomeOf(std::wstring_view status, const std::vector<Reading>& readings)
{
    if (status != L"Done") {
        return ChannelOutcome::error;
    }
    const bool isLocked = std::ranges::all_of(ReadingKinds(), [&](const ReadingKind& kind) {
        const auto lock = std::ranges::find(readings, kind.parameter, &Reading::parameter);
        return !kind.isLock || (lock != readings.end() && lock->text == L"OK");
    });
    return isLocked ? ChannelOutcome::synchronised : ChannelOutcome::notSynchronised;
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
    const bool isFrequency = label.empty() || label == fmt::format(L"{:g} MHz", frequency);
    return isFrequency ? MegahertzText(frequency) : label + L" " + MegahertzText(frequency);
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

size_t FinishedRun::SetupOf(int32_t channel) const
{
    const auto next = std::ranges::upper_bound(setups, channel, {}, &RunSetup::firstChannel);
    return static_cast<size_t>(next - setups.begin()) - 1;
}

std::set<int32_t> FinishedRun::OrdersOfQam() const
{
    std::set<int32_t> orders;
    for (const ChannelResult& channel : channels) {
        orders.insert(channel.orderOfQam);
    }
    return orders;
}

bool FinishedRun::MixesOrders() const
{
    return std::ranges::any_of(setups, [this](const RunSetup& setup) {
        return setup.settings.orderOfQam != setups.front().settings.orderOfQam;
    });
}

std::wstring FinishedRun::NameOf(const ChannelResult& channel) const
{
    return channel.Name() + (MixesOrders() ? fmt::format(L" {}-QAM", channel.orderOfQam) : L"");
}

void FinishedRun::Complete()
{
    const std::set<int32_t> begun = BegunPasses(*this);
    std::set<std::pair<int32_t, int32_t>> places;
    for (const ChannelResult& channel : channels) {
        if (channel.outcome != ChannelOutcome::unmeasured) {
            places.emplace(channel.pass, channel.number);
        }
    }
    std::erase_if(channels, [&](const ChannelResult& channel) {
        return channel.outcome == ChannelOutcome::unmeasured &&
               (!begun.contains(channel.pass) || !places.emplace(channel.pass, channel.number).second);
    });
    for (const int32_t pass : begun) {
        for (const PlannedChannel& planned : selection) {
            if (!places.contains({pass, planned.number})) {
                channels.push_back({.pass = pass,
                                    .number = planned.number,
                                    .label = planned.label,
                                    .frequency = planned.frequency,
                                    .symbolRate = planned.symbolRate,
                                    .orderOfQam = setups[SetupOf(planned.number)].settings.orderOfQam,
                                    .status = {},
                                    .timeStamp = {},
                                    .began = {},
                                    .readings = {}});
            }
        }
    }
    std::ranges::stable_sort(channels, {},
                             [](const ChannelResult& channel) { return std::pair(channel.pass, channel.number); });
}

int64_t FinishedRun::Planned() const
{
    const int64_t last = passes == 0 ? *BegunPasses(*this).rbegin() : passes;
    return last * static_cast<int64_t>(selection.size());
}

int64_t FinishedRun::Measured() const
{
    return std::ranges::count_if(
        channels, [](const ChannelResult& channel) { return channel.outcome != ChannelOutcome::unmeasured; });
}

double FinishedRun::Seconds() const
{
    return std::accumulate(channels.begin(), channels.end(), secondsBefore,
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

std::wstring SetupNames(const FinishedRun& run)
{
    std::wstring names;
    for (const RunSetup& setup : run.setups) {
        names += (names.empty() ? L"" : L", ") + setup.FileName();
    }
    return names;
}

std::wstring OriginText(const RunReceiver& receiver)
{
    if (receiver.recordings) {
        return fmt::format(L"Recorded signals: folder {}, {}", receiver.recordings->folder, receiver.recordings->bands);
    }
    if (!receiver.simulation) {
        return {};
    }
    const RunSimulation& simulation = *receiver.simulation;
    if (simulation.model.empty()) {
        return L"Simulated receiver without a network model, which receives noise alone";
    }
    return fmt::format(L"Simulated receiver: network model {}, SHA-256 {}, seed {}",
                       simulation.model.substr(simulation.model.find_last_of(L"\\/") + 1), simulation.sha256,
                       simulation.seed);
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

std::optional<int64_t> MillisecondsOf(const std::wstring& utc)
{
    int year = 0;
    unsigned month = 0, day = 0;
    int hour = 0, minute = 0, second = 0, thousandth = 0;
    const int read = std::swscanf(utc.c_str(), L"%4d-%2u-%2uT%2d:%2d:%2d.%3d", &year, &month, &day, &hour, &minute,
                                  &second, &thousandth);
    if (read < 6) {
        return std::nullopt;
    }
    using namespace std::chrono;
    const sys_days date(std::chrono::year(year) / std::chrono::month(month) / std::chrono::day(day));
    const sys_time<milliseconds> moment =
        date + hours(hour) + minutes(minute) + seconds(second) + milliseconds(thousandth);
    return moment.time_since_epoch().count();
}

std::wstring LocalText(const std::wstring& utc)
{
    const std::optional<int64_t> moment = MillisecondsOf(utc);
    if (!moment) {
        return utc;
    }
    const LocalTime local = LocalTimeOf(*moment / 1000);
    const int ahead = std::abs(local.minutesAhead);
    return fmt::format(L"{:04}-{:02}-{:02} {:02}:{:02}:{:02} {}{:02}:{:02}", local.time.year, local.time.month,
                       local.time.day, local.time.hour, local.time.minute, local.time.second,
                       local.minutesAhead < 0 ? L"-" : L"+", ahead / 60, ahead % 60);
}

}  // namespace tvn2x
