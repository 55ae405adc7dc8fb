#include "host/run/RunRecords.h"

#include <cmath>
#include <cstring>

#include "host/judge/SignalAnalysis.h"
#include "host/report/JsonReport.h"
#include "host/run/Sha256.h"
#include "support/FixedLocale.h"
#include "support/TestFiles.h"
#include "support/TestRun.h"

namespace tvn2x {
namespace {

void Read(const std::string& content)
{
    ReadRun(content, L"run.jsonl");
}

FinishedRun MixedRun()
{
    FinishedRun run = TestRun(
        {TestChannel(1, 474, {{MP_RFLEV, L"61.1"}, {MP_BER, L"<1.7E-8"}}),
         TestChannel(2, 482, {{MP_DATA, L"INTERMITTENT"}, {MP_MER, L"---"}}, 1, ChannelOutcome::notSynchronised),
         TestChannel(3, 490, {}, 1, ChannelOutcome::unmeasured)});
    run.channels[2].label = L"a \"quoted\" \x01 name";
    RunSetup second = run.setups[0];
    second.firstChannel = 3;
    second.settings.orderOfQam = run.channels[2].orderOfQam = 64;
    run.setups.push_back(second);
    return run;
}

TEST(Sha256, AgreesWithThePublishedVectors)
{
    EXPECT_EQ(Sha256("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"),
              L"248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1");
    EXPECT_EQ(Sha256(std::string(1000000, 'a')), L"cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

TEST(MakeReading, HasTheNumberThatWasMeasuredOrTheBoundInItsText)
{
    constexpr std::optional<double> none;
    const std::tuple<int32_t, const wchar_t*, std::optional<double>, Reading> cases[] = {
        {MP_RFLEV, L"61,1", 61.0625149, {.parameter = 15, .text = L"61,1", .value = 61.0625, .unit = L"dBmV"}},
        {MP_BER, L"<1,7E-8", none, {.parameter = 16, .text = L"<1,7E-8", .value = 1.7e-8, .bound = Bound::below}},
        {MP_BER, L"<1.7E-8", 0, {.parameter = 16, .text = L"<1.7E-8", .value = 1.7e-8, .bound = Bound::below}},
        {MP_BER, L">much", none, {.parameter = 16, .text = L">much", .bound = Bound::above}},
        {MP_MER, L"OVER", none, {.parameter = 27, .text = L"OVER", .bound = Bound::above, .unit = L"dB"}},
        {MP_MER, L"---", none, {.parameter = 27, .text = L"---", .unit = L"dB"}},
    };
    for (const auto& [parameter, cell, measured, reading] : cases) {
        EXPECT_EQ(MakeReading(parameter, cell, measured, L"dBmV", CommaLocale()), reading) << reading.text;
    }
}

TEST(RunRecords, ARunReadsBackAsItWasWritten)
{
    FinishedRun run = MixedRun();
    run.passes = 0;
    run.interval = 900;
    run.protocol = {.site = L"Linz", .outlet = L"3rd floor", .by = L"A. Huber", .order = L"4711", .remark = L"a\nb"};
    run.stopped = true;
    const StoredRun stored = ReadRun(ResultText(run), L"run.jsonl");
    EXPECT_EQ(stored.run, run);
    EXPECT_FALSE(stored.isTorn);
    run.resumed = {L"2026-11-22T00:00:00.000Z"};
    run.receiver.simulation = {L"C:\\data\\town.ini", std::wstring(64, L'b'), L"7"};
    run.receiver.recordings = {L"C:\\signals", L"a.wav 301 to 311 MHz"};
    run.channels[0].details = {L"a.wav, 1.0 of 2.0 s", true, {{-489, 312}, {3, -3}}};
    const RunJudgement judgement = Judge(run, nullptr);
    EXPECT_EQ(ReadRun(ResultText(run, &judgement), L"").run, run) << "verdicts are passed over";

    FinishedRun early = run;
    early.setups[0].notes = L"{\\rtf1 {\\b Site:} north\\par}";
    EXPECT_EQ(ReadRun(RunLine(early), L"").run.setups[0].notes, L"Site: north");
    // Early files have one setup, and do not count its channels.
    std::string alone = RunLine(TestRun({TestChannel(1, 474, {})}));
    for (const auto& [from, to] :
         {std::pair{"\"setups\":[", "\"setup\":"}, {"\"firstChannel\":1,", ""}, {"}],", "},"}}) {
        alone.replace(alone.find(from), std::strlen(from), to);
    }
    EXPECT_EQ(ReadRun(alone, L"").run.setups, TestRun({}).setups);
    const FinishedRun resumed =
        ReadRun(RunLine(run) + EndLine(run) + ResumedLine(L"2026-11-22T00:00:00.000Z"), L"").run;
    EXPECT_FALSE(resumed.stopped) << "going on takes the end back";
    EXPECT_EQ(resumed.ended, L"");
    EXPECT_EQ(resumed.resumed.back(), L"2026-11-22T00:00:00.000Z");
}

TEST(RunRecords, WhatSomebodyEditedIsJudgedByItsLocks)
{
    const FinishedRun run = TestRun({TestChannel(1, 474, {{MP_MER, L"39,1"}})});
    const std::string text = ResultText(run);
    EXPECT_EQ(ReadRun(text, L"").run.channels[0].Find(MP_MER)->text, L"39.1") << "one decimal mark, the reader's";
    const std::tuple<const char*, const char*, ChannelOutcome> edits[] = {
        {R"("data":"OK")", R"("data":"UNSYNC")", ChannelOutcome::notSynchronised},
        {R"("status":"Done")", R"("status":"Control Error")", ChannelOutcome::error},
        {R"("outcome":"synchronised")", R"("outcome":"not measured")", ChannelOutcome::unmeasured}};
    for (const auto& [from, to, outcome] : edits) {
        std::string edited = text;
        edited.replace(edited.find(from), std::strlen(from), to);
        EXPECT_EQ(ReadRun(edited, L"").run.channels[0].outcome, outcome) << to;
    }
}

TEST(RunRecords, EveryCutThroughAJournalLeavesItsWholeLines)
{
    const FinishedRun run = MixedRun();
    const std::string head = RunLine(run);
    const std::string first = ChannelLine(run.channels[0]);
    const std::string all = head + first + ChannelLine(run.channels[1]);
    for (size_t size = 0; size <= all.size(); ++size) {
        const std::string cut = all.substr(0, size);
        if (size < head.size()) {
            ExpectRefusals(Read, {{cut, size == 0 ? L"is empty" : L"has no whole line"}});
            continue;
        }
        const StoredRun stored = ReadRun(cut, L"");
        const size_t channels = size < head.size() + first.size() ? 0 : size < all.size() ? 1 : 2;
        EXPECT_EQ(stored.run.channels.size(), channels) << size;
        EXPECT_EQ(stored.isTorn, stored.wholeBytes != size);
        EXPECT_TRUE(stored.run.ended.empty());
    }
    EXPECT_TRUE(ReadRun(head + std::string(100, '\0'), L"").isTorn) << "blocks that never reached the disk";
}

TEST(RunRecords, NamesTheLineThatIsNoRecord)
{
    const FinishedRun run = MixedRun();
    const std::string head = RunLine(run);
    std::string channel = ChannelLine(run.channels[0]);
    FinishedRun disordered = run;
    disordered.setups[1].firstChannel = 1;
    const auto with = [&](const std::string& from, const std::string& to) {
        std::string changed = channel;
        changed.replace(changed.find(from), from.size(), to);
        return head + changed;
    };
    ExpectRefusals(Read, {{"hello\n", L"run.jsonl, line 1: \"hello\" is no JSON. Give a result file"},
                          {channel, L"line 1: a result begins with its record \"run\""},
                          {head + head, L"line 2: a result begins with its record \"run\", and has one"},
                          {with("\"number\":1", "\"number\":1e99"), L"\"number\" has to be a whole number"},
                          {with("\"pass\":1", "\"pass\":0"), L"\"pass\" is outside 1 to"},
                          {with("\"seconds\"", "\"secs\""), L"line 2: \"seconds\" is missing"},
                          {with("\"number\":1", "\"number\":9"), L"\"number\" is 9, which was not to be measured"},
                          {with("\"pass\":1", "\"pass\":2"), L"\"pass\" is 2 of 1"},
                          {head + channel + channel, L"run.jsonl: channel 1 of pass 1 is there twice"},
                          {RunLine(TestRun({})), L"\"selection\" has to name channels"},
                          {RunLine(disordered), L"\"setups\" has to name setups, by \"firstChannel\" from 1 on"},
                          {with("\"below\"", "\"beside\""), L"is \"beside\", which is not known"},
                          {with("\"value\":61.1", "\"value\":\"x\""), L"\"value\" has to be a number"},
                          {"{\"record\":\"run\",\"format\":2}\n", L"\"format\" is 2, this program reads 1"}});
}

TEST(ErrorBudget, AddsUpToTheMerAndNamesItsLargestPart)
{
    const auto budget = BudgetOf(Misadjusted(1, 354));
    EXPECT_EQ(budget->Largest(), Impairment::iqImbalance);
    double power = 0, share = 0;
    for (size_t i = 0; i < impairments; ++i) {
        power += budget->power[i];
        share += budget->share[i];
    }
    EXPECT_NEAR(-10 * std::log10(power), 31.3, 0.2);
    EXPECT_NEAR(share, 1, 1e-9);
    EXPECT_EQ(BudgetOf(TestChannel(1, 354, {{MP_MER, L"---"}})), std::nullopt);
    EXPECT_EQ(BudgetOf(TestChannel(1, 354, {{MP_MER, L"31"}}))->Largest(), Impairment::other);
}

}  // namespace
}  // namespace tvn2x
