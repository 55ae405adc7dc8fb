#include "host/run/ReadingKind.h"

#include <algorithm>
#include <cmath>

#include "text/TextInput.h"

namespace tvn2x {

namespace {

constexpr ReadingKind kinds[] = {
    {.parameter = parameter::level, .name = "rflev", .title = "RF level", .unit = "dBµV"},
    {.parameter = parameter::ber, .name = "ber", .title = "BER before RS", .unit = "", .isRatio = true},
    {.parameter = parameter::frequencyOffset, .name = "freqoff", .title = "frequency offset", .unit = "Hz"},
    {.parameter = parameter::reference, .name = "ref", .title = "10 MHz reference", .unit = "", .isLock = true},
    {.parameter = parameter::sync, .name = "sync", .title = "symbol rate and carrier", .unit = "", .isLock = true},
    {.parameter = parameter::data, .name = "data", .title = "frame", .unit = "", .isLock = true},
    {.parameter = parameter::iqImbalance, .name = "iqimbal", .title = "I/Q imbalance", .unit = "%"},
    {.parameter = parameter::iqPhase, .name = "iqphase", .title = "I/Q phase", .unit = "°"},
    {.parameter = parameter::carrierSuppression, .name = "cs", .title = "carrier suppression", .unit = "dB"},
    {.parameter = parameter::phaseJitter, .name = "phasjit", .title = "phase jitter", .unit = "°"},
    {.parameter = parameter::carrierToInterference, .name = "ci", .title = "C/I", .unit = "dB"},
    {.parameter = parameter::signalToNoise, .name = "sn", .title = "S/N", .unit = "dB"},
    {.parameter = parameter::mer, .name = "mer", .title = "MER", .unit = "dB"},
    {.parameter = parameter::merPercent, .name = "merpct", .title = "MER", .unit = "%"},
    {.parameter = parameter::syncErrors, .name = "sy", .title = "sync errors", .unit = "%"},
    {.parameter = parameter::dataErrors, .name = "de", .title = "data errors", .unit = "%"},
    {.parameter = parameter::levelStep, .name = "step", .title = "level step", .unit = "dB"},
};

}  // namespace

std::span<const ReadingKind> ReadingKinds()
{
    return kinds;
}

const ReadingKind* FindReadingKind(int32_t parameter)
{
    const auto found = std::ranges::find(kinds, parameter, &ReadingKind::parameter);
    return found == std::end(kinds) ? nullptr : found;
}

const ReadingKind* FindReadingKind(std::string_view name)
{
    const auto found =
        std::ranges::find_if(kinds, [&](const ReadingKind& kind) { return EqualIgnoringCase(kind.name, name); });
    return found == std::end(kinds) ? nullptr : found;
}

std::optional<double> LevelInDecibelMicrovolt(double level, std::string_view unit)
{
    constexpr struct
    {
        std::string_view unit;
        double atZero;
    } units[] = {{"dBµV", 0}, {"dBmV", 60}, {"dBm", 108.75}, {"dBpW", 18.75}, {"dBµW", 78.75}};
    if (unit == "mV") {
        return level > 0 ? std::optional(60 + 20 * std::log10(level)) : std::nullopt;
    }
    const auto found = std::ranges::find_if(units, [&](const auto& known) { return known.unit == unit; });
    return found == std::end(units) ? std::nullopt : std::optional(level + found->atZero);
}

}  // namespace tvn2x
