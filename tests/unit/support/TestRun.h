#pragma once

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "host/run/FinishedRun.h"
#include "util/RaisedError.h"

namespace tvn2x {

/// A reading of a cell whose number is the one that it shows.
inline Reading TestReading(int32_t parameter, const std::wstring& cell, const std::wstring& levelUnit = L"dBµV")
{
    std::optional<double> value;
    try {
        value = ParseNumber(cell, L'.');
    } catch (const RaisedError&) {
        value.reset();
    }
    return MakeReading(parameter, cell, value, levelUnit, SystemLocale());
}

/// A measured channel; readings as cells by parameter, with all locks where it is synchronised.
inline ChannelResult TestChannel(int32_t number, double frequency, std::vector<std::pair<int32_t, std::wstring>> cells,
                                 int32_t pass = 1, ChannelOutcome outcome = ChannelOutcome::synchronised)
{
    ChannelResult channel{.pass = pass,
                          .number = number,
                          .label = L"C" + std::to_wstring(number),
                          .frequency = frequency,
                          .symbolRate = 6.9,
                          .orderOfQam = 256,
                          .outcome = outcome,
                          .status = outcome == ChannelOutcome::error ? L"Control Error" : L"Done",
                          .timeStamp = L"11/21/2026 12:59:05 PM",
                          .began = L"2026-11-21T12:59:05.123Z",
                          .seconds = 1.25,
                          .readings = {}};
    const bool isLocked = outcome == ChannelOutcome::synchronised;
    for (const ReadingKind& kind : ReadingKinds()) {
        const auto cell = std::ranges::find(cells, kind.parameter, &std::pair<int32_t, std::wstring>::first);
        if (cell != cells.end()) {
            channel.readings.push_back(TestReading(kind.parameter, cell->second));
        } else if (kind.isLock && isLocked) {
            channel.readings.push_back(TestReading(kind.parameter, L"OK"));
        }
    }
    return channel;
}

/// A channel of a modulator out of adjustment.
inline ChannelResult Misadjusted(int32_t number, double frequency)
{
    return TestChannel(number, frequency,
                       {{MP_RFLEV, L"62.9"},
                        {MP_BER, L"9.5E-5"},
                        {MP_IQIMBAL, L"3.2"},
                        {MP_IQPHASE, L"-1.58"},
                        {MP_CS, L"36.6"},
                        {MP_PHASJIT, L"0.28"},
                        {MP_CI, L"53.6"},
                        {MP_SN, L"42.1"},
                        {MP_MER, L"31.3"}});
}

/// A run of 256-QAM over some channels, all of which were to be measured.
inline FinishedRun TestRun(std::vector<ChannelResult> channels)
{
    FinishedRun run;
    run.program = L"tvnhost 1.0.0";
    run.setups = {{.path = L"C:\\data\\net.ini",
                   .sha256 = std::wstring(64, L'a'),
                   .notes = L"line 1\n\"<&>\" µ",
                   .settings = {.orderOfQam = 256,
                                .rollOffFactor = 15,
                                .sawBandwidth = 8,
                                .inputRoute = 75,
                                .berSamples = 10,
                                .maxSettlingTime = 10,
                                .levelUnit = L"dBµV"}}};
    run.receiver = {L"KTR", L"2x", L"100001", L"2.40", L"EXTREF,RB", {}};
    run.columns = {{MP_USERFIELD, L"User Field"}, {MP_RFLEV, L"RF Level (dBµV)"}, {MP_MER, L"MER"}};
    run.began = L"2026-11-21T12:59:00.000Z";
    run.ended = L"2026-11-21T13:00:00.000Z";
    for (const ChannelResult& channel : channels) {
        if (channel.pass == 1) {
            run.selection.push_back({channel.number, channel.label, channel.frequency, channel.symbolRate});
        }
    }
    run.channels = std::move(channels);
    return run;
}

}  // namespace tvn2x
