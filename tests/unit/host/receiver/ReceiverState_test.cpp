#include "host/receiver/ReceiverState.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tvn2x {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

const SetupSettings set{.orderOfQam = 256,
                        .rollOffFactor = 15,
                        .sawBandwidth = 7,
                        .inputRoute = 75,
                        .referenceSource = 0,
                        .berSamples = 10,
                        .maxSettlingTime = 5,
                        .levelUnit = L"dB\u00B5V"};

TEST(ReceiverState, EverySettingThatMeasuringDependsOnIsCompared)
{
    EXPECT_TRUE(CompareSettings(set, set).empty());
    SetupSettings other{.orderOfQam = 64,
                        .rollOffFactor = 12,
                        .sawBandwidth = 0,
                        .inputRoute = 4,
                        .referenceSource = 1,
                        .berSamples = 100,
                        .maxSettlingTime = 9,
                        .levelUnit = L""};
    std::vector<std::wstring> texts;
    for (const SettingDifference& difference : CompareSettings(set, other)) {
        texts.push_back(DifferenceText(difference));
        EXPECT_FALSE(difference.isNeighbour);
    }
    EXPECT_THAT(texts, ElementsAre(L"Level unit: dB\u00B5V in the setup, a unit that is not known on the receiver",
                                   L"Input route: Receiver (75 ohm) in the setup, Demod on the receiver",
                                   L"SAW filter: 7 MHz in the setup, Off on the receiver",
                                   L"Order of QAM: 256 in the setup, 64 on the receiver",
                                   L"Rolloff factor: 0.15 in the setup, 0.12 on the receiver",
                                   L"BER samples: 10 in the setup, 100 on the receiver",
                                   L"Reference: Internal in the setup, External on the receiver"));
    for (const auto& [filter, isNeighbour] : {std::pair(6, true), {8, false}, {2, false}, {0, false}}) {
        other = set;
        other.sawBandwidth = filter;
        const auto differences = CompareSettings(set, other);
        ASSERT_EQ(differences.size(), 1U);
        EXPECT_EQ(differences[0].isNeighbour, isNeighbour) << filter;
    }
}

TEST(ReceiverState, ARefusedSettingIsToldWithTheStateAndWhatIsUnwritten)
{
    const std::wstring text = RefusalText(6, set);
    EXPECT_THAT(text,
                HasSubstr(L"This was the receiver's SAW filter. It has not been given what comes behind: order of "
                          L"QAM, rolloff factor, BER samples, equaliser, 10 MHz reference. It is now set to:\n"));
    EXPECT_THAT(text, HasSubstr(L"\n  SAW filter      7 MHz\n"));
    EXPECT_THAT(RefusalText(11, set), Not(HasSubstr(L"not been given")));
    for (const double step : {-3.0, 0.0, 99.0}) {
        EXPECT_THAT(RefusalText(step, std::nullopt), HasSubstr(L"which may be anything"));
    }
}

}  // namespace
}  // namespace tvn2x
