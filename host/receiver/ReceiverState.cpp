#include "host/receiver/ReceiverState.h"

#include <algorithm>
#include <cmath>

#include "setup/catalogue/Settings.h"

namespace tvn2x {
namespace {

/// A setting that is compared, by what it is called.
struct NumberSetting
{
    const wchar_t* name;
    const Setting& values;
    int32_t SetupSettings::*member;
    std::optional<Capability> need = {};
};
const NumberSetting numberSettings[] = {
    {L"Input route", setting::inputRoute, &SetupSettings::inputRoute, Capability::route},
    {L"SAW filter", setting::sawBandwidth, &SetupSettings::sawBandwidth, Capability::filter},
    {L"Order of QAM", setting::orderOfQam, &SetupSettings::orderOfQam},
    {L"Rolloff factor", setting::rollOffFactor, &SetupSettings::rollOffFactor},
    {L"BER samples", setting::berSamples, &SetupSettings::berSamples},
    {L"Reference", setting::referenceSource, &SetupSettings::referenceSource, Capability::reference},
};
constexpr const wchar_t* levelUnitName = L"Level unit";

/// What the plug-in writes, in its order, from the progress at which it begins.
constexpr int firstWritten = 1;
constexpr const wchar_t* written[] = {L"basic state", L"operating mode", L"input route",     L"input gain",
                                      L"level unit",  L"SAW filter",     L"order of QAM",    L"rolloff factor",
                                      L"BER samples", L"equaliser",      L"10 MHz reference"};

std::wstring UnitText(const std::wstring& unit)
{
    return unit.empty() ? L"a unit that is not known" : unit;
}

bool AreNeighbours(const NumberSetting& setting, int32_t one, int32_t other)
{
    return setting.member == &SetupSettings::sawBandwidth && std::min(one, other) == 6 && std::max(one, other) == 7;
}

}  // namespace

std::vector<SettingDifference> CompareSettings(const SetupSettings& setup, const SetupSettings& receiver)
{
    std::vector<SettingDifference> differences;
    if (setup.levelUnit != receiver.levelUnit) {
        differences.push_back(
            {.name = levelUnitName, .wanted = setup.levelUnit, .actual = UnitText(receiver.levelUnit)});
    }
    for (const NumberSetting& row : numberSettings) {
        const int32_t wanted = setup.*row.member;
        const int32_t actual = receiver.*row.member;
        if (wanted != actual) {
            differences.push_back({.name = row.name,
                                   .wanted = ChoiceWords(row.values, wanted),
                                   .actual = ChoiceWords(row.values, actual),
                                   .need = row.need,
                                   .isNeighbour = AreNeighbours(row, wanted, actual)});
        }
    }
    return differences;
}

std::wstring DifferenceText(const SettingDifference& difference)
{
    return difference.name + L": " + difference.wanted + L" in the setup, " + difference.actual + L" on the receiver";
}

std::wstring StateText(const SetupSettings& settings)
{
    constexpr size_t column = 16;
    const auto line = [](std::wstring name, const std::wstring& value) {
        name.resize(column, L' ');
        return L"  " + name + value + L"\n";
    };
    std::wstring text = line(levelUnitName, UnitText(settings.levelUnit));
    for (const NumberSetting& row : numberSettings) {
        text += line(row.name, ChoiceWords(row.values, settings.*row.member));
    }
    return text;
}

std::wstring RefusalText(double step, const std::optional<SetupSettings>& now)
{
    const auto last = static_cast<int>(std::size(written)) - 1;
    const int refused = std::clamp(static_cast<int>(std::lround(step)) - firstWritten, 0, last);
    std::wstring text = L"This was the receiver's " + std::wstring(written[refused]) + L". ";
    if (refused < last) {
        text += L"It has not been given what comes behind:";
        for (int i = refused + 1; i <= last; ++i) {
            text += (i == refused + 1 ? L" " : L", ") + std::wstring(written[i]);
        }
        text += L". ";
    }
    text += now ? L"It is now set to:\n" + StateText(*now)
                : L"It does not tell what it is set to now, which may be anything.\n";
    return text +
           L"Change that in the setup (tvnhost check SETUP --receiver tells what this receiver can do) and write "
           L"it again";
}

}  // namespace tvn2x
