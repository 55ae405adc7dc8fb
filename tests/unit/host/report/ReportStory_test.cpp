#include <gmock/gmock.h>

#include <regex>

#include "host/report/ConstellationPlot.h"
#include "host/report/Diagnosis.h"
#include "host/report/HtmlReport.h"
#include "host/report/JsonReport.h"
#include "host/report/JunitReport.h"
#include "host/report/RunGrid.h"
#include "support/TestFiles.h"
#include "support/TestRun.h"
#include "support/TimeZone.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

using enum ChannelOutcome;

Limits StoryLimits()
{
    Limits limits = ReadLimits(
        "[limits]\nName=Story <1>\nDate=2026-11-22\n[rflev]\nFail Below=54\nWarn Below=57\nWarn Above=71\n"
        "Fail Above=74\n[mer 256-QAM]\nFail Below=32\nWarn Below=34\n[ber]\nWarn Above=1e-5\nFail Above=1e-4\n"
        "[step]\nFail Above=3\n[drift]\nrflev=2\nmer=1.5\nber=0.5\n",
        L"C:\\limits\\story.ini");
    limits.sha256 = std::wstring(64, L'c');
    return limits;
}

/// Two setups of different orders, in two passes the second of which was stopped.
FinishedRun Mixed()
{
    FinishedRun run = TestRun(
        {TestChannel(1, 474, {{MP_RFLEV, L"61.0"}, {MP_BER, L"<1.7E-8"}, {MP_MER, L"38.5"}}),
         TestChannel(2, 482.25, {{MP_RFLEV, L"56.5"}, {MP_BER, L"2.0E-5"}, {MP_MER, L"35.0"}}), Misadjusted(3, 490),
         TestChannel(4, 498, {}, 1, error),
         TestChannel(5, 650, {{MP_RFLEV, L"UNDER"}, {MP_MER, L"---"}, {MP_SYNC, L"UNSYNC"}}, 1, notSynchronised),
         TestChannel(6, 658, {{MP_RFLEV, L"72.0"}, {MP_BER, L"3.0E-8"}, {MP_MER, L"27.0"}}),
         TestChannel(1, 474, {{MP_RFLEV, L"60.0"}, {MP_BER, L"1.0E-7"}, {MP_MER, L"33.0"}}, 2),
         TestChannel(2, 482.25, {{MP_RFLEV, L"59.0"}, {MP_BER, L"1.0E-6"}, {MP_MER, L"36.0"}}, 2)});
    for (ChannelResult& channel : run.channels) {
        channel.label = channel.number == 2 ? L"</td><script>alert(1)</script>&\"'\x01" : channel.label;
        channel.orderOfQam = channel.number > 4 ? 64 : 256;
        channel.began = UtcText(1'795'266'000'000LL + channel.pass * 60'000LL + channel.number * 1000LL);
    }
    run.channels[2].details = {L"<a.wav>, 1.0 of 2.0 s", false, {{32, -32}, {-489, 312}}};
    run.channels[3].details.remark = L"the fuse";
    run.channels[4].details.remark = L"no carrier";
    run.selection.push_back({7, L"", 666, 6.9});
    run.columns = {{MP_USERFIELD, L"User Field"},  {MP_FREQUENCY, L"<b>"}, {MP_SYMBOLRATE, L"Symbol Rate"},
                   {MP_RFLEV, L"RF Level (dBµV)"}, {MP_BER, L"BER"},       {MP_MER, L"MER"},
                   {MP_SYNC, L"Carrier Sync"},     {MP_STATUS, L"Status"}, {MP_TIMESTAMP, L"Time Stamp"}};
    run.setups.push_back(run.setups[0]);
    run.setups[1].path = L"C:\\data\\more.v2.ini";
    run.setups[1].firstChannel = 5;
    run.setups[1].settings.orderOfQam = 64;
    run.setups[1].settings.sawBandwidth = 0;
    run.setups[1].settings.referenceSource = 1;
    run.protocol = {.site = L"<Linz>", .outlet = L"3rd floor", .by = L"A. Huber", .order = L"4711", .remark = L"rain"};
    run.receiver.simulation = {L"C:\\data\\town.ini", std::wstring(64, L'b'), L"7"};
    run.resumed = {L"2026-11-21T13:01:30.000Z"};
    run.passes = 2;
    run.interval = 900;
    run.stopped = true;
    run.Complete();
    return run;
}

/// What there was of it the day before: one channel good, one with less level, one not reached, one that is no more.
FinishedRun DayBefore()
{
    FinishedRun run =
        TestRun({TestChannel(1, 474, {{MP_RFLEV, L"63.0"}, {MP_BER, L"1.0E-8"}, {MP_MER, L"38.5"}}),
                 TestChannel(2, 482.25, {{MP_RFLEV, L"58.0"}, {MP_MER, L"36.0"}}),
                 TestChannel(3, 490, {}, 1, unmeasured), TestChannel(4, 730, {}), TestChannel(5, 650, {})});
    run.channels[4].orderOfQam = 64;
    run.receiver.hardware = L"";
    run.receiver.recordings = {L"C:\\signals", L"a.wav 301 to 311 MHz"};
    run.setups[0].notes = L"";
    run.ended = L"";
    return run;
}

class Story
{
public:
    void Tell(const std::string& what, const std::string& text)
    {
        // The style sheet is no part of the story, and the axes of the plots are tested with the plots.
        static const std::regex left(R"(<line class="grid"[^>]*/><text[^>]*>.*?</text>)"), tags("><");
        std::string kept = text;
        if (const size_t style = kept.find("<style>"); style != std::string::npos) {
            kept.erase(style, kept.find("</style>") - style);
        }
        told += "=== " + what + "\n" + std::regex_replace(std::regex_replace(kept, left, ""), tags, ">\n<") + "\n";
    }
    void Tell(const std::string& what, const std::wstring& text) { Tell(what, ToUtf8(text)); }

    void TellReports(const std::string& what, const FinishedRun& run, const Limits* limits)
    {
        const RunJudgement judgement = Judge(run, limits);
        Tell(what + " as a page", HtmlReport(run, judgement, limits));
        Tell(what + " as records", ResultText(run, &judgement));
        Tell(what + " as tests", JunitReport(run, judgement));
        Tell(what + " as grid", RunGrid(run, run.channels.empty() ? 1 : run.channels.back().pass).Render(100));
    }

    std::string told;
};

Diagnosis BadInstallation()
{
    return {.facts = {{L"Program", L"tvnhost 1.0.0"}, {L"Folder", L"C:\\\"TV\""}},
            .items = {{L"TVN2x.Setup", 64, false, L"C:\\tv\\tvn2x.dll", L"1.0.0", L""},
                      {L"TVN2x.Measure", 32, true, L"C:\\old.dll", L"", L"no such file"}},
            .complaints = {{L"C:\\old.dll is no more.", L"Install the product anew."}, {L"Twice.", L"Remove one."}}};
}

/// Of each order one symbol, at the outermost point.
std::string Constellations()
{
    std::vector<ChannelResult> channels;
    for (const auto& [order, outermost] : {std::pair(4, 1), {16, 3}, {32, 5}, {64, 7}, {128, 11}}) {
        channels.push_back(TestChannel(order, order, {}));
        channels.back().orderOfQam = order;
        channels.back().details.symbols = {{32 * outermost, 32}};
    }
    const ChannelJudgement failed{.verdict = Verdict::fail, .findings = {}, .reason = {}};
    std::vector<ReportRow> rows;
    for (const ChannelResult& channel : channels) {
        rows.push_back({channel, failed, {}});
    }
    return ConstellationSection(TestRun({}), rows);
}

TEST(ReportStory, IsToldInEveryFormAsWritten)
{
    const TimeZone india("IST-5:30");
    Story story;
    const Limits limits = StoryLimits();
    const FinishedRun mixed = Mixed(), before = DayBefore();
    story.TellReports("two passes of two setups", mixed, &limits);
    story.Tell("its first pass", RunGrid(mixed, 1).Render(100));
    story.TellReports("the day before, without limits", before, nullptr);
    story.Tell("what changed", ComparisonGrid(CompareRuns(before, mixed, limits.drift)).Render(100));
    const FinishedRun good = TestRun({TestChannel(1, 474, {{MP_RFLEV, L"56.0"}, {MP_MER, L"39.0"}})});
    const Limits levels = ReadLimits("[rflev]\nWarn Below=57\n", L"levels.ini");
    const Limits others = ReadLimits("[mer 64-QAM]\nFail Below=26\n", L"others.ini");
    story.Tell("a warning as tests", JunitReport(good, Judge(good, &levels)));
    story.Tell("no limit as tests", JunitReport(good, Judge(good, &others)));
    FinishedRun none = TestRun({});
    none.passes = 0;
    story.Tell("no channel as a page", HtmlReport(none, Judge(none, nullptr), nullptr));
    story.Tell("constellations", Constellations());
    for (const Diagnosis& diagnosis : {BadInstallation(), Diagnosis{{{L"Program", L"tvnhost 1.0.0"}}, {}, {}}}) {
        story.Tell("diagnosis", DiagnosisText(diagnosis, 100));
        story.Tell("diagnosis as data", DiagnosisJson(diagnosis));
    }
    ExpectTold("report-story.txt", story.told);
}

}  // namespace
}  // namespace tvn2x
