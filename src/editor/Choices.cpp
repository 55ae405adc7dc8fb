#include "editor/Choices.h"

#include <algorithm>
#include <array>

namespace tvn2x {
namespace {

constexpr ListItem levelUnits[] = {{L"dBpW", 0},      {L"dB\u00B5W", 0}, {L"dBm", 0},
                                   {L"dB\u00B5V", 0}, {L"dBmV", 0},      {L"mV", 0}};
constexpr ListItem rolloffFactors[] = {{L"0.12", 12}, {L"0.13", 13}, {L"0.15", 15}, {L"0.18", 18},
                                       {L"0.20", 20}, {L"0.25", 25}, {L"0.30", 30}};
constexpr ListItem references[] = {{L"Internal", 0}, {L"External", 1}};
constexpr ListItem inputRoutes[] = {
    {L"Receiver", 2}, {L"Receiver (50 ohm)", 50}, {L"Receiver (75 ohm)", 75}, {L"Demod", 4}, {L"IF", 128}};
constexpr ListItem sawFilters[] = {{L"Off", 0}, {L"2 MHz", 2}, {L"6 MHz", 6}, {L"7 MHz", 7}, {L"8 MHz", 8}};
constexpr ListItem qamOrders[] = {{L"4", 4}, {L"16", 16}, {L"32", 32}, {L"64", 64}, {L"128", 128}, {L"256", 256}};
constexpr ListItem berSamples[] = {{L"1", 1}, {L"10", 10}, {L"100", 100}, {L"1000", 1000}};
constexpr ListItem displayGrids[] = {
    {L"Frequency list always", 0}, {L"Parameter list always", 1}, {L"Select from view menu", 2}};
constexpr ListItem resultFiles[] = {
    {L"Frequency list always", 0}, {L"Parameter list always", 1}, {L"Same as display grid", 2}};

struct ChoiceTable
{
    std::wstring_view label;
    std::span<const ListItem> items;
};

const std::array<ChoiceTable, choiceCount> choices{{
    {L"Level &Unit:", levelUnits},
    {L"&Rolloff Factor:", rolloffFactors},
    {L"10 MHz &Reference:", references},
    {L"&Input Route:", inputRoutes},
    {L"SA&W Filter Bandwidth:", sawFilters},
    {L"&Order of QAM:", qamOrders},
    {L"&BER Integration (Samples):", berSamples},
    {L"&Display Grid:", displayGrids},
    {L"&Result File:", resultFiles},
}};

constexpr std::array<std::wstring_view, pageCount> pages{L"&Settings",   L"&Application", L"&Frequencies",
                                                         L"&Parameters", L"&Notes",       L"&X-Axis"};
constexpr std::array<std::wstring_view, fieldCount> fields{L"&Default Symbol Rate (MSymb/s):",
                                                           L"&Maximum Settling Time (sec):"};
constexpr std::array<std::wstring_view, checkCount> checks{L"C&ouple Display and Save", L"Show &before measurement",
                                                           L"Show &after measurement"};
constexpr std::array<std::wstring_view, rowCommandCount> commands{L"&Insert", L"D&elete", L"Move &Up", L"Move &Down"};
constexpr std::array<std::wstring_view, 3> parameterHeadings{L"&Caption", L"Displ&ay", L"Sa&ve"};
constexpr std::array<std::wstring_view, 3> channelHeadings{L"Use&r Field", L"Center &Frequency", L"Sy&mbol Rate"};

/// The document's value as the number behind an entry. The level unit has a text instead.
int32_t ValueOf(const SetupDocument& document, Choice choice)
{
    switch (choice) {
        case Choice::rolloffFactor:
            return document.RollOffFactor();
        case Choice::reference:
            return document.ReferenceSource();
        case Choice::inputRoute:
            return document.Zin();
        case Choice::sawFilter:
            return document.SawBw();
        case Choice::orderOfQam:
            return document.OrderOfQam();
        case Choice::berIntegration:
            return document.BerSamples();
        case Choice::displayGrid:
            return document.XAxis(0);
        case Choice::resultFile:
            return document.XAxis(1);
        case Choice::levelUnit:
            break;
    }
    return 0;
}

}  // namespace

std::span<const ListItem> ItemsOf(Choice choice)
{
    return choices[static_cast<size_t>(choice)].items;
}

int32_t PositionIn(const SetupDocument& document, Choice choice)
{
    const int32_t position = choice == Choice::levelUnit ? FindListText(levelUnits, document.LevelUnit())
                                                         : FindListData(ItemsOf(choice), ValueOf(document, choice));
    return std::max(position, 0);
}

void StoreChoice(SetupDocument& document, Choice choice, int32_t position)
{
    const ListItem& item = ItemsOf(choice)[static_cast<size_t>(position)];
    switch (choice) {
        case Choice::levelUnit:
            return document.LevelUnit(std::wstring(item.text));
        case Choice::rolloffFactor:
            return document.RollOffFactor(item.value);
        case Choice::reference:
            return document.ReferenceSource(item.value);
        case Choice::inputRoute:
            return document.Zin(item.value);
        case Choice::sawFilter:
            return document.SawBw(item.value);
        case Choice::orderOfQam:
            return document.OrderOfQam(item.value);
        case Choice::berIntegration:
            return document.BerSamples(item.value);
        case Choice::displayGrid:
            return document.XAxis(0, item.value);
        case Choice::resultFile:
            return document.XAxis(1, item.value);
    }
}

std::wstring_view CaptionOf(Page page)
{
    return pages[static_cast<size_t>(page)];
}

std::wstring_view CaptionOf(Choice choice)
{
    return choices[static_cast<size_t>(choice)].label;
}

std::wstring_view CaptionOf(Field field)
{
    return fields[static_cast<size_t>(field)];
}

std::wstring_view CaptionOf(Check check)
{
    return checks[static_cast<size_t>(check)];
}

std::wstring_view CaptionOf(RowCommand command)
{
    return commands[static_cast<size_t>(command)];
}

std::wstring_view HeadingOf(Column column)
{
    return GridOf(column) == Grid::channels ? channelHeadings[static_cast<size_t>(column - MP_FIRSTFIXED)]
                                            : parameterHeadings[static_cast<size_t>(column)];
}

}  // namespace tvn2x
