#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/console/Console.h"
#include "host/judge/Judgement.h"
#include "host/judge/Limits.h"
#include "host/link/Plugin.h"
#include "host/live/MetricsFile.h"
#include "host/run/FinishedRun.h"

namespace tvn2x {

/// What is to be made of a run, by the names of the files; "" for what is not.
struct ReportOptions
{
    std::wstring limits;  ///< a file, or "outlet" for the limits that are built in
    std::wstring json;
    std::wstring junit;
    std::wstring html;
    std::wstring result;   ///< the plug-in's own result file
    std::wstring metrics;  ///< while it is measured

    bool HasLimitsFile() const { return !limits.empty() && limits != L"outlet"; }
    bool HasReports() const { return !json.empty() || !junit.empty() || !html.empty() || !result.empty(); }
};

/// The limits that were asked for, nothing where none were. Raises unusableInput where they cannot be used.
std::optional<Limits> LoadLimits(const std::wstring& name);

/// Sees to it that a scan does not end with files that cannot be written: raises unusableInput where a report would
/// replace one of `sources` or another report, or cannot be written where it is wanted.
void RequireReportTargets(const ReportOptions& options, const std::vector<std::wstring>& sources);

/// Who writes the result file.
struct ResultWriter
{
    /// Each has one of the run's setups loaded, in the run's order; empty where no result file is wanted.
    std::vector<const Plugin*> plugins;
    /// They have measured all that the run has, in one pass, and their result tables are as they left them. Otherwise
    /// the run is put there first.
    bool hasMeasured = false;
};

/// The plug-in's result tables of the run's setups one below the other, with an empty line between, each as the plug-in
/// writes it: into a file beside `target`, which goes again. Raises unusableInput where that cannot be written.
std::string ResultTables(const FinishedRun& run, const ResultWriter& writer, const std::wstring& target);

/// Writes the reports, each in one step. One that fails does not keep the others from being written; the first failure
/// is raised at the end.
void WriteReports(const FinishedRun& run, const RunJudgement& judgement, const Limits* limits,
                  const ReportOptions& options, const ResultWriter& writer, Console& console);

/// The file of --metrics, nothing where none is wanted; faults are told on the console.
std::optional<MetricsFile> MetricsFileOf(const ReportOptions& options, Console& console);

/// A stored run with a place for each channel that was to be measured, and a notice where its last line is torn or
/// where it never came to its end.
FinishedRun LoadRun(const std::wstring& path, Console& console);

}  // namespace tvn2x
