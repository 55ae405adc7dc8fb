#include <algorithm>

#include "host/commands/Commands.h"
#include "host/commands/ScanPreparation.h"
#include "host/link/RunCollector.h"
#include "text/InputError.h"
#include "util/Clock.h"

namespace tvn2x {
namespace {

/// The verdict and the reports; returns the exit code.
int Conclude(const ScanRun& scan, const ScanOptions& options, const Limits* limits)
{
    scan.run.Complete();
    const RunJudgement judgement = Judge(scan.run, limits);
    if (limits) {
        ShowVerdict(scan.run, judgement, scan.console);
    }
    const ResultWriter writer{.plugins = PluginsOf(scan.parts),
                              .hasMeasured = options.resume.empty() && scan.run.IsOnePass()};
    WriteReports(scan.run, judgement, limits, options.reports, writer, scan.console);
    if (!scan.journal.IsWhole()) {
        RaiseInput(
            L"the journal lacks the last channels: it could not be written. The results above are whole; --json, "
            L"--html and --junit keep them too.");
    }
    return scan.run.stopped ? exitStopped : judgement.ExitCode();
}

}  // namespace

int Scan(const ScanOptions& options, Console& console)
{
    const std::optional<Limits> limits = LoadLimits(options.reports.limits);
    const Limits* const allowed = limits ? &*limits : nullptr;
    std::optional<MetricsFile> metrics = MetricsFileOf(options.reports, console);
    std::optional<LiveRun> live;
    if (metrics) {
        live.emplace(NowUtc(), limits ? std::make_shared<const Limits>(*limits) : nullptr, SystemClock(),
                     [&](const LiveStatePtr& state) { metrics->Take(*state); });
    }
    PreparedScan scan(options, allowed, live ? &*live : nullptr, console);
    return scan.Measure() ? Conclude(scan.Scan(), options, allowed) : exitStopped;
}

}  // namespace tvn2x
