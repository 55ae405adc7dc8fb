// What becomes of a run of 10,000 channels: how long each report takes, and how much memory a channel does.

#include <malloc.h>

#include <cstdio>

#include "NullReceiver.h"
#include "Race.h"
#include "host/report/HtmlReport.h"
#include "host/report/JsonReport.h"
#include "host/report/JunitReport.h"
#include "host/run/ParameterNames.h"
#include "measure/ChannelScan.h"
#include "measure/ResultFile.h"

namespace {

using namespace tvn2x;
using namespace tvn2x::bench;

constexpr int32_t channels = 10'000;

double HeapInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

void MakeChannels(SetupDocument& document)
{
    document.ListSize(channels);
    document.LevelUnit(L"dBµV");
    for (int32_t channel = 1; channel <= channels; ++channel) {
        document.Frequency(channel, 100 + 0.08 * channel);
        document.SymbolRate(channel, 6.9);
        document.UserField(channel, L"K" + std::to_wstring(channel));
    }
}

void Measure(const SetupDocument& document, ResultTable& table)
{
    NullReceiver receiver;
    NullRunControl runControl;
    table.Reset(document, SystemLocale());
    ChannelScan scan(document, table, SystemClock(), SystemLocale());
    for (int32_t channel = 1; channel <= channels; ++channel) {
        scan.Measure(channel, receiver, runControl, nullptr);
    }
}

void Collect(const SetupDocument& document, const ResultTable& table, FinishedRun& run)
{
    run.program = L"bench";
    RunSetup& setup = run.setups.emplace_back();
    setup.path = L"net.ini";
    setup.sha256 = std::wstring(64, L'0');
    setup.settings.orderOfQam = 256;
    setup.settings.levelUnit = L"dBµV";
    run.began = L"2026-11-21T12:59:00.000Z";
    run.ended = L"2026-11-21T16:59:00.000Z";
    for (int32_t parameter = MP_FIRSTFIXED; parameter <= MP_LAST; ++parameter) {
        run.columns.push_back({parameter, document.Caption(parameter)});
    }
    for (int32_t channel = 1; channel <= channels; ++channel) {
        ChannelResult& result = run.channels.emplace_back();
        result.number = channel;
        result.label = document.UserField(channel);
        result.frequency = document.Frequency(channel);
        result.symbolRate = document.SymbolRate(channel);
        result.orderOfQam = setup.settings.orderOfQam;
        run.selection.push_back({channel, result.label, result.frequency, result.symbolRate});
        result.outcome = ChannelOutcome::synchronised;
        result.status = table.Result(1, MP_STATUS, channel);
        result.timeStamp = table.Result(1, MP_TIMESTAMP, channel);
        result.began = run.began;
        result.seconds = 1.4;
        for (int32_t parameter = MP_RFLEV; parameter <= MP_LAST; ++parameter) {
            result.readings.push_back(MakeReading(parameter, table.Result(0, parameter, channel),
                                                  table.Value(parameter, channel), L"dBµV", SystemLocale()));
        }
    }
}

}  // namespace

int main(int argc, char** argv)
{
    SetupDocument document;
    ResultTable table;
    FinishedRun run;
    const double empty = HeapInUse();
    MakeChannels(document);
    const double withChannels = HeapInUse();
    Measure(document, table);
    const double withResults = HeapInUse();
    Collect(document, table, run);
    const double withRun = HeapInUse();

    const Limits limits = OutletLimits();
    const RunJudgement judgement = Judge(run, &limits);
    constexpr double aSecond = 1e6;
    const auto race = [&](const char* title, auto make) {
        Race report(title);
        report.Add(std::to_string(make().size() / 1000) + " kB", [&] { Keep(make().size()); });
        report.Run(5, aSecond);
    };
    race("10,000 channels to the result file", [&] { return ResultFileContent(document, table, SystemLocale()); });
    race("10,000 channels to JSON lines", [&] { return ResultText(run, &judgement); });
    race("10,000 channels to JUnit", [&] { return JunitReport(run, judgement); });
    race("10,000 channels to a page", [&] { return HtmlReport(run, judgement, &limits); });
    Race judging("10,000 channels judged");
    judging.Add("by the limits for outlets", [&] { Keep(Judge(run, &limits).channels.size()); });
    judging.Run(5, aSecond);

    const std::string title = "Memory of a channel";
    std::printf("\n%s\n", title.c_str());
    Size(title, "in the setup document", (withChannels - empty) / channels);
    Size(title, "in the plug-in's result table", (withResults - withChannels) / channels);
    Size(title, "in the host's run", (withRun - withResults) / channels);
    return Finish(argc, argv);
}
