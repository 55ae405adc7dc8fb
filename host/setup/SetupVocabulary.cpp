#include "host/setup/SetupVocabulary.h"

#include <algorithm>

#include "host/plan/ChannelPlan.h"
#include "text/TextInput.h"

namespace tvn2x {

namespace {

constexpr SetupChoice sources[] = {{0, L"Internal"}, {1, L"External"}};
constexpr SetupChoice orders[] = {{4, L"4"}, {16, L"16"}, {32, L"32"}, {64, L"64"}, {128, L"128"}, {256, L"256"}};
constexpr SetupChoice rollOffs[] = {{12, L"0.12"}, {13, L"0.13"}, {15, L"0.15"}, {18, L"0.18"},
                                    {20, L"0.20"}, {25, L"0.25"}, {30, L"0.30"}};
constexpr SetupChoice filters[] = {{0, L"Off"}, {2, L"2 MHz"}, {6, L"6 MHz"}, {7, L"7 MHz"}, {8, L"8 MHz"}};
constexpr SetupChoice routes[] = {
    {2, L"Receiver"}, {50, L"Receiver (50 ohm)"}, {75, L"Receiver (75 ohm)"}, {4, L"Demod"}, {128, L"IF"}};
constexpr SetupChoice gridAxes[] = {
    {0, L"Frequency list always"}, {1, L"Parameter list always"}, {2, L"Select from view menu"}};
constexpr SetupChoice fileAxes[] = {
    {0, L"Frequency list always"}, {1, L"Parameter list always"}, {2, L"Same as display grid"}};
constexpr SetupChoice modes[] = {{4, L"DVB-C"}};

constexpr double largest = 2147483647;
constexpr double noLimit = -1;
using enum SetupKind;
namespace limit = channel_limit;

constexpr SetupKey keys[] = {
    {"Application", "Name", text},
    {"Application", "Version", text},
    {"Hardware", "Model", text},
    {"Hardware", "Mode", integer, 0, 0, modes, L"4"},
    {"Frequency List", "Count", integer, 1, largest, {}, L"1"},
    {"Static Settings", "Level Unit", text, 0, 0, {}, L"dBmV"},
    {"Static Settings", "10MHz Reference Source", integer, 0, 0, sources, L"0"},
    {"Static Settings", "Order Of QAM", looseNumber, 0, 0, orders, L"64"},
    {"Static Settings", "RollOff Factor", integer, 0, 0, rollOffs, L"15"},
    {"Static Settings", "BER Integration (Samples)", looseNumber, 1, largest, {}, L"100"},
    {"Static Settings", "SAW Filter Bandwidth (MHz)", looseNumber, 0, 0, filters, L"8"},
    {"Static Settings", "Input Impedance (ohm)", looseNumber, 0, 0, routes, L"75"},
    {"Static Settings",
     "Default Symbol Rate (MSymb/s)",
     number,
     limit::lowestSymbolRate,
     limit::highestSymbolRate,
     {},
     L"6.9"},
    {"Static Settings", "Maximum Settling Time (sec)", looseNumber, 1, 300, {}, L"10"},
    {"Static Settings", "Couple Display and Save", word, 0, 0, {}, L"True"},
    {"Parameters", "Count", integer, 0, 32757, {}, L"30"},
    {"Notes", "Template", text},
    {"Notes", "Show Before", integer, noLimit, 1, {}, L"-1"},
    {"Notes", "Show After", integer, noLimit, 1, {}, L"-1"},
    {"X-Axis", "Display Grid", integer, 0, 0, gridAxes, L"2"},
    {"X-Axis", "Result File", integer, 0, 0, fileAxes, L"2"},
    {"Backup", "Product Name", text},
    {"Backup", "App Version", text},
    {"Backup", "Full Path", text},
    {"Backup", "Dirty", word, 0, 0, {}, L"False"},
    {"Backup", "Notes", text},
    {"Backup", "Show After", integer, noLimit, 1, {}, L"-1"},
};

constexpr SetupRows rows[] = {
    {"Frequency List", "Frequency   ", number, true, true, limit::lowestFrequency, limit::highestFrequency},
    {"Frequency List", "User Field  ", text, true, false},
    {"Frequency List", "Symbol Rate ", number, true, true, limit::lowestSymbolRate, limit::highestSymbolRate},
    {"Parameters to Display", "Parameter ", integer, false, true, noLimit, 1},
    {"Parameters to Save", "Parameter ", integer, false, true, noLimit, 1},
    {"Parameters Display Order", "Position ", integer, false, true, noLimit, 32767},
    {"Parameter Captions", "Parameter ", text, false, true},
};

constexpr const char* earlyRows[] = {"Frequency ", "Symbol Rate (MSymb/s) "};

}  // namespace

std::span<const SetupKey> SetupKeys()
{
    return keys;
}

std::span<const SetupRows> SetupRowKeys()
{
    return rows;
}

std::span<const char* const> EarlyRowKeys()
{
    return earlyRows;
}

std::span<const SetupChoice> SetupChoices(std::string_view key)
{
    const auto found = std::ranges::find_if(
        keys, [&](const SetupKey& known) { return !known.choices.empty() && EqualIgnoringCase(known.key, key); });
    return found == std::end(keys) ? std::span<const SetupChoice>() : found->choices;
}

std::wstring SetupChoiceName(std::string_view key, int32_t value)
{
    const auto choices = SetupChoices(key);
    const auto found = std::ranges::find(choices, value, &SetupChoice::value);
    return found == choices.end() ? std::to_wstring(value) : found->name;
}

}  // namespace tvn2x
