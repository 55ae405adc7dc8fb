#include "host/run/FinishedRun.h"

#include "host/run/ChannelSelection.h"
#include "host/run/Journal.h"
#include "host/run/ParameterNames.h"
#include "host/run/ScanSummary.h"
#include "host/run/UserNumber.h"
#include "support/FixedLocale.h"
#include "support/TestFiles.h"
#include "support/TestRun.h"
#include "support/TestTable.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
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
    for (const auto& [number, expected] :
         {std::pair{L"61.1", L"61,1"}, {L"<1.7E-8", L"<1,7E-8"}, {L">2.0e+3", L">2,0e+3"}}) {
        EXPECT_EQ(WithUserMark(number, CommaLocale()), expected);
    }
    for (const wchar_t* const kept :
         {L"-0,25", L"105940", L"OVER", L"1.2.3", L"5.", L".5", L"1.5 dB", L"", L"1.5E", L"1.5E-"}) {
        EXPECT_EQ(WithUserMark(kept, CommaLocale()), kept);
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

/// A file on a disk that can be full.
class FullableFile final : public GrowingFile
{
public:
    FileFault Append(std::string_view bytes) override
    {
        if (fault == FileFault::none) {
            content += bytes;
        }
        return fault;
    }
    std::string content;
    FileFault fault = FileFault::none;
};

TEST(Journal, KeepsWhatAFullDiskRefusesAndTellsOnce)
{
    FullableFile file;
    std::vector<FileFault> told;
    Journal journal(file, [&](FileFault fault) { told.push_back(fault); });
    journal.Add("one\n");
    file.fault = FileFault::diskFull;
    journal.Add("two\n");
    journal.Add("three\n");
    EXPECT_FALSE(journal.IsWhole());
    file.fault = FileFault::none;
    journal.Add("four\n");
    EXPECT_TRUE(journal.IsWhole());
    EXPECT_EQ(file.content, "one\ntwo\nthree\nfour\n");
    EXPECT_THAT(told, ElementsAre(FileFault::diskFull, FileFault::none));
}

TEST(Journal, ARunGoesOnBehindTheChannelsThatItHasPassByPass)
{
    FinishedRun run = TestRun({TestChannel(2, 482, {}), TestChannel(5, 506, {}), TestChannel(7, 522, {})});
    EXPECT_TRUE(TurnsLeft(run).empty());
    run.passes = 2;
    EXPECT_THAT(TurnsLeft(run), ElementsAre(ChannelTurn{2, 2}, ChannelTurn{2, 5}, ChannelTurn{2, 7}));
    run.channels.push_back(TestChannel(2, 482, {}, 2));
    run.channels.push_back(TestChannel(5, 506, {}, 2));
    EXPECT_THAT(TurnsLeft(run), ElementsAre(ChannelTurn{2, 7}));
    run.channels.back().outcome = ChannelOutcome::unmeasured;
    EXPECT_THAT(TurnsLeft(run), ElementsAre(ChannelTurn{2, 5}, ChannelTurn{2, 7})) << "a stopped channel is none";
    run.channels[3].outcome = ChannelOutcome::error;
    EXPECT_EQ(TurnsLeft(run).size(), 2u) << "an error is a result";
    run.channels.resize(3);
    run.passes = 0;
    EXPECT_EQ(TurnsLeft(run).size(), 3u) << "without an end";
}

TEST(FinishedRun, IsOnePassWhereNoChannelHasItsLatestResultInAnother)
{
    FinishedRun run = TestRun({TestChannel(1, 474, {}), TestChannel(2, 482, {}, 1, ChannelOutcome::unmeasured)});
    EXPECT_TRUE(run.IsOnePass()) << "stopped in the first pass";
    run.channels.push_back(TestChannel(1, 474, {}, 2));
    run.channels.push_back(TestChannel(2, 482, {}, 2));
    EXPECT_TRUE(run.IsOnePass());
    run.channels[1].outcome = ChannelOutcome::synchronised;
    run.channels[3].outcome = ChannelOutcome::unmeasured;
    EXPECT_FALSE(run.IsOnePass()) << "stopped in the second: the first has what it left out";
    EXPECT_TRUE(TestRun({}).IsOnePass());
}

TEST(Journal, RefusesAnotherSetup)
{
    FinishedRun run = TestRun({TestChannel(1, 474, {}), TestChannel(2, 482, {})});
    const auto add = [](std::vector<RunSetup>& setups, wchar_t hash, int32_t first) {
        RunSetup& setup = setups.emplace_back();
        setup.path = L"other.ini";
        setup.sha256 = std::wstring(64, hash);
        setup.firstChannel = first;
    };
    add(run.setups, L'b', 2);
    run.setups.back().path = L"more.ini";
    const auto refusal = [&](const std::vector<std::pair<wchar_t, int32_t>>& given, int32_t channels) {
        std::vector<RunSetup> setups;
        for (const auto& [hash, first] : given) {
            add(setups, hash, first);
        }
        return Refusal([&] { RequireSameSetups(run, L"j.jsonl", setups, channels, L""); });
    };
    EXPECT_EQ(refusal({{L'a', 1}, {L'b', 2}}, 2), L"");
    EXPECT_THAT(refusal({{L'b', 1}, {L'a', 2}}, 2),
                HasSubstr(L"j.jsonl belongs to the setup C:\\data\\net.ini as it was on 2026-11-21"));
    EXPECT_THAT(refusal({{L'a', 1}}, 2), HasSubstr(L"as many setups as net.ini, more.ini, and 1 is given"));
    for (const auto& [first, channels] : {std::pair(2, 1), {3, 2}}) {
        EXPECT_THAT(refusal({{L'a', 1}, {L'b', first}}, channels),
                    HasSubstr(L"names channels that net.ini, more.ini does not have"));
    }
}

TEST(Journal, ReadsIntervals)
{
    for (const auto& [text, seconds] : {std::pair{L"90s", 90}, {L"15m", 900}, {L"1.5h", 5400}, {L"30", 30}}) {
        EXPECT_EQ(ReadInterval(text), seconds);
    }
    for (const wchar_t* bad : {L"", L"m", L"15 min", L"-1m", L"0s", L"8000h", L"nan"}) {
        EXPECT_THAT(Refusal([&] { ReadInterval(bad); }), HasSubstr(L"is no time from 1 second to 7 days")) << bad;
    }
}

std::vector<Setup::Channel> Network()
{
    return {{L"K45", 666, 6.9}, {L"K46", 674, 6.9},       {L"K47", 682.25, 6.9}, {L"Sport, live", 690, 6.9},
            {L"A-1", 698, 6.9}, {L"twice", 706, 6.9},     {L"twice", 714, 6.9},  {L"12", 722, 6.9},
            {L"", 730, 6.9},    {L"730.5 MHz", 738, 6.9}, {L"K45-A", 746, 6.9},  {L"A", 754, 6.9}};
}

TEST(ChannelSelection, NamesChannelsByLabelThenNumberThenFrequencyAndRefusesWhatMeansNoneOrTwo)
{
    for (const std::vector<std::string>& row : TestTable("channel-selections.tsv", 2)) {
        std::string numbers;
        const std::wstring refusal = Refusal([&] {
            for (const int32_t number : SelectChannels(FromUtf8(CellText(row[0])), Network())) {
                numbers += (numbers.empty() ? "" : " ") + std::to_string(number);
            }
        });
        if (refusal.empty()) {
            EXPECT_EQ(numbers, row[1]) << row[0];
        } else {
            EXPECT_THAT(refusal, HasSubstr(FromUtf8(CellText(row[1])))) << row[0];
        }
    }
    EXPECT_THAT(AllChannels({Network()[0], Network()[1]}), ElementsAre(1, 2));
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
