#include "editor/ValidateChannel.h"

#include <cmath>
#include <string>

#include "setup/catalogue/Patterns.h"
#include "util/modFormat.h"

namespace tvn2x {
namespace {

constexpr double highestFrequency = 1000.0000009;  // a margin of 0.9 Hz, so that 1000 MHz passes however it is reached
constexpr double frequencyStep = 1e-7;
using channel_limit::highestSymbolRate;
using channel_limit::lowestFrequency;
using channel_limit::lowestSymbolRate;
constexpr double symbolRateStep = 0.001;
constexpr double sameValue = 1e-12;
constexpr const wchar_t* title = L"Setup";

/// "" for a value within its limits. Written so that NaN is too low.
std::wstring Fault(const double* value, double lowest, double highest, const wchar_t* name)
{
    if (value != nullptr && !(*value >= lowest)) {
        return std::wstring(name) + L" too low.";
    }
    if (value != nullptr && *value > highest) {
        return std::wstring(name) + L" too high.";
    }
    return {};
}

/// Replaces a value by the one on the raster and tells the user where that makes a difference.
void Snap(double& value, double snapped, const wchar_t* name, const wchar_t* pattern, const wchar_t* unit,
          MessageBoxes& messages, const Locale& locale)
{
    if (std::fabs(value - snapped) <= sameValue) {
        return;
    }
    messages.Show(std::wstring(name) + L" rounded to " + FormatNumber(snapped, pattern, true, locale) + unit, title,
                  MessageIcon::information);
    value = snapped;
}

}  // namespace

int16_t ValidateChannel(double* frequency, double* symbolRate, MessageBoxes& messages, const Locale& locale)
{
    const auto number = [&locale](double value) { return FormatNumber(value, true, locale); };
    const std::wstring frequencyFault = Fault(frequency, lowestFrequency, highestFrequency, L"Frequency");
    const std::wstring symbolRateFault = Fault(symbolRate, lowestSymbolRate, highestSymbolRate, L"Symbol Rate");
    int16_t status = channel_status::valid;
    std::wstring message;
    if (!frequencyFault.empty()) {
        message = frequencyFault + L"\n\nPlease enter a value expressed in MHz between " + number(lowestFrequency) +
                  L" and " + number(highestFrequency) + L", to a resolution of " + number(frequencyStep * 1e6) +
                  L" Hz.";
        status = channel_status::badFrequency;
    }
    if (!symbolRateFault.empty()) {
        if (message.empty()) {
            status = channel_status::badSymbolRate;
        } else {
            message += L"\n\n";
        }
        message += symbolRateFault + L"\n\nPlease enter a value expressed in MSymb/s, between " +
                   number(lowestSymbolRate) + L" and " + number(highestSymbolRate) + L", to a resolution of " +
                   number(symbolRateStep * 1e6) + L" SPS.";
    }
    if (status != channel_status::valid) {
        messages.Show(message, title, MessageIcon::warning);
        return status;
    }

    if (frequency != nullptr) {
        const double steps = std::floor((*frequency - lowestFrequency) / frequencyStep);
        Snap(*frequency, lowestFrequency + frequencyStep * steps, L"Frequency", pattern::frequencyInFiles.data(),
             L" MHz.", messages, locale);
    }
    if (symbolRate != nullptr) {
        const double steps = std::nearbyint((*symbolRate - lowestSymbolRate) / symbolRateStep);
        Snap(*symbolRate, steps * symbolRateStep + lowestSymbolRate, L"Symbol Rate", pattern::symbolRate.data(),
             L" MSymb/s.", messages, locale);
    }
    return status;
}

}  // namespace tvn2x
