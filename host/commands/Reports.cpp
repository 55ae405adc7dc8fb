#include "host/commands/Reports.h"

#include <vector>

#include "host/console/Files.h"
#include "host/link/Plugin.h"
#include "host/link/RunCollector.h"
#include "host/report/HtmlReport.h"
#include "host/report/JsonReport.h"
#include "host/report/JunitReport.h"
#include "host/run/RunRecords.h"
#include "text/InputError.h"
#include "util/FileSystem.h"

namespace tvn2x {

std::optional<Limits> LoadLimits(const std::wstring& name)
{
    if (name.empty()) {
        return std::nullopt;
    }
    return name == L"outlet" ? OutletLimits() : ReadLimits(ReadInput(AbsolutePath(name)), name);
}

void RequireReportTargets(const ReportOptions& options, const std::vector<std::wstring>& sources)
{
    std::vector<std::wstring> taken = sources;
    for (const std::wstring* target :
         {&options.json, &options.junit, &options.html, &options.result, &options.metrics}) {
        if (target->empty()) {
            continue;
        }
        const std::wstring path = AbsolutePath(*target);
        for (const std::wstring& other : taken) {
            if (IsSameFile(path, other)) {
                RaiseInput(path +
                           L" would be written twice, or replace what the report is made from. Give each report a "
                           L"file of its own.");
            }
        }
        taken.push_back(path);
        const PendingFile trial(path);
    }
}

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";

std::string ResultTables(const FinishedRun& run, const ResultWriter& writer, const std::wstring& target)
{
    std::string tables;
    for (size_t i = 0; i < writer.plugins.size(); ++i) {
        const Plugin& plugin = *writer.plugins[i];
        if (!writer.hasMeasured) {
            RestoreResults(plugin, run, i);
        }
        const PendingFile table(target);
        if (Get<VARIANT_BOOL>(plugin.measure, &IMeasure::Save, com::Bstr(table.Path()).Get()) == VARIANT_FALSE) {
            RequireWritten(FileFault::other, target);
        }
        std::string text = ReadInput(table.Path());
        if (!tables.empty() && text.starts_with(utf8Mark)) {
            text.erase(0, utf8Mark.size());
        }
        tables += (tables.empty() ? "" : "\r\n") + text;
    }
    return tables;
}

void WriteReports(const FinishedRun& run, const RunJudgement& judgement, const Limits* limits,
                  const ReportOptions& options, const ResultWriter& writer, Console& console)
{
    std::optional<RaisedError> failure;
    const auto write = [&](const std::wstring& target, auto textOf) {
        if (target.empty()) {
            return;
        }
        try {
            const std::wstring path = AbsolutePath(target);
            RequireWritten(ReplaceContent(SystemFiles(), path, textOf()), path);
        } catch (const RaisedError& error) {
            if (failure) {
                console.Notice(L"tvnhost: " + ErrorText(error));
            } else {
                failure = error;
            }
        }
    };
    write(options.json, [&] { return ResultText(run, &judgement); });
    write(options.junit, [&] { return JunitReport(run, judgement); });
    write(options.html, [&] { return HtmlReport(run, judgement, limits); });
    write(options.result, [&] { return ResultTables(run, writer, AbsolutePath(options.result)); });
    if (failure) {
        throw RaisedError(*failure);
    }
}

std::optional<MetricsFile> MetricsFileOf(const ReportOptions& options, Console& console)
{
    if (options.metrics.empty()) {
        return std::nullopt;
    }
    const std::wstring path = AbsolutePath(options.metrics);
    return MetricsFile(SystemFiles(), path, [path, &console](FileFault fault) {
        console.ClearProgress();
        console.Notice(fault == FileFault::none
                           ? L"tvnhost: " + path + L" is up to date again"
                           : L"tvnhost: " + path + L" cannot be written (" + std::wstring(FaultText(fault)) +
                                 L"). The scan goes on, and it is tried again");
    });
}

FinishedRun LoadRun(const std::wstring& path, Console& console)
{
    StoredRun stored = ReadRun(ReadInput(AbsolutePath(path)), path);
    if (stored.isTorn) {
        console.Notice(path + L": the last line is torn and is left out");
    }
    if (stored.run.ended.empty()) {
        console.Notice(path + L": the run never came to its end; what it measured until then is used");
    }
    stored.run.Complete();
    return std::move(stored.run);
}

}  // namespace tvn2x
