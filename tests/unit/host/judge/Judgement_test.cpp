#include "host/judge/Judgement.h"

#include "host/judge/RunComparison.h"
#include "host/judge/VerdictText.h"
#include "host/run/ParameterNames.h"
#include "support/TestFiles.h"
#include "support/TestRun.h"
#include "support/TestSession.h"
#include "support/TestTable.h"
#include "util/Encoding.h"
#include "util/modFormat.h"

namespace tvn2x {
namespace {

using testing::AllOf;
using testing::HasSubstr;

const std::string merLimits = "[mer]\nFail Below=31\nWarn Below=33\n";

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

/// Runs of 256-QAM that are judged and compared.
class Session : public TestSession
{
public:
    const Deeds deeds{
        {"channel", [this] { AddChannel(ChannelOutcome::synchronised, 0); }},
        {"channel-as", [this] { AddChannel(Outcome(), 1); }},
        {"pass", [this] { channels.back().pass = Number(0); }},
        {"order-of-qam", [this] { channels.back().orderOfQam = Number(0); }},
        {"outcome", [this] { channels.back().outcome = Outcome(); }},
        {"uncalibrated", [this] { channels.back().details.hasUnknownLevel = true; }},
        {"reading", [this] { AddReading(); }},
        {"limits", [this] { limits = ReadLimits(Bytes(), L"my.ini"); }},
        {"without-limits", [this] { limits.reset(); }},
        {"passes", [this] { passes = Number(0); }},
        {"killed", [this] { isKilled = true; }},
        {"before", [this] { before = Run(), channels.clear(); }},
        {"drift", [this] { drift[Parameter()] = Value(1); }},
    };
    const Sights sights{
        {"verdicts", [this] { return Verdicts(); }},
        {"reason", [this] { return Judged().channels.at(static_cast<size_t>(Number(0))).reason; }},
        {"margin", [this] { return Margin(); }},
        {"worst", [this] { return FromUtf8(FindReadingKind(Judged().channels.at(0).Worst()->parameter)->name); }},
        {"exit", [this] { return Told(Judged().ExitCode()); }},
        {"sentence", [this] { return VerdictSentence(Run(), Judged()); }},
        {"unapplied", [this] { return Unapplied(); }},
        {"steps", [this] { return Steps(); }},
        {"changes", [this] { return Changes(); }},
        {"compared", [this] { return Compared(); }},
    };

private:
    ChannelOutcome Outcome() const
    {
        constexpr std::array names{"unmeasured", "synchronised", "notSynchronised", "error"};
        return static_cast<ChannelOutcome>(std::ranges::find(names, words[0]) - names.begin());
    }
    int32_t Parameter(const std::string& name) const { return SelectParameters(FromUtf8(name)).at(0); }
    int32_t Parameter() const { return Parameter(words[0]); }
    /// Number, frequency and cells: "1 474 mer=39.0 ber=3E-4".
    void AddChannel(ChannelOutcome outcome, size_t from)
    {
        std::vector<std::pair<int32_t, std::wstring>> cells;
        for (size_t i = from + 2; i < words.size(); ++i) {
            const size_t sign = words[i].find('=');
            cells.emplace_back(Parameter(words[i].substr(0, sign)), FromUtf8(words[i].substr(sign + 1)));
        }
        channels.push_back(TestChannel(Number(from), Value(from + 1), cells, 1, outcome));
    }
    /// Parameter, cell, the number that was measured and the unit: "rflev 0.5012 0.501182 mV".
    void AddReading()
    {
        channels.back().readings.push_back(
            MakeReading(Parameter(), Word(1), std::stod(words.at(2)), Text(3), SystemLocale()));
    }
    FinishedRun Run() const
    {
        FinishedRun run = TestRun(channels);
        run.passes = passes;
        if (isKilled) {
            run.channels.pop_back();
        }
        return run;
    }
    RunJudgement Judged() const { return Judge(Run(), limits ? &*limits : nullptr); }
    std::wstring Verdicts() const
    {
        const RunJudgement judged = Judged();
        std::wstring verdicts = std::wstring(L"run ") + VerdictName(judged.verdict);
        for (const ChannelJudgement& channel : judged.channels) {
            verdicts += std::wstring(L", ") + VerdictName(channel.verdict);
        }
        return verdicts;
    }
    std::wstring Margin() const
    {
        return FormatNumber(*Judged().channels.at(0).Worst()->margin, L"0.0###", false, SystemLocale());
    }
    std::wstring Unapplied() const
    {
        std::wstring all;
        for (const UnappliedLimit& limit : Judged().unapplied) {
            all += (all.empty() ? L"" : L"; ") + FromUtf8(FindReadingKind(limit.parameter)->name) + L": " +
                   limit.reason + L" (" + std::to_wstring(limit.channels) + L")";
        }
        return all;
    }
    std::wstring Steps() const
    {
        std::wstring steps;
        for (const std::optional<double>& step : LevelSteps(Run())) {
            steps += (steps.empty() ? L"" : L" ") + (step ? FormatNumber(*step, false, SystemLocale()) : L"-");
        }
        return steps;
    }
    std::wstring Changes() const
    {
        std::wstring all;
        for (const RunChange& change : CompareRuns(before, Run(), drift).changes) {
            all += (all.empty() ? L"" : L"; ") + change.channel + L"|" + change.parameter + L"|" + change.before +
                   L"|" + change.after + L"|" + change.change;
        }
        return all;
    }
    std::wstring Compared() const
    {
        const RunComparison comparison = CompareRuns(before, Run(), drift);
        return std::to_wstring(comparison.changed) + L" of " + std::to_wstring(comparison.channels);
    }

    std::vector<ChannelResult> channels;
    std::optional<Limits> limits;
    int32_t passes = 1;
    bool isKilled = false;
    FinishedRun before;
    std::map<int32_t, double> drift;
};

TEST(Judge, GivesWhatEachSessionExpects)
{
    PlaySessions("judge-sessions.txt", [](const std::string&) { return std::make_unique<Session>(); });
}

}  // namespace
}  // namespace tvn2x
