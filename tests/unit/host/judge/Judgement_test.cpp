#include "host/judge/Judgement.h"

#include "host/judge/RunComparison.h"
#include "host/judge/VerdictText.h"
#include "support/TestFiles.h"
#include "support/TestRun.h"
#include "support/TestTable.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

const std::string merLimits = "[mer]\nFail Below=31\nWarn Below=33\n";

RunJudgement JudgeOne(const ChannelResult& channel, const std::string& limits)
{
    const Limits read = ReadLimits(limits, L"my.ini");
    return Judge(TestRun({channel}), &read);
}

ChannelJudgement JudgeCell(int32_t parameter, const wchar_t* cell, const std::string& limits)
{
    return JudgeOne(TestChannel(1, 474, {{parameter, cell}}), limits).channels.front();
}

TEST(Limits, TheMoreSpecialSectionCounts)
{
    const Limits limits = ReadLimits(merLimits + "[MER 64-qam]\nfail below = 26\n; a comment\n[drift]\nmer=2.5\n", L"");
    EXPECT_EQ(limits.Find(MP_MER, 64)->failBelow, 26);
    EXPECT_EQ(limits.Find(MP_MER, 64)->warnBelow, std::nullopt);
    EXPECT_EQ(*limits.Find(MP_MER, 256), (Limit{31, 33, {}, {}}));
    EXPECT_EQ(limits.Find(MP_BER, 256), nullptr);
    EXPECT_EQ(limits.drift.at(MP_MER), 2.5);
    const Limits outlet = OutletLimits();
    EXPECT_EQ(*outlet.Find(MP_RFLEV, 64), (Limit{47, 50, 64, 67}));
    EXPECT_EQ(*outlet.Find(MP_RFLEV, 256), (Limit{54, 57, 71, 74}));
    EXPECT_EQ(*outlet.Find(MP_BER, 16), (Limit{{}, {}, 1e-4, 2e-4}));
    EXPECT_EQ(outlet.drift.at(MP_RFLEV), 2);
    for (const int32_t order : {4, 16, 32, 64, 128, 256}) {
        for (const int32_t parameter : outlet.Parameters()) {
            EXPECT_NE(outlet.Find(parameter, order), nullptr) << parameter << " " << order;
        }
    }
}

TEST(Limits, ABadFileIsNamedWithLineAndRemedy)
{
    for (const std::vector<std::string>& row : TestTable("limit-refusals.tsv", 2)) {
        EXPECT_THAT(Refusal([&] { ReadLimits(CellText(row[0]), L"my.ini"); }),
                    AllOf(HasSubstr(FromUtf8(CellText(row[1]))), HasSubstr(L"tvnhost limits")))
            << row[0];
    }
}

TEST(Judge, ABoundItselfIsStillGoodOnEitherSide)
{
    const std::string sides = "[freqoff]\nFail Below=-9\nWarn Below=-5\nWarn Above=5\nFail Above=9\n";
    const std::tuple<const wchar_t*, Verdict, double> cases[] = {
        {L"-10", Verdict::fail, -1}, {L"-9", Verdict::warning, 0}, {L"-6", Verdict::warning, 3},
        {L"-5", Verdict::pass, 4},   {L"5", Verdict::pass, 4},     {L"5.1", Verdict::warning, 3.9},
        {L"9", Verdict::warning, 0}, {L"9.5", Verdict::fail, -0.5}};
    for (const auto& [cell, verdict, margin] : cases) {
        const ChannelJudgement judgement = JudgeCell(MP_FREQOFF, cell, sides);
        EXPECT_EQ(judgement.verdict, verdict) << cell;
        EXPECT_NEAR(*judgement.Worst()->margin, margin, 1e-9) << cell;
    }
}

TEST(Judge, CountsRatiosInDecadesAndLevelsInDecibelMicrovolt)
{
    const ChannelJudgement ber = JudgeCell(MP_BER, L"2.0E-3", "[ber]\nWarn Above=1e-4\nFail Above=2e-4\n");
    EXPECT_NEAR(*ber.Worst()->margin, -1, 1e-9);
    EXPECT_EQ(ber.reason, L"BER before RS 2.0E-3 is 1.00 decades above the limit of 2E-4");

    ChannelResult channel = TestChannel(1, 474, {});
    channel.readings = {TestReading(MP_RFLEV, L"-14.0", L"dBmV")};
    const ChannelJudgement level = JudgeOne(channel, "[rflev]\nFail Below=54\n").channels.front();
    EXPECT_EQ(level.reason, L"RF level -14.0 dBmV is 8 dB below the limit of 54 dBµV");
}

TEST(Judge, AReadingThatIsOnlyABoundIsJudgedWhereItIsCertain)
{
    const std::string above = "[ber]\nFail Above=2e-4\n";
    EXPECT_EQ(JudgeCell(MP_BER, L"<1.7E-8", above).verdict, Verdict::pass);
    EXPECT_EQ(JudgeCell(MP_BER, L"<1.7E-3", above).verdict, Verdict::notMeasured);
    EXPECT_EQ(JudgeCell(MP_BER, L">1.7E-3", above).verdict, Verdict::fail);
    EXPECT_EQ(JudgeCell(MP_MER, L"UNDER", merLimits).verdict, Verdict::fail);
    EXPECT_EQ(JudgeCell(MP_MER, L"OVER", merLimits).verdict, Verdict::pass);
    EXPECT_EQ(JudgeCell(MP_MER, L"---", merLimits).verdict, Verdict::notMeasured);
}

TEST(Judge, GoesByWhatWasMeasuredAndNotByWhatIsShown)
{
    const std::tuple<Reading, std::string, const wchar_t*> cases[] = {
        {MakeReading(MP_MER, L"31.0", 30.96, L"", SystemLocale()), merLimits,
         L"MER 30.96 dB is 0.04 dB below the limit of 31 dB"},
        {TestReading(MP_MER, L"30.7"), merLimits, L"MER 30.7 dB is 0.3 dB below the limit of 31 dB"},
        {MakeReading(MP_BER, L"2.0E-4", 2.04e-4, L"", SystemLocale()), "[ber]\nFail Above=2e-4\n",
         L"BER before RS 2.04E-4 is 0.01 decades above the limit of 2E-4"},
        {MakeReading(MP_RFLEV, L"0.5012", 0.501182, L"mV", SystemLocale()), "[rflev]\nFail Below=54\n",
         L"RF level 0.50118 mV is 1.25E-4 dB below the limit of 54 dBµV"},
    };
    ChannelResult channel = TestChannel(1, 474, {});
    for (const auto& [reading, limits, reason] : cases) {
        channel.readings = {reading};
        EXPECT_EQ(JudgeOne(channel, limits).channels.front().reason, reason);
    }
}

TEST(Judge, WhatNobodySawIsNeverGood)
{
    const FinishedRun whole = TestRun({TestChannel(1, 474, {{MP_MER, L"39.0"}}), TestChannel(2, 482, {})});
    const auto verdict = [&](const char* content, auto change) {
        FinishedRun run = whole;
        change(run);
        const Limits limits = ReadLimits(content, L"my.ini");
        const RunJudgement judgement = Judge(run, content == merLimits ? nullptr : &limits);
        EXPECT_EQ(judgement.ExitCode(), 1);
        return VerdictSentence(run, judgement);
    };
    const auto as = [](FinishedRun&) {};
    const auto killed = [](FinishedRun& run) { run.channels.pop_back(); };
    const auto again = [](FinishedRun& run) { run.passes = 1000000; };
    const auto unlocked = [](FinishedRun& run) { run.channels[1].outcome = ChannelOutcome::notSynchronised; };
    const auto level = [](FinishedRun& run) {
        run.channels[1].readings.push_back(TestReading(MP_RFLEV, L"60.0", L"V"));
        run.channels[1].readings.push_back(TestReading(MP_MER, L"39.0"));
    };
    const std::string both = "[mer]\nFail Below=31\n[rflev]\nFail Below=54\n";
    EXPECT_EQ(
        verdict("[mer]\nFail Below=31\n", as),
        L"NOT MEASURED: 1 of 2 channels pass, 1 not measured. Worst: C2 482 MHz, MER was not measured. 1 limit not "
        L"applied: MER: not measured (1 channel).");
    EXPECT_EQ(verdict("[mer 64-QAM]\nFail Below=26\n", as),
              L"NOT JUDGED: 2 of 2 channels pass. None of the limits could be applied to 256-QAM. 1 limit not applied: "
              L"MER: no "
              L"section for 256-QAM (2 channels).");
    EXPECT_THAT(verdict("[step]\nFail Above=3\n", as), HasSubstr(L"level step: not measured (2 channels)"));
    EXPECT_THAT(verdict(both.c_str(), level), HasSubstr(L"RF level: no level that can be converted (1 channel)"));
    EXPECT_EQ(verdict(merLimits.c_str(), killed), L"INCOMPLETE: 1 of 2 channels pass, 1 not measured.");
    EXPECT_EQ(verdict(merLimits.c_str(), again), L"INCOMPLETE: 2 of 2000000 measurements pass, 1999998 not measured.");
    EXPECT_THAT(verdict(merLimits.c_str(), unlocked),
                HasSubstr(L"FAIL: 1 of 2 channels pass, 1 fails. Worst: C2 482 MHz, not synchronised"));
}

TEST(Judge, ALevelThatTheReceiverCannotKnowCostsNoVerdict)
{
    ChannelResult channel = TestChannel(1, 474, {{MP_RFLEV, L"---"}, {MP_MER, L"39.0"}});
    const std::string limits = merLimits + "[rflev]\nFail Below=54\n";
    EXPECT_EQ(JudgeOne(channel, limits).verdict, Verdict::notMeasured);
    channel.details.hasUnknownLevel = true;
    const RunJudgement judgement = JudgeOne(channel, limits);
    EXPECT_EQ(judgement.verdict, Verdict::pass);
    EXPECT_EQ(judgement.unapplied, (std::vector<UnappliedLimit>{{MP_RFLEV, L"the receiver is not calibrated", 1}}));
}

TEST(Judge, AChannelsVerdictIsItsWorstAndTheRunsTheWorstOfAll)
{
    FinishedRun run = TestRun(
        {TestChannel(1, 474, {{MP_MER, L"39.0"}, {MP_BER, L"3E-4"}}), TestChannel(2, 482, {{MP_MER, L"32.0"}}),
         TestChannel(3, 490, {{MP_REF, L"OK"}, {MP_SYNC, L"UNSYNC"}, {MP_DATA, L"OK"}}, 1,
                     ChannelOutcome::notSynchronised),
         TestChannel(4, 498, {}, 1, ChannelOutcome::error), TestChannel(5, 506, {}, 1, ChannelOutcome::unmeasured)});
    const Limits limits = ReadLimits(merLimits, L"my.ini");
    const RunJudgement judgement = Judge(run, &limits);
    const Verdict expected[] = {Verdict::pass, Verdict::warning, Verdict::fail, Verdict::error, Verdict::notMeasured};
    for (size_t i = 0; i < std::size(expected); ++i) {
        EXPECT_EQ(judgement.channels[i].verdict, expected[i]) << i;
        EXPECT_EQ(judgement.Count(expected[i]), 1);
    }
    EXPECT_EQ(judgement.channels[2].reason, L"not synchronised: symbol rate and carrier UNSYNC");
    EXPECT_EQ(judgement.ExitCode(), 1);
    EXPECT_EQ(VerdictSentence(run, judgement),
              L"FAIL, INCOMPLETE: 1 of 5 channels pass, 1 with a warning, 1 fails, 1 error of the instrument, 1 not "
              L"measured. Worst: C3 490 MHz, not synchronised: symbol rate and carrier UNSYNC.");

    run.channels.resize(2);
    run.selection.resize(2);
    EXPECT_THAT(VerdictSentence(run, Judge(run, &limits)),
                HasSubstr(L"Worst: C2 482 MHz, MER 32.0 dB is 1 dB below the warning limit of 33 dB."));
    EXPECT_EQ(Judge(run, &limits).ExitCode(), 0) << "warnings pass";
    EXPECT_EQ(Judge(run, nullptr).verdict, Verdict::pass) << "without limits the locks decide";
    EXPECT_EQ(Judge(TestRun({}), &limits).ExitCode(), 1) << "nothing measured is no pass";

    // Across parameters: half a warning band is less than two thirds of one.
    const RunJudgement mixed = JudgeOne(TestChannel(1, 474, {{MP_MER, L"32.0"}, {MP_BER, L"1.26E-4"}}),
                                        merLimits + "[ber]\nWarn Above=1e-4\nFail Above=2e-4\n");
    EXPECT_EQ(mixed.channels.front().Worst()->parameter, MP_MER);
}

TEST(Judge, HoldsEachChannelAgainstTheLimitsOfItsOwnOrderOfQam)
{
    FinishedRun run = TestRun({TestChannel(1, 474, {{MP_MER, L"30.0"}}), TestChannel(2, 482, {{MP_MER, L"30.0"}})});
    run.channels[1].orderOfQam = 64;
    const Limits limits = ReadLimits("[mer 64-QAM]\nFail Below=26\n[mer]\nFail Below=31\n", L"");
    const RunJudgement judgement = Judge(run, &limits);
    EXPECT_EQ(judgement.channels[0].reason, L"MER 30.0 dB is 1 dB below the limit of 31 dB");
    EXPECT_EQ(judgement.channels[1].verdict, Verdict::pass);
}

TEST(LevelSteps, AreBetweenNeighboursOfOnePassNoFurtherApartThanAChannelIsWide)
{
    const auto channel = [](int32_t number, double frequency, const wchar_t* level, int32_t pass = 1) {
        return TestChannel(number, frequency, {{MP_RFLEV, level}}, pass);
    };
    const FinishedRun run = TestRun({channel(1, 490, L"60"), channel(2, 482, L"63"), channel(3, 499, L"50"),
                                     channel(4, 507, L"---"), channel(1, 490, L"61", 2)});
    EXPECT_EQ(LevelSteps(run), (std::vector<std::optional<double>>{-3.0, {}, {}, {}, {}}));
    const Limits limits = ReadLimits("[step]\nFail Above=2\n", L"");
    EXPECT_EQ(Judge(run, &limits).channels[0].reason, L"level step 3 dB is 1 dB above the limit of 2 dB");
}

TEST(CompareRuns, ShowsWhatDriftedAndWhatCameAndWent)
{
    const auto channel = [](int32_t number, double frequency, const wchar_t* level, const wchar_t* ber) {
        return TestChannel(number, frequency, {{MP_RFLEV, level}, {MP_BER, ber}});
    };
    const FinishedRun before = TestRun({channel(1, 474, L"60.0", L"<1.7E-8"), channel(2, 482, L"60.0", L"1E-8"),
                                        channel(3, 490, L"60.0", L"---"), channel(4, 498, L"60.0", L"1E-8")});
    FinishedRun after = TestRun({channel(7, 474, L"58.0", L"<1.0E-8"), channel(8, 482, L"57.9", L"1E-6"),
                                 channel(9, 490, L"60.0", L"1E-8"), channel(10, 506, L"60.0", L"1E-8")});
    after.channels[2].outcome = ChannelOutcome::notSynchronised;
    const RunComparison comparison = CompareRuns(before, after, {{MP_RFLEV, 2}, {MP_BER, 1}});
    std::vector<std::wstring> texts;
    for (const RunChange& change : comparison.changes) {
        texts.push_back(change.channel + L"|" + change.parameter + L"|" + change.before + L"|" + change.after + L"|" +
                        change.change);
    }
    EXPECT_THAT(texts, ElementsAre(L"C8 482 MHz|RF level|60.0 dBµV|57.9 dBµV|-2.1 dB",
                                   L"C8 482 MHz|BER before RS|1E-8|1E-6|+2 decades",
                                   L"C9 490 MHz|outcome|synchronised|not synchronised|",
                                   L"C4 498 MHz|256-QAM channel|synchronised|not in the run|",
                                   L"C10 506 MHz|256-QAM channel|not in the run|synchronised|"));
    EXPECT_EQ(comparison.channels, 3);
    EXPECT_EQ(comparison.changed, 4);
    EXPECT_TRUE(CompareRuns(before, before, {{MP_RFLEV, 0}}).changes.empty());

    FinishedRun denser = before;
    denser.channels[3].orderOfQam = 64;
    EXPECT_EQ(CompareRuns(before, denser, {}).changes.at(0).parameter, L"64-QAM channel") << "another signal";
    EXPECT_EQ(CompareRuns(before, denser, {}).changed, 2);

    FinishedRun blind = before;
    blind.channels[0] = TestChannel(1, 474, {{MP_BER, L"1E-8"}});
    blind.channels[1].outcome = ChannelOutcome::unmeasured;
    EXPECT_EQ(CompareRuns(before, blind, {{MP_RFLEV, 9}}).changes.at(0).after, L"not measured")
        << "a reading that went";
    EXPECT_EQ(CompareRuns(before, blind, {{MP_RFLEV, 9}}).changed, 2);
    EXPECT_EQ(CompareRuns(blind, blind, {{MP_RFLEV, 9}}).changed, 1) << "what nobody measured is not unchanged";
}

}  // namespace
}  // namespace tvn2x
