#include <gmock/gmock.h>

#include <regex>

#include "host/live/LiveData.h"
#include "host/live/LiveEvents.h"
#include "host/live/LiveMetrics.h"
#include "host/live/LivePage.h"
#include "host/live/LiveRun.h"
#include "support/FakeClock.h"
#include "support/TestFiles.h"
#include "support/TestRun.h"
#include "support/TimeZone.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

using Cells = std::vector<std::pair<int32_t, std::wstring>>;
using enum ChannelOutcome;

std::shared_ptr<const Limits> StoryLimits()
{
    Limits limits;
    limits.name = L"Story";
    limits.path = L"C:\\limits\\story.ini";
    limits.sha256 = std::wstring(64, L'b');
    limits.limits[{MP_RFLEV, 0}] = {.failBelow = 54, .warnBelow = 58, .warnAbove = 74, .failAbove = 80};
    limits.limits[{MP_MER, 64}] = {.failBelow = 26, .warnBelow = {}, .warnAbove = {}, .failAbove = {}};
    limits.limits[{MP_BER, 0}] = {.failBelow = {}, .warnBelow = {}, .warnAbove = 1e-5, .failAbove = 1e-4};
    limits.limits[{levelStep, 0}] = {.failBelow = {}, .warnBelow = {}, .warnAbove = 3, .failAbove = 12};
    limits.drift[MP_RFLEV] = 2;
    return std::make_shared<Limits>(limits);
}

/// A scan of four channels by two setups, and what its readers are told of it.
class Story
{
public:
    ChannelResult Channel(int32_t number, Cells cells, ChannelOutcome outcome = synchronised) const
    {
        const int32_t pass = state->now.pass;
        ChannelResult channel = TestChannel(number, 306 + 8 * number, std::move(cells), pass, outcome);
        channel.label = number == 2 ? L"<i>\r\"2\"" : L"K" + std::to_wstring(number);
        channel.orderOfQam = number == 4 ? 64 : 256;
        channel.began = UtcText(1'795'266'000'000LL + pass * 60'000LL + number * 1000LL);
        return channel;
    }

    FinishedRun Plan() const
    {
        FinishedRun run = TestRun({Channel(1, {}), Channel(2, {}), Channel(3, {}), Channel(4, {})});
        run.setups.push_back(run.setups[0]);
        run.setups[1].firstChannel = 4;
        run.setups[1].settings.orderOfQam = 64;
        run.columns.push_back({MP_BER, L"BER before RS"});
        run.channels.clear();
        run.passes = 3;
        run.interval = 90;
        run.protocol.site = L"Hill & <Dale>";
        run.ended = L"";
        return run;
    }

    void Measure(int32_t number, Cells cells, ChannelOutcome outcome = synchronised, const std::wstring& fault = L"")
    {
        live.BeginChannel(number);
        clock.Advance(2.5);
        live.EndChannel(Channel(number, std::move(cells), outcome), fault);
    }

    void Tell(const std::string& what, const std::string& text)
    {
        // The axes of the plots are tested with the plots.
        static const std::regex tick(R"(<line class="grid"[^>]*/><text[^>]*>.*?</text>)"), tags("><");
        told += "=== " + what + "\n" + std::regex_replace(std::regex_replace(text, tick, ""), tags, ">\n<") + "\n";
    }

    FakeClock clock{100};
    LiveStatePtr state;
    LiveRun live{L"2026-11-21T12:00:00.000Z", StoryLimits(), clock,
                 [this](LiveStatePtr next) { state = std::move(next); }};
    std::string told;
};

TEST(LiveStory, IsToldInEveryFormAsWritten)
{
    const TimeZone universal("UTC0");
    Story story;
    LiveRun& live = story.live;
    story.Tell("page before anything is known", LivePage(*story.state, 0));
    live.Begin(story.Plan());
    story.Tell("page before the first channel", LivePage(*story.state, 0));
    story.Tell("history of a channel to come", LiveChannelPage(*story.state, 1));
    story.Tell("history of no channel", LiveChannelPage(*story.state, 5) + ChannelData(*story.state, 5));

    live.BeginPass(1, 4);
    live.BeginChannel(1);
    story.clock.Advance(0.4);
    live.Step(0.2, L"too soon to tell");
    story.clock.Advance(0.2);
    live.Step(1.5, L"Measuring <MER>");
    const uint64_t begun = story.state->version;
    story.Tell("a step", LiveEvents(*story.state, begun - 1));
    story.Measure(1, {{MP_RFLEV, L"65.0"}, {MP_MER, L"39.0"}, {MP_BER, L"<1.7E-8"}});
    story.Measure(2, {{MP_RFLEV, L"57.5"}, {MP_MER, L"36.5"}, {MP_BER, L"2.0E-5"}});
    const uint64_t two = story.state->version;
    story.Measure(3, {}, error, L"no answer");
    live.BeginChannel(4);
    story.Tell("what has changed since the second channel", LiveEvents(*story.state, two, 1.25));
    story.Tell("page with a failed receiver", LivePage(*story.state, 2));
    story.Tell("run", RunData(*story.state, 0.5));
    story.Measure(4, {{MP_RFLEV, L"44.0"}, {MP_SYNC, L"UNSYNC"}}, notSynchronised);
    live.EndPass(10, L"2026-11-21T13:01:10.000Z", "table");
    live.Wait(80);
    story.Tell("run between two passes", RunData(*story.state, 20));
    story.Tell("events of a reader who knows nothing", LiveEvents(*story.state, 0, 15));
    story.Tell("channels", ChannelsData(*story.state));

    live.BeginPass(2, 3);
    story.Measure(1, {{MP_RFLEV, L"61.5"}, {MP_MER, L"38.0"}, {MP_BER, L"3.0E-4"}});
    story.Measure(2, {{MP_RFLEV, L"66.0"}, {MP_MER, L"37.0"}, {MP_BER, L"---"}});
    story.Measure(4, {{MP_RFLEV, L"62.0"}, {MP_MER, L"25.0"}, {MP_BER, L">1.0E-2"}});
    live.EndPass(7.5, L"2026-11-21T13:02:08.000Z", {});
    story.Tell("verdict after two passes", LiveEvents(*story.state, begun, 0));
    for (int32_t number = 1; number <= 4; ++number) {
        story.Tell("history", LiveChannelPage(*story.state, number));
        story.Tell("channel", ChannelData(*story.state, number));
    }
    story.Tell("metrics", LiveMetrics(*story.state, MetricsFormat::prometheus));
    live.End();
    story.Tell("the end", LiveEvents(*story.state, story.state->version - 1) + RunData(*story.state, 0) +
                              LiveMetrics(*story.state, MetricsFormat::openMetrics));
    ExpectTold("live-story.txt", story.told);
}

}  // namespace
}  // namespace tvn2x
