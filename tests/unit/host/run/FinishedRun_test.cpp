#include "host/run/FinishedRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/run/ScanSummary.h"
#include "host/run/UserNumber.h"
#include "support/FixedLocale.h"
#include "support/TestRun.h"

namespace tvn2x {
namespace {

using testing::ElementsAre;
using enum ChannelOutcome;

TEST(OutcomeOf, OnlyWhatWasSeenLockedIsSynchronised)
{
    const std::tuple<const wchar_t*, std::vector<std::wstring>, ChannelOutcome> cases[] = {
        {L"Done", {L"OK", L"OK", L"OK"}, synchronised},   {L"Done", {L"OK", L"OK", L"INTERMITTENT"}, notSynchronised},
        {L"Done", {L"OK", L"OK"}, notSynchronised},       {L"Done", {}, notSynchronised},
        {L"Control Error", {L"OK", L"OK", L"OK"}, error}, {L"", {L"OK", L"OK", L"OK"}, error}};
    for (const auto& [status, locks, outcome] : cases) {
        std::vector<Reading> readings{TestReading(MP_MER, L"39.0")};
        for (size_t i = 0; i < locks.size(); ++i) {
            readings.push_back({.parameter = MP_REF + static_cast<int32_t>(i), .text = locks[i]});
        }
        EXPECT_EQ(OutcomeOf(status, readings), outcome) << status << locks.size();
    }
}

TEST(FinishedRun, CompleteGivesEachPlannedChannelOfTheBegunPassesItsPlace)
{
    FinishedRun run = TestRun({TestChannel(1, 474, {}), TestChannel(2, 482, {}), TestChannel(3, 490, {})});
    RunSetup& second = run.setups.emplace_back();
    second.firstChannel = 3;
    second.settings.orderOfQam = 64;
    run.passes = 5;
    EXPECT_EQ(run.Planned(), 15);
    run.channels = {TestChannel(3, 490, {}, 2), TestChannel(2, 482, {}, 1, unmeasured), TestChannel(2, 482, {}),
                    TestChannel(1, 474, {}, 2, unmeasured), TestChannel(1, 474, {}, 3, unmeasured)};
    run.Complete();
    std::vector<std::tuple<int32_t, int32_t, ChannelOutcome>> places;
    for (const ChannelResult& channel : run.channels) {
        places.emplace_back(channel.pass, channel.number, channel.outcome);
    }
    EXPECT_THAT(places, ElementsAre(std::tuple(1, 1, unmeasured), std::tuple(1, 2, synchronised),
                                    std::tuple(1, 3, unmeasured), std::tuple(2, 1, unmeasured),
                                    std::tuple(2, 2, unmeasured), std::tuple(2, 3, synchronised)));
    EXPECT_EQ(run.channels[0].Name(), L"C1 474 MHz");
    EXPECT_EQ(run.channels[0].orderOfQam, 256) << "of its setup";
    EXPECT_EQ(run.channels[2].orderOfQam, 64);
    EXPECT_EQ(run.Measured(), 2);
    EXPECT_EQ(TestRun({TestChannel(1, 474, {}), TestChannel(2, 482, {})}).Seconds(), 2.5);
    EXPECT_FALSE(run.IsComplete());
    run.passes = 0;
    EXPECT_EQ(run.Planned(), 6) << "without an end the passes that began count";
}

TEST(ScanSummary, TellsOutcomesApartInOneLine)
{
    ScanSummary summary{.channels = 3, .synchronised = 2, .seconds = 62};
    summary.Count(ChannelOutcome::synchronised);
    EXPECT_EQ(summary.Text(), L"3 channels, 3 synchronised, 0 not synchronised, 0 errors, 1:02 min");

    ScanSummary stopped{.channels = 5, .stopped = true, .seconds = 3};
    stopped.Count(ChannelOutcome::error);
    stopped.Count(ChannelOutcome::notSynchronised);
    EXPECT_EQ(stopped.Text(),
              L"Stopped: 5 channels, 0 synchronised, 1 not synchronised, 1 error, 3 not measured, 0:03 min");
}

TEST(WithUserMark, ChangesNumbersAlone)
{
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {{L"61.1", L"61,1"},
                                                               {L"-0,25", L"-0,25"},
                                                               {L"<1.7E-8", L"<1,7E-8"},
                                                               {L">2.0e+3", L">2,0e+3"},
                                                               {L"105940", L"105940"},
                                                               {L"OVER", L"OVER"},
                                                               {L"1.2.3", L"1.2.3"},
                                                               {L"5.", L"5."},
                                                               {L".5", L".5"},
                                                               {L"1.5 dB", L"1.5 dB"},
                                                               {L"", L""},
                                                               {L"1.5E", L"1.5E"},
                                                               {L"1.5E-", L"1.5E-"}};
    for (const auto& [number, expected] : cases) {
        EXPECT_EQ(WithUserMark(number, CommaLocale()), expected) << number;
    }
}

TEST(NumberText, HasThreeDigits)
{
    EXPECT_EQ(NumberText(105940), L"105940");
    EXPECT_EQ(NumberText(0.7273), L"0.727");
    EXPECT_EQ(NumberText(2e-4), L"2E-4");
    EXPECT_EQ(NumberText(0), L"0");
}

TEST(LocalText, LeavesWhatIsNoPointInTime)
{
    EXPECT_EQ(LocalText(L"yesterday"), L"yesterday");
}

}  // namespace
}  // namespace tvn2x
