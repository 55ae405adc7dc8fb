#include "simulator/model/ModelKeys.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "dvbc/Qam.h"
#include "text/Blanks.h"

namespace tvn2x {
namespace {

using NetworkKey = ModelKey<NetworkSettings>;
using ChannelKey = ModelKey<ChannelModel>;
using Complaint = std::optional<std::wstring>;

const std::array networkKeys{
    NetworkKey{L"Noise Figure (dB)", &NetworkSettings::noiseFigure, 0, 30},
    NetworkKey{L"Tilt (dB)", &NetworkSettings::tilt, 0, 40},
    NetworkKey{L"Tilt Drift (dB)", &NetworkSettings::tiltDrift, 0, 20},
    NetworkKey{L"Drift Period (h)", &NetworkSettings::driftPeriod, 0.01, 168},
    NetworkKey{L"Head-end MER (dB)", &NetworkSettings::headEndMer, 10, 60},
    NetworkKey{L"Implementation Loss (dB)", &NetworkSettings::implementationLoss, 0, 6},
    NetworkKey{L"Velocity Factor", &NetworkSettings::velocityFactor, 0.5, 1},
    NetworkKey{L"Seed", &NetworkSettings::seed, 0, 2147483647},
    NetworkKey{L"Reading Noise", &NetworkSettings::readingNoise, 0, 10},
    NetworkKey{L"Receiver Connected", &NetworkSettings::connected},
    NetworkKey{L"External Reference", &NetworkSettings::referenceFed},
    NetworkKey{L"Swaps SAW Filters", &NetworkSettings::swapsFilters},
    NetworkKey{L"Ignores Missing Modes", &NetworkSettings::ignoresModes},
    NetworkKey{L"Reference Error (ppm)", &NetworkSettings::referenceError, -10, 10},
    NetworkKey{L"Instrument Name", &NetworkSettings::instrumentName},
    NetworkKey{L"Bus Address", &NetworkSettings::busAddress},
    NetworkKey{L"Manufacturer", &NetworkSettings::manufacturer},
    NetworkKey{L"Model", &NetworkSettings::model},
    NetworkKey{L"Hardware", &NetworkSettings::hardware},
    NetworkKey{L"Serial Number", &NetworkSettings::serialNumber},
    NetworkKey{L"Firmware Version", &NetworkSettings::firmwareVersion},
    NetworkKey{L"Installed Options", &NetworkSettings::installedOptions},
};

const std::array channelKeys{
    ChannelKey{L"Frequency (MHz)", &ChannelModel::frequency, 30, 1200},
    ChannelKey{L"Symbol Rate (MSymb/s)", &ChannelModel::symbolRate, 0.5, 7.5},
    ChannelKey{L"Order of QAM", &ChannelModel::order, 4, 256, dvbc::ordersOfQam},
    ChannelKey{L"Level (dBuV)", &ChannelModel::level, 0, 120},
    ChannelKey{L"Roll-off (%)", &ChannelModel::rollOff, 12, 35},
    ChannelKey{L"C/I (dB)", &ChannelModel::carrierToInterference, 0, 80},
    ChannelKey{L"Carrier Suppression (dB)", &ChannelModel::carrierSuppression, 0, 80},
    ChannelKey{L"Phase Jitter (deg)", &ChannelModel::phaseJitter, 0, 20},
    ChannelKey{L"I/Q Imbalance (%)", &ChannelModel::iqImbalance, 0, 50},
    ChannelKey{L"Quadrature Error (deg)", &ChannelModel::quadratureError, -30, 30},
    ChannelKey{L"Echo (dB)", &ChannelModel::echoRatio, 1, 60},
    ChannelKey{L"Echo Length (m)", &ChannelModel::echoLength, 0, 2000},
    ChannelKey{L"Frequency Offset (Hz)", &ChannelModel::frequencyOffset, -500000, 500000},
    ChannelKey{L"Symbol Rate Offset (ppm)", &ChannelModel::symbolRateOffset, -1000, 1000},
    ChannelKey{L"Lock Time Factor", &ChannelModel::lockTimeFactor, 0.01, 100},
    ChannelKey{L"Outages", &ChannelModel::outages},
};

constexpr size_t maxOutages = 100;
constexpr double maxOutageSeconds = 86400;

/// A lock as an outage names it.
struct LockName
{
    LockKind lock;
    std::wstring_view name;
};

constexpr std::array lockNames{LockName{LockKind::rf, L"RF"}, LockName{LockKind::reference, L"reference"},
                               LockName{LockKind::carrier, L"carrier"}, LockName{LockKind::ts, L"TS"}};

/// The part before the separator, which is taken off the text.
std::wstring_view Next(std::wstring_view& text, wchar_t separator)
{
    const size_t end = text.find(separator);
    const std::wstring_view part = text.substr(0, end);
    text = end == text.npos ? std::wstring_view{} : text.substr(end + 1);
    return part;
}

std::optional<double> Number(std::wstring_view text)
{
    std::string narrow;
    for (const wchar_t character : text) {
        narrow += character < 128 ? static_cast<char>(character) : '?';
    }
    double value = 0;
    const char* begin = narrow.data() + (narrow.starts_with('+') && !narrow.starts_with("+-") ? 1 : 0);
    const auto [end, fault] = std::from_chars(begin, narrow.data() + narrow.size(), value);
    if (fault != std::errc() || end != narrow.data() + narrow.size() || !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

std::wstring Text(double value)
{
    std::array<char, 32> digits;
    const auto [end, fault] = std::to_chars(digits.data(), digits.data() + digits.size(), value);
    return {digits.data(), end};
}

std::wstring AllowedNumbers(std::span<const int32_t> allowed, double min, double max)
{
    if (allowed.empty()) {
        return L"from " + Text(min) + L" to " + Text(max);
    }
    std::wstring text = L"out of";
    for (const int32_t value : allowed) {
        text += (value == allowed.front() ? L" " : L", ") + std::to_wstring(value);
    }
    return text;
}

template <class Section>
Complaint StoreNumber(const ModelKey<Section>& key, std::wstring_view text, bool whole, double& value)
{
    const std::optional<double> number = Number(text);
    const std::wstring remedy = std::wstring(L"write a ") + (whole ? L"whole number " : L"number ") +
                                AllowedNumbers(key.allowed, key.min, key.max);
    if (!number) {
        return Quoted(text) + L" is no number; " + remedy + L", with a point as decimal separator";
    }
    const bool inside = *number >= key.min && *number <= key.max;
    const bool listed = key.allowed.empty() || std::ranges::find(key.allowed, *number) != key.allowed.end();
    if (!inside || !listed || (whole && *number != std::floor(*number))) {
        return Text(*number) + L" is out of range; " + remedy;
    }
    value = *number;
    return std::nullopt;
}

Complaint StoreFlag(std::wstring_view text, bool& value)
{
    const std::wstring folded = FoldName(text);
    if (folded == L"yes" || folded == L"true" || folded == L"1") {
        value = true;
    } else if (folded == L"no" || folded == L"false" || folded == L"0") {
        value = false;
    } else {
        return Quoted(text) + L" is neither yes nor no; write Yes or No";
    }
    return std::nullopt;
}

std::optional<Outage> ReadOutage(std::wstring_view text)
{
    std::array<std::wstring_view, 3> words;
    for (std::wstring_view& word : words) {
        text = TrimBlanks(text);
        word = Next(text, L' ');
    }
    const std::wstring name = FoldName(words[0]);
    const auto lock = std::ranges::find_if(lockNames, [&](const LockName& l) { return FoldName(l.name) == name; });
    const std::optional<double> from = Number(words[1]);
    const std::optional<double> duration = Number(words[2]);
    if (!TrimBlanks(text).empty() || lock == lockNames.end() || !from || !duration) {
        return std::nullopt;
    }
    if (*from < 0 || *from > maxOutageSeconds || *duration <= 0 || *duration > maxOutageSeconds) {
        return std::nullopt;
    }
    return Outage{lock->lock, *from, *duration};
}

Complaint StoreOutages(std::wstring_view text, std::vector<Outage>& value)
{
    std::vector<Outage> outages;
    for (std::wstring_view rest = text; !TrimBlanks(rest).empty();) {
        const std::wstring_view part = TrimBlanks(Next(rest, L','));
        const std::optional<Outage> outage = ReadOutage(part);
        if (!outage) {
            return Quoted(part) +
                   L" is no outage; write RF, reference, carrier or TS, the seconds after tuning at which it is lost "
                   L"(0 to 86400) and for how many seconds (above 0), as in \"TS 1.5 0.4, carrier 3 0.5\"";
        }
        outages.push_back(*outage);
        if (outages.size() > maxOutages) {
            return L"these are too many outages; a channel has " + std::to_wstring(maxOutages) + L" at most";
        }
    }
    value = std::move(outages);
    return std::nullopt;
}

std::wstring ShowOutages(const std::vector<Outage>& outages)
{
    std::wstring text;
    for (const Outage& outage : outages) {
        const auto lock = std::ranges::find(lockNames, outage.lock, &LockName::lock);
        text.append(text.empty() ? L"" : L", ").append(lock->name);
        text += L" " + Text(outage.from) + L" " + Text(outage.duration);
    }
    return text;
}

}  // namespace

std::span<const NetworkKey> NetworkKeys()
{
    return networkKeys;
}

std::span<const ChannelKey> ChannelKeys()
{
    return channelKeys;
}

std::wstring FoldName(std::wstring_view name)
{
    std::wstring folded(name);
    for (wchar_t& character : folded) {
        if (character >= L'A' && character <= L'Z') {
            character = static_cast<wchar_t>(character - L'A' + L'a');
        } else if (character == L'\u00B5' || character == L'\u03BC') {
            character = L'u';
        }
    }
    return folded;
}

std::wstring Quoted(std::wstring_view text)
{
    constexpr size_t longest = 60;
    std::wstring shown(text.substr(0, longest));
    std::ranges::replace_if(
        shown, [](wchar_t character) { return character < L' '; }, L'?');
    return L"\"" + shown + (text.size() > longest ? L"..." : L"") + L"\"";
}

template <class Section>
Complaint Store(const ModelKey<Section>& key, Section& section, std::wstring_view text)
{
    struct Visitor
    {
        const ModelKey<Section>& key;
        Section& section;
        std::wstring_view text;

        Complaint operator()(double Section::*member) const { return StoreNumber(key, text, false, section.*member); }
        Complaint operator()(int32_t Section::*member) const
        {
            double value = section.*member;
            Complaint complaint = StoreNumber(key, text, true, value);
            section.*member = static_cast<int32_t>(value);
            return complaint;
        }
        Complaint operator()(bool Section::*member) const { return StoreFlag(text, section.*member); }
        Complaint operator()(std::wstring Section::*member) const
        {
            section.*member = text;
            return std::nullopt;
        }
        Complaint operator()(std::vector<Outage> Section::*member) const { return StoreOutages(text, section.*member); }
    };
    return std::visit(Visitor{key, section, TrimBlanks(text)}, key.member);
}

template <class Section>
std::wstring Show(const ModelKey<Section>& key, const Section& section)
{
    struct Visitor
    {
        const Section& section;

        std::wstring operator()(double Section::*member) const { return Text(section.*member); }
        std::wstring operator()(int32_t Section::*member) const { return std::to_wstring(section.*member); }
        std::wstring operator()(bool Section::*member) const { return section.*member ? L"Yes" : L"No"; }
        std::wstring operator()(std::wstring Section::*member) const { return section.*member; }
        std::wstring operator()(std::vector<Outage> Section::*member) const { return ShowOutages(section.*member); }
    };
    return std::visit(Visitor{section}, key.member);
}

template Complaint Store(const NetworkKey&, NetworkSettings&, std::wstring_view);
template Complaint Store(const ChannelKey&, ChannelModel&, std::wstring_view);
template std::wstring Show(const NetworkKey&, const NetworkSettings&);
template std::wstring Show(const ChannelKey&, const ChannelModel&);

}  // namespace tvn2x
