#include "setup/MP_TYPES.h"

#include <algorithm>
#include <array>

namespace tvn2x {
namespace {

struct Description
{
    std::wstring_view caption;
    std::wstring_view format;
};

// Index 0 is no parameter. A reading shows what the receiver resolves: tenths of a decibel or of a per cent, hundredths
// of a degree, whole hertz. The bit error rate spans ten decades and keeps its own exponent.
constexpr std::array<Description, MP_LAST + 1> descriptions{{
    {L"", L""},
    {L"Input Route", L""},
    {L"SAW Filter Bandwidth (MHz)", L""},
    {L"Order of QAM", L""},
    {L"Rolloff Factor", L""},
    {L"Level Unit", L""},
    {L"10 MHz Reference", L""},
    {L"BER Integration (Samples)", L""},
    {L"Maximum Settling Time (sec)", L""},
    {L"X Axis is Frequency", L""},
    {L"User Field", L""},
    {L"Center Frequency (MHz)", L""},
    {L"Symbol Rate (MSymb/s)", L""},
    {L"Status", L""},
    {L"Time Stamp", L""},
    {L"RF Level", L"0.0"},
    {L"BER before RS", L""},
    {L"Frequency Offset (Hz)", L"#0"},
    {L"10 MHz Ref Sync", L""},
    {L"Symbol Rate/Carrier Sync", L""},
    {L"Frame Sync", L""},
    {L"I/Q Imbalance (%)", L"0.0"},
    {L"I/Q Phase (\u00B0)", L"0.00"},
    {L"Carrier Suppression (dB)", L"0.0"},
    {L"Phase Jitter (\u00B0 RMS)", L"0.00"},
    {L"C/I (dB)", L"0.0"},
    {L"S/N (dB)", L"0.0"},
    {L"MER (dB RMS)", L"0.0"},
    {L"MER (% RMS)", L"0.0"},
    {L"Sync Errors (%)", L"0.0"},
    {L"Data Errors (%)", L"0.0"},
}};

struct LevelUnit
{
    std::wstring_view name;
    int32_t significantDigits = 0;
};

// A decibel is a logarithm: its tenths mean the same at every level. A voltage spans decades (33 dBµV are 0.04467 mV).
constexpr std::array<LevelUnit, 6> levelUnits{
    {{L"dBmV"}, {L"dBpW"}, {L"dB\u00B5W"}, {L"dBm"}, {L"dB\u00B5V"}, {L"mV", 4}}};

const Description& Describe(int32_t parameter)
{
    return descriptions[parameter >= MP_FIRST && parameter <= MP_LAST ? static_cast<size_t>(parameter) : 0];
}

}  // namespace

std::wstring_view DefaultCaption(int32_t parameter)
{
    return Describe(parameter).caption;
}

std::wstring_view DisplayFormat(int32_t parameter)
{
    return Describe(parameter).format;
}

std::wstring_view LevelUnitName(int32_t code)
{
    return code >= 0 && code < static_cast<int32_t>(levelUnits.size()) ? levelUnits[static_cast<size_t>(code)].name
                                                                       : std::wstring_view();
}

int32_t LevelUnitCode(std::wstring_view name)
{
    const auto unit = std::ranges::find(levelUnits, name, &LevelUnit::name);
    return unit == levelUnits.end() ? -1 : static_cast<int32_t>(unit - levelUnits.begin());
}

int32_t SignificantLevelDigits(std::wstring_view name)
{
    const int32_t code = LevelUnitCode(name);
    return code < 0 ? 0 : levelUnits[static_cast<size_t>(code)].significantDigits;
}

}  // namespace tvn2x
