#pragma once

#include <string>
#include <utility>
#include <vector>

#include "host/run/FinishedRun.h"
#include "util/RaisedError.h"

namespace tvn2x {

/// A reading of a cell whose number is the one that it shows.
inline Reading TestReading(int32_t parameter, const std::wstring& cell, const std::string& levelUnit = "dBµV")
{
    std::optional<double> value;
    try {
        value = ParseNumber(cell, L'.');
    } catch (const RaisedError&) {
        value.reset();
    }
    return MakeReading(parameter, cell, value, levelUnit, SystemLocale());
}

/// A measured channel; readings as cells by parameter.
inline ChannelResult TestChannel(int32_t number, double frequency, std::vector<std::pair<int32_t, std::wstring>> cells,
                                 int32_t pass = 1, ChannelOutcome outcome = ChannelOutcome::synchronised)
{
    ChannelResult channel{.pass = pass,
                          .number = number,
                          .label = "C" + std::to_string(number),
                          .frequency = frequency,
                          .symbolRate = 6.9,
                          .outcome = outcome,
                          .status = outcome == ChannelOutcome::error ? "Control Error" : "Done",
                          .timeStamp = "11/21/2026 12:59:05 PM",
                          .began = "2026-11-21T12:59:05.123Z",
                          .seconds = 1.25,
                          .readings = {}};
    for (const auto& [parameter, cell] : cells) {
        channel.readings.push_back(TestReading(parameter, cell));
    }
    return channel;
}

/// A run of 256-QAM over some channels, all of which were to be measured.
inline FinishedRun TestRun(std::vector<ChannelResult> channels)
{
    FinishedRun run;
    run.program = "tvnhost 1.0.0";
    run.setup = {.path = "C:\\data\\net.ini",
                 .sha256 = std::string(64, 'a'),
                 .notes = "line 1\r\n\"<&>\" µ",
                 .settings = {.orderOfQam = 256,
                              .rollOffFactor = 15,
                              .sawBandwidth = 8,
                              .inputRoute = 75,
                              .berSamples = 10,
                              .maxSettlingTime = 10,
                              .levelUnit = L"dBµV"}};
    run.receiver = {"KTR", "2x", "100001", "2.40", "EXTREF,RB"};
    run.columns = {{MP_USERFIELD, "User Field"}, {MP_RFLEV, "RF Level (dBµV)"}, {MP_MER, "MER"}};
    run.began = "2026-11-21T12:59:00.000Z";
    run.ended = "2026-11-21T13:00:00.000Z";
    for (const ChannelResult& channel : channels) {
        if (channel.pass == 1) {
            run.selection.push_back(channel.number);
        }
    }
    run.channels = std::move(channels);
    return run;
}

}  // namespace tvn2x
