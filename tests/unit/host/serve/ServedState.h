#pragma once

#include <memory>
#include <string>

#include "host/live/LiveRun.h"
#include "support/FakeClock.h"
#include "support/TestRun.h"

namespace tvn2x {

/// A run of two channels that is served, one of them measured; more are measured as a test goes on.
class ServedState
{
public:
    explicit ServedState(const std::wstring& serving = L"2026-11-21T12:00:00.000Z")
        : live(serving, nullptr, clock, [this](LiveStatePtr next) { state = std::move(next); })
    {
        FinishedRun run = TestRun({TestChannel(1, 314, {}), TestChannel(2, 322, {})});
        run.channels.clear();
        live.Begin(run);
        live.BeginPass(1, 2);
        Measure(1);
    }

    void Measure(int32_t number, int32_t pass = 1)
    {
        live.EndChannel(TestChannel(number, 306 + 8 * number, {{MP_RFLEV, L"61.0"}, {MP_MER, L"39.0"}}, pass));
    }

    FakeClock clock;
    LiveStatePtr state;
    LiveRun live;
};

}  // namespace tvn2x
