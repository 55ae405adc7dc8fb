#include "host/live/LiveEvents.h"

#include "host/live/LivePage.h"
#include "host/live/LiveRun.h"
#include "support/FakeClock.h"
#include "support/TestRun.h"

namespace tvn2x {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

ChannelResult Channel(int32_t number, const std::wstring& level, int32_t pass = 1)
{
    ChannelResult channel = TestChannel(number, 306 + 8 * number, {{MP_RFLEV, level}}, pass);
    channel.label = number == 2 ? L"<i>\r\"2\"" : L"K1";
    channel.began = UtcText(pass * 60'000LL + number * 1000LL);
    return channel;
}

/// What is on the page beyond this, a browser tells.
TEST(LiveEvents, TellEachReaderWhatHeDoesNotKnow)
{
    Limits limits;
    limits.limits[{MP_RFLEV, 0}] = {.failBelow = 54, .warnBelow = {}, .warnAbove = {}, .failAbove = {}};
    FakeClock clock;
    LiveStatePtr state;
    LiveRun live(L"2026-11-21T12:00:00.000Z", std::make_shared<Limits>(limits), clock,
                 [&](LiveStatePtr next) { state = std::move(next); });
    FinishedRun run = TestRun({Channel(1, L"61.0"), Channel(2, L"61.0")});
    run.passes = 0;
    live.Begin(run);
    const uint64_t known = state->version;
    live.Wait(600);
    EXPECT_THAT(LiveEvents(*state, known, 30),
                AllOf(HasSubstr("data: now\n"), HasSubstr(R"(data-left="570">9:30</span>)"),
                      Not(HasSubstr("data: c1\n")), HasSubstr("event: end\nid: ")));
    live.BeginPass(2, 2);
    live.EndChannel(Channel(2, L"43.5", 2));
    EXPECT_THAT(LiveEvents(*state, known),
                AllOf(HasSubstr("event: part\ndata: c2\ndata: <tr id=\"c2\" data-verdict=\"fail\""),
                      HasSubstr("data: bad\n"), Not(HasSubstr("data: c1\n")), Not(HasSubstr("\r")),
                      HasSubstr(R"(datetime="1970-01-01T00:02:02.000Z")"), Not(HasSubstr("<i>"))));
    EXPECT_THAT(LiveEvents(*state, 0), HasSubstr("data: c1\n"));
    EXPECT_EQ(LiveChannelPage(*state, 3), "");
}

}  // namespace
}  // namespace tvn2x
