#include "setup/catalogue/Settings.h"

#include "setup/catalogue/LevelUnits.h"
#include "setup/catalogue/MP_TYPES.h"
#include "setup/catalogue/Options.h"
#include "setup/catalogue/Patterns.h"

namespace tvn2x {
namespace {

using enum SettingKind;
namespace limit = channel_limit;

constexpr double largest = 2147483647;
constexpr double yes = -1;

constexpr ListItem modes[] = {{L"DVB-C", 4}};
constexpr ListItem sources[] = {{L"Internal", 0}, {L"External", 1}};
constexpr ListItem orders[] = {{L"4", 4}, {L"16", 16}, {L"32", 32}, {L"64", 64}, {L"128", 128}, {L"256", 256}};
constexpr ListItem rollOffs[] = {{L"0.12", 12}, {L"0.13", 13}, {L"0.15", 15}, {L"0.18", 18},
                                 {L"0.20", 20}, {L"0.25", 25}, {L"0.30", 30}};
constexpr ListItem samples[] = {{L"1", 1}, {L"10", 10}, {L"100", 100}, {L"1000", 1000}};
constexpr ListItem filters[] = {{L"Off", 0}, {L"2 MHz", 2}, {L"6 MHz", 6}, {L"7 MHz", 7}, {L"8 MHz", 8}};
constexpr ListItem routes[] = {{L"Receiver", input_route::receiver},
                               {L"Receiver (50 ohm)", input_route::receiver50},
                               {L"Receiver (75 ohm)", input_route::receiver75},
                               {L"Demod", input_route::demodulator},
                               {L"IF", input_route::intermediate}};
constexpr ListItem gridAxes[] = {
    {L"Frequency list always", 0}, {L"Parameter list always", 1}, {L"Select from view menu", 2}};
constexpr ListItem fileAxes[] = {
    {L"Frequency list always", 0}, {L"Parameter list always", 1}, {L"Same as display grid", 2}};

// The logarithmic units by their reference, then the voltage; the value is the receiver's code.
constexpr ListItem levelUnits[] = {{L"dBpW", 1},      {L"dB\u00B5W", 2}, {L"dBm", 3},
                                   {L"dB\u00B5V", 4}, {L"dBmV", 0},      {L"mV", 5}};

}  // namespace

namespace setting {

constinit const Setting mode{"Hardware", "Mode", integer, 0, 0, modes, L"4"};
constinit const Setting levelUnit{"Static Settings", "Level Unit", text, 0, 0, levelUnits, L"dBmV"};
constinit const Setting referenceSource{"Static Settings", "10MHz Reference Source", integer, 0, 0, sources, L"0"};
constinit const Setting orderOfQam{"Static Settings", "Order Of QAM", looseNumber, 0, 0, orders, L"64"};
constinit const Setting rollOffFactor{"Static Settings", "RollOff Factor", integer, 0, 0, rollOffs, L"15"};
constinit const Setting berSamples{
    "Static Settings", "BER Integration (Samples)", looseNumber, 1, largest, samples, L"100"};
constinit const Setting sawBandwidth{"Static Settings", "SAW Filter Bandwidth (MHz)", looseNumber, 0, 0, filters, L"8"};
constinit const Setting inputRoute{"Static Settings", "Input Impedance (ohm)", looseNumber, 0, 0, routes, L"75"};
constinit const Setting defaultSymbolRate{"Static Settings",
                                          "Default Symbol Rate (MSymb/s)",
                                          number,
                                          limit::lowestSymbolRate,
                                          limit::highestSymbolRate,
                                          {},
                                          L"6.9"};
constinit const Setting maxSettlingTime{
    "Static Settings", "Maximum Settling Time (sec)", looseNumber, 1, 300, {}, L"10"};
constinit const Setting displayGrid{"X-Axis", "Display Grid", integer, 0, 0, gridAxes, L"2"};
constinit const Setting resultFile{"X-Axis", "Result File", integer, 0, 0, fileAxes, L"2"};

}  // namespace setting

namespace {

constexpr Setting productName{"Application", "Name", text};
constexpr Setting appVersion{"Application", "Version", text};
constexpr Setting model{"Hardware", "Model", text};
constexpr Setting channels{"Frequency List", "Count", integer, 1, largest, {}, L"1"};
constexpr Setting coupled{"Static Settings", "Couple Display and Save", word, 0, 0, {}, L"True"};
constexpr wchar_t lastParameter[] = {L'0' + MP_LAST / 10, L'0' + MP_LAST % 10, L'\0'};
static_assert(MP_LAST >= 10 && MP_LAST < 100);
constexpr Setting parameterCount{"Parameters", "Count", integer, 0, 32757, {}, lastParameter};
constexpr Setting notes{"Notes", "Template", text};
constexpr Setting notesBefore{"Notes", "Show Before", integer, yes, 1, {}, L"-1"};
constexpr Setting notesAfter{"Notes", "Show After", integer, yes, 1, {}, L"-1"};
constexpr Setting backupProduct{"Backup", "Product Name", text};
constexpr Setting backupVersion{"Backup", "App Version", text};
constexpr Setting backupPath{"Backup", "Full Path", text};
constexpr Setting backupDirty{"Backup", "Dirty", word, 0, 0, {}, L"False"};
constexpr Setting backupNotes{"Backup", "Notes", text};
constexpr Setting backupNotesAfter{"Backup", "Show After", integer, yes, 1, {}, L"-1"};

constexpr const Setting* settings[] = {
    &productName,
    &appVersion,
    &model,
    &setting::mode,
    &channels,
    &setting::levelUnit,
    &setting::referenceSource,
    &setting::orderOfQam,
    &setting::rollOffFactor,
    &setting::berSamples,
    &setting::sawBandwidth,
    &setting::inputRoute,
    &setting::defaultSymbolRate,
    &setting::maxSettlingTime,
    &coupled,
    &parameterCount,
    &notes,
    &notesBefore,
    &notesAfter,
    &setting::displayGrid,
    &setting::resultFile,
    &backupProduct,
    &backupVersion,
    &backupPath,
    &backupDirty,
    &backupNotes,
    &backupNotesAfter,
};

constexpr SettingRows rows[] = {
    {"Frequency List", "Frequency   ", number, true, true, limit::lowestFrequency, limit::highestFrequency},
    {"Frequency List", "User Field  ", text, true, false},
    {"Frequency List", "Symbol Rate ", number, true, true, limit::lowestSymbolRate, limit::highestSymbolRate},
    {"Parameters to Display", "Parameter ", integer, false, true, yes, 1},
    {"Parameters to Save", "Parameter ", integer, false, true, yes, 1},
    {"Parameters Display Order", "Position ", integer, false, true, -1, 32767},
    {"Parameter Captions", "Parameter ", text, false, true},
};

constexpr const char* earlyRows[] = {"Frequency ", "Symbol Rate (MSymb/s) "};

}  // namespace

std::span<const Setting* const> Settings()
{
    return settings;
}

std::wstring ChoiceWords(const Setting& setting, int32_t value)
{
    const int32_t position = FindListData(setting.choices, value);
    return position < 0 ? std::to_wstring(value) : std::wstring(setting.choices[static_cast<size_t>(position)].text);
}

std::span<const SettingRows> RowSettings()
{
    return rows;
}

std::span<const char* const> EarlyRowKeys()
{
    return earlyRows;
}

}  // namespace tvn2x
