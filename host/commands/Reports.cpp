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
    for (const std::wstring* target : {&options.json, &options.junit, &options.html, &options.result}) {
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

void WriteReports(const FinishedRun& run, const RunJudgement& judgement, const Limits* limits,
                  const ReportOptions& options, const ResultWriter& writer, Console& console)
{
    std::optional<RaisedError> failure;
    const auto writeWith = [&](const std::wstring& target, auto make) {
        if (target.empty()) {
            return;
        }
        try {
            make(AbsolutePath(target));
        } catch (const RaisedError& error) {
            if (failure) {
                console.Notice(L"tvnhost: " + ErrorText(error));
            } else {
                failure = error;
            }
        }
    };
    const auto write = [&](const std::wstring& target, auto textOf) {
        writeWith(target, [&](const std::wstring& path) {
            RequireWritten(ReplaceContent(SystemFiles(), path, textOf()), path);
        });
    };
    write(options.json, [&] { return ResultText(run, &judgement); });
    write(options.junit, [&] { return JunitReport(run, judgement); });
    write(options.html, [&] { return HtmlReport(run, judgement, limits); });
    writeWith(options.result, [&](const std::wstring& path) {
        if (!writer.hasMeasured) {
            RestoreResults(*writer.plugin, run);
        }
        if (Get<VARIANT_BOOL>(writer.plugin->measure, &IMeasure::Save, com::Bstr(path).Get()) == VARIANT_FALSE) {
            RequireWritten(FileFault::other, path);
        }
    });
    if (failure) {
        throw RaisedError(*failure);
    }
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
