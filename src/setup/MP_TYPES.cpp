#include "setup/MP_TYPES.h"

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

constexpr std::array<std::wstring_view, 6> levelUnits{L"dBmV", L"dBpW", L"dB\u00B5W", L"dBm", L"dB\u00B5V", L"mV"};

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
    return code >= 0 && code < static_cast<int32_t>(levelUnits.size()) ? levelUnits[static_cast<size_t>(code)]
                                                                       : std::wstring_view();
}

int32_t LevelUnitCode(std::wstring_view name)
{
    for (size_t code = 0; code < levelUnits.size(); ++code) {
        if (levelUnits[code] == name)
            return static_cast<int32_t>(code);
    }
    return -1;
}

}  // namespace tvn2x
