#include "setup/catalogue/Parameters.h"

#include <algorithm>
#include <array>

namespace tvn2x {
namespace {

using enum ParameterKind;

// A reading shows what the receiver resolves: tenths of a decibel or of a per cent, hundredths of a degree, whole
// hertz. The bit error rate spans ten decades and keeps its own exponent.
constexpr std::array<Parameter, MP_LAST> parameters{{
    {MP_ZIN, setting, L"Input Route"},
    {MP_SAWBW, setting, L"SAW Filter Bandwidth (MHz)"},
    {MP_ORDEROFQAM, setting, L"Order of QAM"},
    {MP_ROLLOFFFACTOR, setting, L"Rolloff Factor"},
    {MP_LEVELUNIT, setting, L"Level Unit"},
    {MP_REFERENCE, setting, L"10 MHz Reference"},
    {MP_BERSAMPLES, setting, L"BER Integration (Samples)"},
    {MP_MAXSETTLINGTIME, setting, L"Maximum Settling Time (sec)"},
    {MP_XAXIS, setting, L"X Axis is Frequency"},
    {MP_USERFIELD, column, L"User Field", "userfield"},
    {MP_FREQUENCY, column, L"Center Frequency (MHz)", "frequency"},
    {MP_SYMBOLRATE, column, L"Symbol Rate (MSymb/s)", "symbolrate"},
    {MP_STATUS, column, L"Status", "status"},
    {MP_TIMESTAMP, column, L"Time Stamp", "timestamp"},
    {MP_RFLEV, reading, L"RF Level", "rflev", L"RF level", L"dBµV", L"0.0"},
    {MP_BER, ratio, L"BER before RS", "ber", L"BER before RS"},
    {MP_FREQOFF, reading, L"Frequency Offset (Hz)", "freqoff", L"frequency offset", L"Hz", L"#0"},
    {MP_REF, lock, L"10 MHz Ref Sync", "ref", L"10 MHz reference"},
    {MP_SYNC, lock, L"Symbol Rate/Carrier Sync", "sync", L"symbol rate and carrier"},
    {MP_DATA, lock, L"Frame Sync", "data", L"frame"},
    {MP_IQIMBAL, reading, L"I/Q Imbalance (%)", "iqimbal", L"I/Q imbalance", L"%", L"0.0"},
    {MP_IQPHASE, reading, L"I/Q Phase (\u00B0)", "iqphase", L"I/Q phase", L"°", L"0.00"},
    {MP_CS, reading, L"Carrier Suppression (dB)", "cs", L"carrier suppression", L"dB", L"0.0"},
    {MP_PHASJIT, reading, L"Phase Jitter (\u00B0 RMS)", "phasjit", L"phase jitter", L"°", L"0.00"},
    {MP_CI, reading, L"C/I (dB)", "ci", L"C/I", L"dB", L"0.0"},
    {MP_SN, reading, L"S/N (dB)", "sn", L"S/N", L"dB", L"0.0"},
    {MP_MER, reading, L"MER (dB RMS)", "mer", L"MER", L"dB", L"0.0"},
    {MP_MERPCT, reading, L"MER (% RMS)", "merpct", L"MER", L"%", L"0.0"},
    {MP_SY, reading, L"Sync Errors (%)", "sy", L"sync errors", L"%", L"0.0"},
    {MP_DE, reading, L"Data Errors (%)", "de", L"data errors", L"%", L"0.0"},
}};

constexpr bool IsByNumber()
{
    for (size_t i = 0; i < parameters.size(); ++i) {
        if (parameters[i].number != MP_FIRST + static_cast<int32_t>(i)) {
            return false;
        }
    }
    return true;
}
static_assert(IsByNumber());

}  // namespace

std::span<const Parameter> Parameters()
{
    return parameters;
}

const Parameter* FindParameter(int32_t number)
{
    return number >= MP_FIRST && number <= MP_LAST ? &parameters[static_cast<size_t>(number - MP_FIRST)] : nullptr;
}

std::wstring_view DefaultCaption(int32_t parameter)
{
    const Parameter* const found = FindParameter(parameter);
    return found ? found->caption : std::wstring_view();
}

std::wstring_view DisplayFormat(int32_t parameter)
{
    const Parameter* const found = FindParameter(parameter);
    return found ? found->format : std::wstring_view();
}

}  // namespace tvn2x
