#include "host/run/FinishedRun.h"

#include "host/run/ChannelSelection.h"
#include "host/run/Journal.h"
#include "host/run/ParameterNames.h"
#include "host/run/ScanSummary.h"
#include "host/run/UserNumber.h"
#include "support/FixedLocale.h"
#include "support/TestFiles.h"
#include "support/TestRun.h"
#include "support/TestSession.h"
#include "support/TestTable.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// Runs as they go on, and what a person writes of them.
class Session : public TestSession
{
public:
    Session() { run.passes = 1; }

    const Deeds deeds{
        {"plan",
         [this] {
             run.selection.push_back({Number(0), L"C" + Word(0), Value(1), 6.9});
         }},
        {"result", [this] { AddResult(); }},
        {"turns-into", [this] { run.channels.at(static_cast<size_t>(Number(0))).outcome = Outcome(1); }},
        {"passes", [this] { run.passes = Number(0); }},
        {"second-setup", [this] { AddSetup(run.setups, 'b', Number(0)).settings.orderOfQam = 64; }},
        {"complete", [this] { run.Complete(); }},
        {"given", [this] { AddSetup(given, words[0][0], Number(1)); }},
        {"summary", [this] { summary = {.channels = Number(0), .stopped = words[1] == "stopped"}; }},
        {"count", [this] { summary.Count(Outcome(0)); }},
        {"took", [this] { summary.seconds = Value(0); }},
    };
    const Sights sights{
        {"results", [this] { return Results(); }},
        {"planned", [this] { return Told(run.Planned()); }},
        {"measured", [this] { return Told(run.Measured()); }},
        {"seconds", [this] { return NumberText(run.Seconds()); }},
        {"complete", [this] { return Told(run.IsComplete()); }},
        {"one-pass", [this] { return Told(run.IsOnePass()); }},
        {"left", [this] { return Left(); }},
        {"outcome", [this] { return OutcomeOfLocks(); }},
        {"other-setups",
         [this] { return Refusal([&] { RequireSameSetups(run, L"j.jsonl", given, Number(0), L""); }); }},
        {"summary", [this] { return summary.Text(); }},
        {"user-mark", [this] { return WithUserMark(Text(), CommaLocale()); }},
        {"number-text", [this] { return NumberText(Value(0)); }},
        {"local", [this] { return LocalText(Text()); }},
        {"interval", [this] { return Interval(); }},
        {"parameters", [this] { return Parameters(); }},
    };

private:
    ChannelOutcome Outcome(size_t word) const
    {
        constexpr std::array names{"unmeasured", "synchronised", "notSynchronised", "error"};
        return static_cast<ChannelOutcome>(std::ranges::find(names, words.at(word)) - names.begin());
    }
    /// Number and pass of a channel, and the outcome.
    void AddResult()
    {
        const auto planned = std::ranges::find(run.selection, Number(0), &PlannedChannel::number);
        run.channels.push_back(TestChannel(Number(0), planned->frequency, {}, Number(1), Outcome(2)));
    }
    static RunSetup& AddSetup(std::vector<RunSetup>& setups, char hash, int32_t firstChannel)
    {
        RunSetup& setup = setups.emplace_back();
        setup.path = L"more.ini";
        setup.sha256 = std::wstring(64, static_cast<wchar_t>(hash));
        setup.firstChannel = firstChannel;
        return setup;
    }
    /// Pass, number, order of QAM and outcome of each.
    std::wstring Results() const
    {
        std::wstring all;
        for (const ChannelResult& channel : run.channels) {
            all += (all.empty() ? L"" : L"; ") + std::to_wstring(channel.pass) + L" " + channel.Name() + L" " +
                   std::to_wstring(channel.orderOfQam) + L" " + OutcomeText(channel.outcome);
        }
        return all;
    }
    std::wstring Left() const
    {
        std::wstring all;
        for (const ChannelTurn& turn : TurnsLeft(run)) {
            all += (all.empty() ? L"" : L" ") + std::to_wstring(turn.pass) + L"/" + std::to_wstring(turn.channel);
        }
        return all;
    }
    /// Of a status, where "-" is none, and locks.
    std::wstring OutcomeOfLocks() const
    {
        std::vector<Reading> readings{TestReading(MP_MER, L"39.0")};
        for (size_t i = 1; i < words.size() && !words[i].empty(); ++i) {
            readings.push_back({.parameter = MP_REF + static_cast<int32_t>(i) - 1, .text = Word(i)});
        }
        return OutcomeText(OutcomeOf(words[0] == "-" ? L"" : Word(0), readings));
    }
    std::wstring Interval() const
    {
        double seconds = 0;
        const std::wstring refusal = Refusal([&] { seconds = ReadInterval(Text()); });
        return refusal.empty() ? NumberText(seconds) : refusal;
    }
    std::wstring Parameters() const
    {
        std::wstring all;
        const std::wstring refusal = Refusal([&] {
            for (const int32_t parameter : SelectParameters(Text())) {
                all += (all.empty() ? L"" : L" ") + std::to_wstring(parameter);
            }
        });
        return refusal.empty() ? all : refusal;
    }

    FinishedRun run = TestRun({});
    std::vector<RunSetup> given;
    ScanSummary summary;
};

TEST(Run, IsWhatEachSessionExpects)
{
    PlaySessions("run-sessions.txt", [](const std::string&) { return std::make_unique<Session>(); });
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

}  // namespace
}  // namespace tvn2x
