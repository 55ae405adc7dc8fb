#include "host/live/LiveRun.h"

#include <gmock/gmock.h>

#include "support/FakeClock.h"
#include "support/TestRun.h"

namespace tvn2x {
namespace {

using testing::Each;
using testing::Field;
using testing::IsNull;

const std::wstring good = L"61.0", low = L"43.5";

class LiveRunTest : public testing::Test
{
protected:
    LiveRunTest() { live.Begin(PlanOf({Channel(1, good), Channel(2, good)})); }

    static ChannelResult Channel(int32_t number, const std::wstring& level, int32_t pass = 1,
                                 ChannelOutcome outcome = ChannelOutcome::synchronised)
    {
        ChannelResult channel =
            TestChannel(number, 306 + 8 * number, {{MP_RFLEV, level}, {MP_MER, L"39.0"}}, pass, outcome);
        channel.began = UtcText(pass * 60'000LL + number * 1000LL);
        return channel;
    }

    static FinishedRun PlanOf(std::vector<ChannelResult> channels)
    {
        FinishedRun run = TestRun(std::move(channels));
        run.passes = 0;
        run.channels.clear();
        return run;
    }

    static Limits LevelLimits()
    {
        Limits limits;
        limits.limits[{MP_RFLEV, 0}] = {.failBelow = 54, .warnBelow = {}, .warnAbove = {}, .failAbove = {}};
        limits.limits[{levelStep, 0}] = {.failBelow = {}, .warnBelow = {}, .warnAbove = 3, .failAbove = {}};
        return limits;
    }

    FakeClock clock;
    LiveStatePtr state;
    LiveRun live{L"2026-11-21T12:00:00.000Z", std::make_shared<Limits>(LevelLimits()), clock,
                 [this](LiveStatePtr next) { state = std::move(next); }};
};

TEST_F(LiveRunTest, TellsSinceWhenAChannelIsBadAndKeepsItsWorst)
{
    EXPECT_THAT(state->channels, Each(Field(&LiveChannel::latest, IsNull())));
    live.BeginPass(1, 2);
    live.BeginChannel(1);
    EXPECT_EQ(state->now.channel, 1);
    clock.Advance(3);
    live.EndChannel(Channel(1, good));
    EXPECT_EQ(state->now.channel, std::nullopt);
    EXPECT_EQ(state->now.left, 3);
    const LiveStatePtr before = state;
    live.EndChannel(Channel(2, low));
    const LiveChannel& second = state->channels[1];
    EXPECT_EQ(second.latest->judgement.verdict, Verdict::fail);
    EXPECT_EQ(second.badSince, Channel(2, low).began);
    EXPECT_GT(second.changed, before->version);
    EXPECT_LE(state->channels[0].changed, before->version);
    EXPECT_EQ(before->channels[1].latest, nullptr);
    live.EndPass(6, L"2026-11-21T12:00:06.000Z", "table");
    live.Wait(54);
    EXPECT_EQ(state->now.nextPass, 54);

    live.BeginPass(2, 2);
    EXPECT_EQ(state->now.nextPass, std::nullopt);
    live.EndChannel(Channel(1, good, 2));
    live.EndChannel(Channel(2, good, 2));
    EXPECT_EQ(state->channels[1].badSince, L"");
    EXPECT_EQ(state->channels[1].first->judgement.verdict, Verdict::fail);
    EXPECT_EQ(state->channels[1].worst->result.pass, 1);
    EXPECT_EQ(state->verdict.planned, 2);
    EXPECT_TRUE(RunOf(*state).IsComplete());
    EXPECT_FALSE(RunOf(*before).IsComplete());
    EXPECT_EQ(RunOf(*before).channels.size(), 2u) << "what is not measured is told";
    live.BeginChannel(1);
    live.End();
    EXPECT_EQ(state->now.channel, std::nullopt) << "stopped in the middle";
}

/// The level step of the second channel is the first one's fault.
TEST_F(LiveRunTest, JudgesTheNextChannelAnewWhereItsNeighbourHasChanged)
{
    live.BeginPass(1, 2);
    live.EndChannel(Channel(1, good));
    live.EndChannel(Channel(2, good));
    const uint64_t changed = state->channels[1].changed;
    live.EndChannel(Channel(1, low, 2));
    EXPECT_EQ(state->channels[1].latest->judgement.verdict, Verdict::warning);
    EXPECT_EQ(state->channels[1].badSince, L"");
    EXPECT_GT(state->channels[1].changed, changed);
}

TEST_F(LiveRunTest, TellsWhatIsWrongWithTheReceiverUntilItMeasuresAgain)
{
    live.BeginPass(1, 2);
    live.EndChannel(Channel(1, good, 1, ChannelOutcome::error), L"no answer");
    live.EndChannel(Channel(2, good, 1, ChannelOutcome::error));
    EXPECT_EQ(state->now.fault, L"Control Error");
    EXPECT_EQ(state->now.faultSince, Channel(1, good).began);
    EXPECT_EQ(state->channels[0].errors, 1);
    live.EndChannel(Channel(1, good, 2));
    EXPECT_EQ(state->now.fault + state->now.faultSince, L"");
}

/// Of months it keeps the first pass, the latest ones one by one, and each bad one.
TEST_F(LiveRunTest, ForgetsNothingBadOfALongRun)
{
    constexpr int32_t passes = 1500, bad = 777;
    FinishedRun journal = PlanOf({Channel(1, good), Channel(2, good)});
    for (int32_t pass = 1; pass <= passes; ++pass) {
        journal.channels.push_back(Channel(1, pass == bad ? low : good, pass));
        journal.channels.push_back(Channel(2, good, pass));
    }
    live.Begin(journal);
    const LiveChannel& channel = state->channels[0];
    EXPECT_EQ(channel.measurements, passes);
    EXPECT_LE(channel.history->size(), 512U);
    EXPECT_EQ(channel.history->front().pass, 1);
    EXPECT_GT(channel.history->size(), 300U);
    EXPECT_EQ((*channel.history)[channel.history->size() - 200].pass, passes - 199);
    EXPECT_EQ(std::ranges::count(*channel.history, bad, &LivePoint::pass), 1);
    EXPECT_EQ(channel.worst->result.pass, bad);
    EXPECT_EQ(channel.first->result.pass, 1);
}

}  // namespace
}  // namespace tvn2x
