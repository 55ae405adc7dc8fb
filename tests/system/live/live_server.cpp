// The live page without a receiver, for tests in a browser: the server, and a scan that the standard input makes up.
//   live_server PORT
// Each line is the next thing that happens, and is answered by "done": "good", "weak" or "lost" is what the next
// channel turns out to be, "error" that the instrument fails at it, "wait" that the pass is over.
#include <iostream>

#include "host/live/LiveRun.h"
#include "host/serve/HttpServer.h"
#include "support/TestRun.h"
#include "util/Clock.h"
#include "util/Encoding.h"

namespace {

using namespace tvn2x;

constexpr int32_t channels = 6;

int64_t Now()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}

ChannelResult Measured(int32_t number, int32_t pass, const std::string& how)
{
    using enum ChannelOutcome;
    const ChannelOutcome outcome = how == "lost" ? notSynchronised : how == "error" ? error : synchronised;
    std::vector<std::pair<int32_t, std::wstring>> cells;
    if (outcome == notSynchronised) {
        cells = {{MP_RFLEV, L"44.0"}, {MP_SYNC, L"UNSYNC"}};
    } else if (outcome == synchronised) {
        cells = {{MP_RFLEV, how == "weak" ? L"43.5" : L"61.0"}, {MP_MER, L"38.9"}, {MP_BER, L"<1.7E-8"}};
    }
    ChannelResult channel = TestChannel(number, 466 + 16 * number, cells, pass, outcome);
    channel.label = number == 2 ? L"<img src=x onerror=alert(1)>" : L"K" + std::to_wstring(20 + 2 * number);
    channel.began = UtcText(Now());
    return channel;
}

FinishedRun Plan()
{
    std::vector<ChannelResult> planned;
    for (int32_t number = 1; number <= channels; ++number) {
        planned.push_back(Measured(number, 1, "good"));
    }
    FinishedRun run = TestRun(std::move(planned));
    run.columns.push_back({MP_BER, L"BER before RS"});
    run.channels.clear();
    run.passes = 0;
    run.ended = L"";
    return run;
}

Limits LevelLimits()
{
    Limits limits;
    limits.limits[{MP_RFLEV, 0}] = {.failBelow = 54, .warnBelow = {}, .warnAbove = {}, .failAbove = {}};
    limits.drift[MP_RFLEV] = 2;
    return limits;
}

/// Does what the lines say until there is none any more.
void Follow(LiveRun& live)
{
    int32_t pass = 1, next = 1;
    live.BeginPass(pass, channels);
    live.BeginChannel(next);
    std::string line;
    while (std::getline(std::cin, line)) {
        if (line == "wait") {
            live.EndPass(6, UtcText(Now()), "table\r\n");
            live.Wait(600);
            next = channels;
        } else {
            if (next > channels) {
                next = 1;
                live.BeginPass(++pass, channels);
            }
            live.EndChannel(Measured(next, pass, line), line == "error" ? L"no answer" : L"");
        }
        ++next;
        if (next <= channels) {
            live.BeginChannel(next);
        }
        std::cout << "done" << std::endl;
    }
}

}  // namespace

int main(int, char** argv)
{
    HttpServer server(ReadListenAddress(L"127.0.0.1:" + FromUtf8(argv[1])));
    LiveRun live(UtcText(Now()), std::make_shared<Limits>(LevelLimits()), SystemClock(),
                 [&](LiveStatePtr state) { server.Publish(std::move(state)); });
    live.Begin(Plan());
    server.Start(LiveSite(Gate("", {}, server.Where().port)));
    std::cout << server.Where().Link() << std::endl;
    Follow(live);
    return 0;
}
