#include "editor/Choices.h"

#include <algorithm>
#include <array>

#include "setup/catalogue/Settings.h"

namespace tvn2x {
namespace {

/// A drop-down list: its label, and the setting that it chooses for.
struct ChoiceTable
{
    std::wstring_view label;
    const Setting& setting;
};

const std::array<ChoiceTable, choiceCount> choices{{
    {L"Level &Unit:", setting::levelUnit},
    {L"&Rolloff Factor:", setting::rollOffFactor},
    {L"10 MHz &Reference:", setting::referenceSource},
    {L"&Input Route:", setting::inputRoute},
    {L"SA&W Filter Bandwidth:", setting::sawBandwidth},
    {L"&Order of QAM:", setting::orderOfQam},
    {L"&BER Integration (Samples):", setting::berSamples},
    {L"&Display Grid:", setting::displayGrid},
    {L"&Result File:", setting::resultFile},
}};

constexpr std::array<std::wstring_view, pageCount> pages{L"&Settings",   L"&Application", L"&Frequencies",
                                                         L"&Parameters", L"&Notes",       L"&X-Axis"};
constexpr std::array<std::wstring_view, fieldCount> fields{L"&Default Symbol Rate (MSymb/s):",
                                                           L"&Maximum Settling Time (sec):"};
constexpr std::array<std::wstring_view, checkCount> checks{L"C&ouple Display and Save", L"Show &before measurement",
                                                           L"Show &after measurement"};
constexpr std::array<std::wstring_view, rowButtonCount> commands{L"&Insert", L"D&elete", L"Move &Up", L"Move &Down"};
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
    return choices[static_cast<size_t>(choice)].setting.choices;
}

int32_t PositionIn(const SetupDocument& document, Choice choice)
{
    const int32_t position = choice == Choice::levelUnit ? FindListText(ItemsOf(choice), document.LevelUnit())
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
