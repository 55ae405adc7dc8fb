#include "host/run/ChannelSelection.h"

#include "host/run/ParameterNames.h"
#include "support/TestFiles.h"

namespace tvn2x {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

std::vector<Setup::Channel> Network()
{
    return {{L"K45", 666, 6.9}, {L"K46", 674, 6.9},       {L"K47", 682.25, 6.9}, {L"Sport, live", 690, 6.9},
            {L"A-1", 698, 6.9}, {L"twice", 706, 6.9},     {L"twice", 714, 6.9},  {L"12", 722, 6.9},
            {L"", 730, 6.9},    {L"730.5 MHz", 738, 6.9}, {L"K45-A", 746, 6.9},  {L"A", 754, 6.9}};
}

TEST(ChannelSelection, NamesChannelsByLabelThenNumberThenFrequency)
{
    const std::pair<const wchar_t*, std::vector<int32_t>> cases[] = {
        {L"4, 2-3 ,1,2", {1, 2, 3, 4}},
        {L"10-", {10, 11, 12}},
        {L"K46", {2}},
        {L"K45-K47", {1, 2, 3}},
        {L"K46-4", {2, 3, 4}},
        {L"\"Sport, live\",\"K45-A\"", {4, 11}},
        {L"A-1", {5}},
        {L"12", {8}},
        {L"674,682.25", {2, 3}},
        {L"730.5 MHz", {10}},
        {L"730MHz", {9}},
        {L"670-700", {2, 3, 4, 5}},
        {L"740-", {11, 12}},
        {L"K47-722", {3, 4, 5, 6, 7, 8}},
    };
    for (const auto& [selection, numbers] : cases) {
        EXPECT_EQ(SelectChannels(selection, Network()), numbers) << testing::PrintToString(selection);
    }
    EXPECT_THAT(AllChannels({Network()[0], Network()[1]}), ElementsAre(1, 2));
}

TEST(ChannelSelection, RefusesWhatNamesNoChannelOrMeansTwoThings)
{
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"", L"\"\" is no channel and no range of channels"},
        {L"3,", L"\"\" is no channel"},
        {L"k46", L"\"k46\" is no channel and no range of channels: it is no label, no number from 1 to 12"},
        {L"3-x", L"\"3-x\" is no channel"},
        {L"3--4", L"is no channel"},
        {L"0", L"is no channel"},
        {L"99999999999999", L"is no channel"},
        {L"3-99", L"\"3-99\" is no channel"},
        {L"682", L"no channel's frequency"},
        {L"\"K45", L"lacks a closing quotation mark"},
        {L"7-3", L"ends before it begins"},
        {L"700-670", L"ends before it begins"},
        {L"twice", L"\"twice\" means channel 6 and channel 7; give the number"},
        {L"K45-A", L"\"K45-A\" means two things"},
    };
    for (const auto& [selection, reason] : cases) {
        EXPECT_THAT(Refusal([&, &selection = selection] { SelectChannels(selection, Network()); }), HasSubstr(reason))
            << testing::PrintToString(selection);
    }
}

TEST(ParameterNames, AreReadInAnyCaseAndOnceAndListedWhereOneIsUnknown)
{
    EXPECT_THAT(SelectParameters(L"MER, rflev,mer,de"), ElementsAre(27, 15, 30));
    EXPECT_THAT(Refusal([] { SelectParameters(L"mer,evm"); }),
                AllOf(HasSubstr(L"\"evm\" is no parameter"), HasSubstr(L"userfield, frequency")));
    EXPECT_THAT(Refusal([] { SelectParameters(L"mer,"); }), HasSubstr(L"\"\" is no parameter"));
}

}  // namespace
}  // namespace tvn2x
