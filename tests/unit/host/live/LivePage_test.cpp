#include "host/live/LivePage.h"

#include "host/live/LiveEvents.h"
#include "host/live/LiveParts.h"
#include "host/live/LiveRun.h"
#include "support/FakeClock.h"
#include "support/TestRun.h"

namespace tvn2x {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

/// Two channels, the second of which has a label that no page may take for markup, and grows too weak.
class LivePageTest : public testing::Test
{
protected:
    LivePageTest()
    {
        FinishedRun run = TestRun({Channel(1, L"61.0"), Channel(2, L"61.0")});
        run.passes = 0;
        run.channels.clear();
        live.Begin(run);
    }

    static ChannelResult Channel(int32_t number, const std::wstring& level, int32_t pass = 1)
    {
        ChannelResult channel = TestChannel(number, 306 + 8 * number, {{MP_RFLEV, level}, {MP_MER, L"39.0"}}, pass);
        channel.label = number == 2 ? L"<i>\r\"2\"" : L"K1";
        channel.began = UtcText(pass * 60'000LL + number * 1000LL);
        return channel;
    }

    void Pass(int32_t pass, const std::wstring& level)
    {
        live.BeginPass(pass, 2);
        live.EndChannel(Channel(1, L"61.0", pass));
        live.EndChannel(Channel(2, level, pass));
        live.Wait(600);
    }

    static Limits LevelLimits()
    {
        Limits limits;
        limits.limits[{MP_RFLEV, 0}] = {.failBelow = 54, .warnBelow = {}, .warnAbove = {}, .failAbove = {}};
        limits.drift[MP_RFLEV] = 2;
        return limits;
    }

    FakeClock clock;
    LiveStatePtr state;
    LiveRun live{L"2026-11-21T12:00:00.000Z", std::make_shared<Limits>(LevelLimits()), clock,
                 [this](LiveStatePtr next) { state = std::move(next); }};
};

TEST_F(LivePageTest, ShowsWhichChannelIsBadSinceWhenAndByHowMuch)
{
    EXPECT_THAT(LivePage(*state, 0), AllOf(HasSubstr("Nothing has been measured yet"), HasSubstr("to come")));
    Pass(1, L"61.0");
    EXPECT_THAT(LivePage(*state, 0), AllOf(HasSubstr("Nothing so far."), HasSubstr("id=\"changes\" hidden")));
    Pass(2, L"43.5");
    Pass(3, L"44.5");
    const std::string page = LivePage(*state, 30);
    EXPECT_THAT(page, AllOf(HasSubstr(R"(datetime="1970-01-01T00:02:02.000Z")"),
                            HasSubstr("RF level 44.5 dBµV is 9.5 dB below the limit of 54 dBµV"),
                            HasSubstr("<td>61.0 dBµV</td><td>44.5 dBµV</td><td>-16.5 dB</td>"),
                            HasSubstr(R"(data-left="570">9:30</span>)"), HasSubstr("&lt;i&gt;")));
    EXPECT_THAT(page, AllOf(Not(HasSubstr("<i>")), Not(HasSubstr("style="))));
    const std::string channel = LiveChannelPage(*state, 2);
    EXPECT_THAT(channel, AllOf(HasSubstr("Worst at <time datetime=\"1970-01-01T00:02:02.000Z\""),
                               HasSubstr("RF level over time"), HasSubstr(">worst</text>"), HasSubstr("00:02")));
    EXPECT_EQ(LiveChannelPage(*state, 3), "");
}

TEST_F(LivePageTest, TellsEachReaderWhatHeDoesNotKnow)
{
    Pass(1, L"61.0");
    const uint64_t known = state->version;
    live.Step(0.5, L"Settling");
    EXPECT_THAT(LiveEvents(*state, known),
                AllOf(HasSubstr("data: now\n"), Not(HasSubstr("data: c1\n")), HasSubstr("event: end\nid: ")));
    live.EndChannel(Channel(2, L"43.5", 2));
    const std::string events = LiveEvents(*state, known);
    EXPECT_THAT(events, AllOf(HasSubstr("event: part\ndata: c2\ndata: <tr id=\"c2\" data-verdict=\"fail\""),
                              HasSubstr("data: bad\n"), Not(HasSubstr("data: c1\n")), Not(HasSubstr("\r"))));
    EXPECT_THAT(LiveEvents(*state, 0), HasSubstr("data: c1\n"));
}

TEST_F(LivePageTest, SaysWhatIsWrongWithTheReceiver)
{
    live.BeginPass(1, 2);
    ChannelResult failed = Channel(1, L"61.0");
    failed.outcome = ChannelOutcome::error;
    live.EndChannel(failed, L"no <answer>");
    EXPECT_THAT(LivePage(*state, 0), AllOf(HasSubstr("The receiver has failed since"), HasSubstr("no &lt;answer&gt;")));
}

}  // namespace
}  // namespace tvn2x
