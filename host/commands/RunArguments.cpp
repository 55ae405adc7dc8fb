#include "host/commands/RunArguments.h"

#include "CLI/Config.hpp"
#include "CLI/Formatter.hpp"
#include "host/run/Journal.h"
#include "util/Encoding.h"

namespace tvn2x {

ReportOptions RunArguments::Files::Wide() const
{
    return {FromUtf8(limits), FromUtf8(json), FromUtf8(junit), FromUtf8(html), FromUtf8(result)};
}

void RunArguments::AddReports(CLI::App& command, Files& files)
{
    command.add_option("--limits", files.limits, "Limits to judge by: a file, or outlet for those built in")
        ->type_name("FILE");
    command.add_option("--json", files.json, "Write the results as JSON lines")->type_name("FILE");
    command.add_option("--junit", files.junit, "Write a JUnit report, a case for each channel")->type_name("FILE");
    command.add_option("--html", files.html, "Write a page with verdict, plots and all readings")->type_name("FILE");
    command.add_option("--result", files.result, "Write the plug-in's result file, for a spreadsheet")
        ->type_name("FILE");
}

void RunArguments::AddStored(CLI::App& command, Files& files)
{
    command.add_option("result", result_, "Result file or journal")->type_name("FILE")->required();
    AddReports(command, files);
    command.add_option("--setup", setup_, "The run's setup, where --result needs it and it is another file by now")
        ->type_name("FILE");
}

void RunArguments::AddToScan(CLI::App& scan)
{
    AddReports(scan, scanFiles_);
    CLI::Option* journal =
        scan.add_option("--journal", journal_, "Keep each channel on the disk as it is measured")->type_name("FILE");
    CLI::Option* resume =
        scan.add_option("--resume", resume_, "Go on with a journal at the next channel")->type_name("FILE");
    CLI::Option* repeat = scan.add_option("--repeat", repeat_, "Scan N times; 0 scans until Ctrl+C")
                              ->type_name("N")
                              ->check(CLI::Range(0, 1000000).description("0..1000000"))
                              ->capture_default_str();
    CLI::Option* every =
        scan.add_option("--every", every_, "Begin a scan every 90s, 15m or 2h (until Ctrl+C)")->type_name("TIME");
    // A journal that is gone on with has all this already.
    for (CLI::Option* other :
         {journal, repeat, every, scan.get_option("--channels"), scan.get_option("--parameters")}) {
        resume->excludes(other);
    }
}

void RunArguments::AddCommands(CLI::App& app)
{
    CLI::App* judge = app.add_subcommand("judge", "Judge a stored run by limits, without a receiver");
    judgeFiles_.limits = "outlet";
    AddStored(*judge, judgeFiles_);
    judge->footer("Without --limits the limits for cable outlets are used. Exit codes: 0 passed, 1 not passed.");

    CLI::App* report = app.add_subcommand("report", "Make reports of a stored run");
    AddStored(*report, reportFiles_);

    CLI::App* compare = app.add_subcommand("compare", "Show what changed from one run to another");
    compare->add_option("old", before_, "Result file or journal")->type_name("OLD")->required();
    compare->add_option("new", after_, "Result file or journal")->type_name("NEW")->required();
    compare->add_option("--drift-level", driftLevel_, "Level change in dB that is still none")
        ->type_name("DB")
        ->check(CLI::NonNegativeNumber);
    compare->add_option("--drift-mer", driftMer_, "MER change in dB that is still none")
        ->type_name("DB")
        ->check(CLI::NonNegativeNumber);
    compare->add_option("--limits", compareLimits_, "Limits file with a section [drift]")->type_name("FILE");
    compare->footer("Exit codes: 0 nothing changed, 1 something changed.");

    app.add_subcommand("limits", "Print the limits for cable outlets, as a file to begin with");
}

void RunArguments::FillScan(const CLI::App& scan, ScanOptions& options) const
{
    options.reports = scanFiles_.Wide();
    options.journal = FromUtf8(journal_);
    options.resume = FromUtf8(resume_);
    options.interval = every_.empty() ? 0 : ReadInterval(every_);
    options.repeat = !every_.empty() && scan.count("--repeat") == 0 ? 0 : repeat_;
}

std::optional<int> RunArguments::Run(const CLI::App& app, Console& console) const
{
    if (app.got_subcommand("judge")) {
        return JudgeRun({FromUtf8(result_), FromUtf8(setup_), judgeFiles_.Wide(), true}, console);
    }
    if (app.got_subcommand("report")) {
        return JudgeRun({FromUtf8(result_), FromUtf8(setup_), reportFiles_.Wide(), false}, console);
    }
    if (app.got_subcommand("compare")) {
        const CLI::App& compare = *app.get_subcommand("compare");
        const auto given = [&](const char* option, double value) {
            return compare.count(option) != 0 ? std::optional(value) : std::nullopt;
        };
        return Compare({FromUtf8(before_), FromUtf8(after_), FromUtf8(compareLimits_),
                        given("--drift-level", driftLevel_), given("--drift-mer", driftMer_)},
                       console);
    }
    if (app.got_subcommand("limits")) {
        return PrintLimits(console);
    }
    return std::nullopt;
}

}  // namespace tvn2x
