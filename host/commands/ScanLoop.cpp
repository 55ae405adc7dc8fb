#include "host/commands/ScanLoop.h"

#include <algorithm>
#include <cmath>

#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/console/Files.h"
#include "host/link/RunCollector.h"
#include "host/link/ScanParent.h"
#include "host/report/RunGrid.h"
#include "host/run/RunRecords.h"
#include "text/Duration.h"
#include "util/Clock.h"

namespace tvn2x {
namespace {

std::wstring ChannelText(const Setup::Channel& channel)
{
    return ChannelName(channel.userField, channel.frequency);
}

/// A channel as it was measured, with what went wrong where the receiver has failed.
struct MeasuredChannel
{
    ChannelResult result;
    std::wstring fault{};
};

/// Brings the receiver into the state of a channel's setup and measures the channel; nothing where a stop comes before.
/// Where the receiver fails in between, the channel ends with an error as one does that it fails in, and the next one
/// tries again: nobody watches a scan of many passes.
std::optional<MeasuredChannel> MeasureChannel(const ScanRun& scan, const ChannelTurn& turn, ScanParent& parent)
{
    const size_t position = scan.run.SetupOf(turn.channel);
    const ScanPart& part = scan.parts[position];
    const int32_t channel = part.OwnNumber(turn.channel);
    std::wstring began, fault;
    double start = 0;
    const auto begin = [&] {
        began = NowUtc();
        start = SystemClock().SteadySeconds();
    };
    begin();
    try {
        if (scan.stop.Poll() || !scan.receiver.Prepare(position)) {
            return std::nullopt;
        }
        const AttachedParent attached(part.plugin, &parent);
        parent.Begin(ChannelText(part.ChannelAt(turn.channel)));
        begin();
        VARIANT nothing;
        nothing.vt = VT_ERROR;
        nothing.scode = DISP_E_PARAMNOTFOUND;
        Get<VARIANT_BOOL>(part.plugin.measure, &IMeasure::Measure, channel, nothing);
    } catch (const RaisedError& error) {
        scan.console.ClearProgress();
        fault = ErrorText(error);
        scan.console.Notice(L"tvnhost: " + fault);
        PutError(part.plugin, channel);
    }
    parent.End();
    ChannelResult result = CollectChannel(part.plugin, part.setup, channel);
    result.began = began;
    result.seconds = std::round((SystemClock().SteadySeconds() - start) * 1e3) / 1e3;
    return MeasuredChannel{std::move(result), std::move(fault)};
}

/// The run and whoever looks on take a result. A channel that a stop has ended counts as not measured.
void TakeResult(const ScanRun& scan, ChannelResult result, const std::wstring& fault, const std::wstring& place)
{
    const bool stopped = scan.stop.Poll();
    if (stopped) {
        result.outcome = ChannelOutcome::unmeasured;
    } else {
        scan.journal.Add(ChannelLine(result));
    }
    if (!scan.console.ShowsProgress() && !scan.isServed) {
        scan.console.Notice(
            fmt::format(L"{}  {:<16}  {}", place, result.Name(), stopped ? L"stopped" : OutcomeText(result.outcome)));
    }
    if (scan.live) {
        scan.live->EndChannel(result, fault);
    }
    scan.run.channels.push_back(std::move(result));
}

/// Measures what is left of a pass; returns the seconds that took.
double MeasurePass(const ScanRun& scan, const std::vector<ChannelTurn>& turns)
{
    const auto watch = [live = scan.live](double step, const std::wstring& status) {
        if (live) {
            live->Step(step, status);
        }
    };
    const com::ComPtr<ScanParent> parent(
        new ScanParent(scan.console, scan.stop, static_cast<int32_t>(turns.size()), watch));
    if (scan.live) {
        scan.live->BeginPass(turns.front().pass, static_cast<int32_t>(turns.size()));
    }
    int32_t position = 0;
    for (const ChannelTurn& turn : turns) {
        const ScanPart& part = scan.parts[scan.run.SetupOf(turn.channel)];
        if (scan.live) {
            scan.live->BeginChannel(turn.channel);
        }
        std::optional<MeasuredChannel> measured = MeasureChannel(scan, turn, *parent.Get());
        ChannelResult result = measured ? std::move(measured->result)
                                        : CollectChannel(part.plugin, part.setup, part.OwnNumber(turn.channel));
        result.pass = turn.pass;
        result.number = turn.channel;
        if (measured) {
            TakeResult(scan, std::move(result), measured->fault, fmt::format(L"{:>4}/{}", ++position, turns.size()));
        } else {
            scan.run.channels.push_back(std::move(result));
        }
    }
    scan.console.ClearProgress();
    return parent->Elapsed();
}

ScanSummary SummaryOf(const FinishedRun& run, int32_t pass, bool stopped, double seconds)
{
    ScanSummary summary{.stopped = stopped, .seconds = seconds};
    for (const ChannelResult& channel : run.channels) {
        if (channel.pass == pass) {
            ++summary.channels;
            summary.Count(channel.outcome);
        }
    }
    return summary;
}

void ShowPass(const ScanRun& scan, int32_t pass, double seconds)
{
    const FinishedRun& run = scan.run;
    const ScanSummary summary = SummaryOf(run, pass, run.stopped, seconds);
    if (!scan.isServed) {
        scan.console.Result(RunGrid(run, pass).Render(scan.console.ResultWidth()));
    }
    scan.console.Result((run.passes == 1 ? L"" : fmt::format(L"Pass {}: ", pass)) + summary.Text() + L"\n");
    if (!scan.isServed) {
        ShowOrigin(run, scan.console);
    }
}

/// The plug-in's result file of the pass that has just ended, nothing where it cannot be made. `isWhole` says that the
/// plug-ins have measured all of it.
std::optional<std::string> ResultFileOf(const ScanRun& scan, bool isWhole)
{
    const ResultWriter writer{.plugins = PluginsOf(scan.parts), .hasMeasured = isWhole};
    try {
        return ResultTables(scan.run, writer, TemporaryPath(L"tvnhost-result.csv"));
    } catch (const RaisedError& error) {
        scan.console.Notice(L"tvnhost: " + ErrorText(error));
        return std::nullopt;
    }
}

/// A run that is served goes on for months: of its passes the last one stays.
void EndPass(const ScanRun& scan, const std::vector<ChannelTurn>& turns, double seconds)
{
    FinishedRun& run = scan.run;
    const int32_t pass = turns.front().pass;
    run.stopped = scan.stop.Poll();
    if (scan.isServed) {
        std::erase_if(run.channels, [&](const ChannelResult& channel) {
            run.secondsBefore += channel.pass != pass ? channel.seconds : 0;
            return channel.pass != pass;
        });
    }
    std::ranges::stable_sort(run.channels, {},
                             [](const ChannelResult& channel) { return std::pair(channel.pass, channel.number); });
    ShowPass(scan, pass, seconds);
    if (scan.live && !run.stopped) {
        scan.live->EndPass(seconds, NowUtc(),
                           scan.isServed ? ResultFileOf(scan, turns.size() == run.selection.size()) : std::nullopt);
    }
}

/// Waits until a pass is due, a moment of the steady clock: who sets the one on the wall changes nothing. Ends early
/// where the scan is to stop.
void WaitFor(double due, const ScanRun& scan)
{
    constexpr double atOnce = 0.2;  // seconds
    if (scan.live && scan.run.interval > 0) {
        scan.live->Wait(due - SystemClock().SteadySeconds());
    }
    while (!scan.stop.Poll()) {
        const double left = due - SystemClock().SteadySeconds();
        if (left <= 0) {
            break;
        }
        scan.console.Progress(L"Next pass in " + DurationText(left));
        HandleMessagesFor(std::min(atOnce, left));
    }
    scan.console.ClearProgress();
}

/// Pass after pass until all are done or the scan is stopped.
void MeasurePasses(const ScanRun& scan)
{
    double due = SystemClock().SteadySeconds();
    std::vector<ChannelTurn> turns = TurnsLeft(scan.run);
    if (turns.empty()) {
        scan.console.Notice(L"The journal is complete: nothing is left to measure");
        ShowPass(scan, scan.run.channels.back().pass, scan.run.Seconds());
    }
    while (!turns.empty()) {
        for (const ScanPart& part : scan.parts) {
            Call(part.plugin.measure, &IMeasure::ResetMeasurement, 0);
        }
        const double seconds = MeasurePass(scan, turns);
        EndPass(scan, turns, seconds);
        turns = scan.run.stopped ? std::vector<ChannelTurn>() : TurnsLeft(scan.run);
        if (!turns.empty()) {
            // A pass that took longer than the interval puts off the later ones, rather than chasing after them.
            due = std::max(due + scan.run.interval, SystemClock().SteadySeconds());
            WaitFor(due, scan);
            if (scan.stop.Poll()) {
                scan.run.stopped = true;
                break;
            }
        }
    }
}

}  // namespace

void MeasureRun(const ScanRun& scan, bool isResumed)
{
    FinishedRun& run = scan.run;
    const bool wasComplete = isResumed && !run.ended.empty() && !run.stopped;
    if (!isResumed) {
        scan.journal.Add(RunLine(run));
    } else if (!wasComplete) {
        run.resumed.push_back(NowUtc());
        run.stopped = false;
        scan.journal.Add(ResumedLine(run.resumed.back()));
    }
    if (scan.live) {
        scan.live->Begin(run);
    }
    MeasurePasses(scan);
    if (!wasComplete) {
        run.ended = NowUtc();
        scan.journal.Add(EndLine(run));
    }
    if (scan.live) {
        scan.live->End();
    }
}

void HandleMessagesFor(double seconds)
{
    MsgWaitForMultipleObjectsEx(0, nullptr, static_cast<DWORD>(std::ceil(seconds * 1000)), QS_ALLINPUT,
                                MWMO_INPUTAVAILABLE);
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        DispatchMessageW(&message);
    }
}

}  // namespace tvn2x
