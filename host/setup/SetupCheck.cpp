#include "host/setup/SetupCheck.h"

#include <optional>

#include "host/setup/SetupText.h"
#include "setup/catalogue/Patterns.h"
#include "text/InputError.h"
#include "text/TextInput.h"
#include "util/modFormat.h"
#include "util/modLocaleInfo.h"

namespace tvn2x {

namespace {

const std::wstring setupRemedy = L"Make a setup with: tvnhost import PLAN -o SETUP";

void CheckIdentity(const SetupText& setup, const std::wstring& path, std::wstring_view product)
{
    if (setup.Find("CHANNEL") != nullptr) {
        RaiseInput(path + L" is a channel plan, not a setup. " + setupRemedy);
    }
    const SetupEntry name = setup.Find("Application", "Name");
    if (name.line == 0 || setup.Find("Frequency List") == nullptr) {
        RaiseInput(path + L" is no setup: it lacks " +
                   (name.line == 0 ? L"the product's name in [Application]" : L"the section [Frequency List]") + L". " +
                   setupRemedy);
    }
    if (setup.Wide(name.value) != product) {
        RaiseInput(AtLine(path, name.line) + L"the setup belongs to " + setup.Quoted(name.value) +
                   L", this host opens those of \"" + std::wstring(product) + L"\". " + setupRemedy);
    }
    const SetupEntry model = setup.Find("Hardware", "Model");
    if (model.line != 0 && model.value != "2x") {
        RaiseInput(AtLine(path, model.line) + L"the setup is for receivers of model " + setup.Quoted(model.value) +
                   L", the plug-in measures with model \"2x\". " + setupRemedy);
    }
}

/// A number that the measurement needs, and where it makes sense.
struct Limits
{
    const char* key;
    double lowest;
    double highest;
};

constexpr Limits channelCount{"Count", 1, 1'000'000};
constexpr Limits rowLimits[] = {
    {"Frequency   ", channel_limit::lowestFrequency, channel_limit::highestFrequency},
    {"Symbol Rate ", channel_limit::lowestSymbolRate, channel_limit::highestSymbolRate},
};
constexpr Limits settingLimits[] = {
    {"Order Of QAM", 4, 256},
    {"RollOff Factor", 0, 100},
    {"BER Integration (Samples)", 1, 2147483647},
    {"SAW Filter Bandwidth (MHz)", 0, 255},
    {"Input Impedance (ohm)", 0, 255},
    {"Default Symbol Rate (MSymb/s)", channel_limit::lowestSymbolRate, channel_limit::highestSymbolRate},
    {"Maximum Settling Time (sec)", 1, 300},
};

std::optional<double> ReadNumber(const std::wstring& text)
{
    try {
        return ParseNumber(text, SystemLocale());
    } catch (const RaisedError&) {
        return std::nullopt;
    }
}

/// The entry as a number. Raises where it is none, or outside the limits.
double CheckNumber(const SetupText& setup, const SetupEntry& entry, std::string_view key, const Limits& limits,
                   const std::wstring& path)
{
    const Locale& locale = SystemLocale();
    const std::optional<double> number = ReadNumber(setup.Wide(entry.value));
    if (!number || !(*number >= limits.lowest && *number <= limits.highest)) {
        RaiseInput(AtLine(path, entry.line) + Excerpt(key) + L" is " + Excerpt(entry.value) +
                   L"; it has to be a number from " + FormatNumber(limits.lowest, false, locale) + L" to " +
                   FormatNumber(limits.highest, false, locale) + L". Correct it. " + setupRemedy);
    }
    return *number;
}

int32_t CheckChannels(const SetupText& setup, const std::wstring& path)
{
    const SetupSection& rows = *setup.Find("Frequency List");
    const SetupEntry count = setup.Find("Frequency List", channelCount.key);
    if (count.line == 0) {
        RaiseInput(path + L": \"Count\" is missing in [Frequency List]. " + setupRemedy);
    }
    const auto channels = static_cast<int32_t>(CheckNumber(setup, count, channelCount.key, channelCount, path));
    for (int32_t row = 1; row <= channels; ++row) {
        for (const Limits& limits : rowLimits) {
            const std::string key = RowKey(limits.key, row);
            const SetupEntry entry = rows.Find(key);
            if (entry.line == 0) {
                RaiseInput(AtLine(path, count.line) + L"the list has " + std::to_wstring(channels) +
                           L" channels, but " + Excerpt(key) + L" is missing: the file is cut off or was edited. " +
                           setupRemedy);
            }
            CheckNumber(setup, entry, key, limits, path);
        }
    }
    return channels;
}

/// A setting that is missing has a default.
void CheckSettings(const SetupText& setup, const std::wstring& path)
{
    for (const Limits& limits : settingLimits) {
        const SetupEntry entry = setup.Find("Static Settings", limits.key);
        if (entry.line != 0) {
            CheckNumber(setup, entry, limits.key, limits, path);
        }
    }
}

}  // namespace

int32_t CheckSetupFile(std::string_view content, const std::wstring& path, std::wstring_view product)
{
    if (const auto refused = WhyNoSetupText(content)) {
        RaiseInput((refused->line == 0 ? path + L": " : AtLine(path, refused->line)) + refused->reason + L". " +
                   setupRemedy);
    }
    const SetupText setup(content);
    CheckIdentity(setup, path, product);
    const int32_t channels = CheckChannels(setup, path);
    CheckSettings(setup, path);
    return channels;
}

}  // namespace tvn2x
