#include "host/receiver/ReceiverCheck.h"

#include <gmock/gmock.h>

#include "host/receiver/ReceiverOptions.h"
#include "host/receiver/ReceiverState.h"

namespace tvn2x {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

TEST(ReceiverCheck, MissingOptionIsNamedWithTheRemedyIfAny)
{
    using enum Capability;
    EXPECT_EQ(AnswerText({.need = filter, .asked = 8, .possible = {0, 6}}, L"KTR-H2"),
              L"SAW filter: 8 MHz: option KTR-H4 (SAW filter of 8 MHz) is not installed. Order KTR-H4, or set the "
              L"setup's SAW filter bandwidth to Off or 6 MHz");
    const std::pair<ReceiverAnswer, const wchar_t*> cases[] = {
        {{.need = reference, .asked = 1, .possible = {0}},
         L"Order EXTREF, or set the setup's 10 MHz reference to Internal"},
        {{.need = route, .asked = 2, .possible = {50, 75, 128}},
         L"Order EAMOD, or set the setup's input route to Receiver (50 ohm), Receiver (75 ohm) or IF"},
        {{.need = mode, .asked = 14}, L". Order KTR-S32"},
        {{.need = route, .asked = 1, .possible = {128}},
         L"input port: 1: no receiver has this input port. Set the setup's input route to IF"},
        {{.need = route, .asked = 1}, L"Use another receiver"},
    };
    for (const auto& [answer, text] : cases) {
        EXPECT_THAT(AnswerText(answer, L""), EndsWith(text));
    }
    const ReceiverAnswer six{.need = filter, .asked = 6, .possible = {0}};
    EXPECT_THAT(AnswerText(six, L"KTR-H2,KTR-H8"), HasSubstr(L"by this name (the receiver lists \"KTR-H8\"; where"));
    EXPECT_THAT(AnswerText(six, L"ktr-h8 (or  KTR-H9)"), HasSubstr(L"(or  KTR-H9)\", other in blanks or letter case"));
    EXPECT_THAT(AnswerText(six, L"KTR-H2,KTR-H6"), Not(HasSubstr(L"by this name")));
}

TEST(ReceiverCheck, MetNeedsAreListedWithTheOthersAndAnInactiveModeIsNoObstacle)
{
    const std::vector<ReceiverAnswer> answers{{.need = Capability::mode, .asked = 4, .isMet = true, .isActive = false},
                                              {.need = Capability::filter, .asked = 0, .isMet = true}};
    EXPECT_TRUE(CanDo(answers));
    EXPECT_EQ(AnswerList(answers, L"KTR-H2"),
              L"  yes  operating mode: 4 (DVB-C demodulator), but the receiver is in another one; a scan changes that\n"
              L"  yes  SAW filter: Off\n");
    EXPECT_FALSE(CanDo({{.need = Capability::reference, .asked = 1}, answers[0]}));
}

TEST(ReceiverOptions, EntriesAreExplainedAndFiltersThatShareAPlaceCountAsOne)
{
    const auto options = ReadOptions(L"KTR-H2, KTR-H8 (or KTR-H9),,ktr-h4");
    ASSERT_EQ(options.size(), 3U);
    EXPECT_THAT(options[0].words, HasSubstr(L"DVB-C"));
    EXPECT_EQ(options[1].code, L"KTR-H8 (or KTR-H9)");
    EXPECT_THAT(options[1].words, HasSubstr(L"6 and 7 MHz"));
    EXPECT_EQ(options[2].words, L"") << "letter case counts";
    const auto isMissing = [](const wchar_t* installed, const wchar_t* code) {
        return std::ranges::count(MissingOptions(installed), code, &ReceiverOption::code) != 0;
    };
    EXPECT_TRUE(isMissing(L"KTR-H2", L"KTR-H8 (or KTR-H9)"));
    EXPECT_FALSE(isMissing(L"KTR-H9", L"KTR-H8 (or KTR-H9)"));
    EXPECT_FALSE(isMissing(L"", L"KTR-H9"));
    EXPECT_TRUE(isMissing(L"XRB", L"RB"));
}

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
