#include "host/plan/NetworkWriter.h"

#include <algorithm>

#include "util/Encoding.h"
#include "util/modFormat.h"

namespace tvn2x {
namespace {

std::wstring Number(double value, const wchar_t* pattern = L"#0.0")
{
    return FormatNumber(value, pattern, false, SystemLocale());
}

/// Lines of a model file.
class Lines
{
public:
    void Comment(const std::wstring& text) { text_ += L"; " + text + L"\r\n"; }
    void Section(const std::wstring& name) { text_ += L"[" + name + L"]\r\n"; }
    void Value(const wchar_t* key, const std::wstring& value) { text_ += key + (L"=" + value) + L"\r\n"; }
    void Blank() { text_ += L"\r\n"; }
    std::string Utf8() const { return ToUtf8(text_); }

private:
    std::wstring text_;
};

/// Gaps begin when a receiver has just locked and grow with the time since tuning, so that a scan meets some of them
/// whatever its pace.
std::wstring Outages()
{
    std::wstring text;
    for (double at = 0.6; at < 3600;) {
        const double gap = std::max(0.4, 0.3 * at);
        text += (text.empty() ? L"TS " : L", TS ") + Number(at) + L" " + Number(0.4 * gap);
        at += gap;
    }
    return text;
}

void WriteChannel(const NetworkChannel& channel, size_t number, Lines& lines)
{
    const std::wstring section = L"Channel " + std::to_wstring(number);
    lines.Blank();
    lines.Comment(channel.label + (channel.fault.empty() ? L"" : L": " + channel.fault));
    if (channel.isMissing) {
        lines.Comment(L"[" + section + L"] would be " + Number(channel.frequency, L"") + L" MHz");
        return;
    }
    lines.Section(section);
    lines.Value(L"Frequency (MHz)", Number(channel.frequency, L""));
    lines.Value(L"Symbol Rate (MSymb/s)", Number(channel.symbolRate, L""));
    lines.Value(L"Order of QAM", std::to_wstring(channel.orderOfQam));
    lines.Value(L"Level (dBuV)", Number(channel.level));
    lines.Value(L"C/I (dB)", Number(channel.carrierToInterference));
    lines.Value(L"Carrier Suppression (dB)", Number(channel.carrierSuppression));
    lines.Value(L"Phase Jitter (deg)", Number(channel.phaseJitter, L"#0.00"));
    lines.Value(L"I/Q Imbalance (%)", Number(channel.iqImbalance, L"#0.00"));
    lines.Value(L"Quadrature Error (deg)", Number(channel.quadratureError, L"#0.00"));
    lines.Value(L"Frequency Offset (Hz)", Number(channel.frequencyOffset, L"#0"));
    lines.Value(L"Symbol Rate Offset (ppm)", Number(channel.symbolRateOffset));
    if (channel.echo) {
        lines.Value(L"Echo (dB)", Number(channel.echo->ratio));
        lines.Value(L"Echo Length (m)", Number(channel.echo->length, L"#0"));
    }
    if (channel.dropsOut) {
        lines.Value(L"Outages", Outages());
    }
}

}  // namespace

std::string WriteNetworkModel(const NetworkDraft& network, const std::wstring& planName)
{
    constexpr uint64_t seeds = 2147483648;
    Lines lines;
    lines.Comment(L"A network that the plan " + planName + L" could belong to, seed " + std::to_wstring(network.seed));
    lines.Section(L"Network");
    lines.Value(L"Noise Figure (dB)", Number(network.noiseFigure));
    lines.Value(L"Tilt (dB)", Number(network.tilt));
    lines.Value(L"Head-end MER (dB)", Number(network.headEndMer));
    lines.Value(L"Seed", std::to_wstring(network.seed % seeds));
    size_t number = 0;
    for (const NetworkChannel& channel : network.channels) {
        WriteChannel(channel, ++number, lines);
    }
    return lines.Utf8();
}

}  // namespace tvn2x
