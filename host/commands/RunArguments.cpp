#include "host/commands/RunArguments.h"

#include "CLI/Config.hpp"
#include "CLI/Formatter.hpp"
#include "host/commands/TextOption.h"
#include "host/run/Journal.h"

namespace tvn2x {

void RunArguments::AddLimits(CLI::App& command, ReportOptions& files)
{
    AddText(command, "--limits", files.limits, "Limits to judge by: a file, or outlet for those built in")
        ->type_name("FILE");
}

void RunArguments::AddReports(CLI::App& command, ReportOptions& files)
{
    AddLimits(command, files);
    AddText(command, "--json", files.json, "Write the results as JSON lines")->type_name("FILE");
    AddText(command, "--junit", files.junit, "Write a JUnit report, a case for each channel")->type_name("FILE");
    AddText(command, "--html", files.html, "Write a page with verdict, plots and all readings")->type_name("FILE");
    AddText(command, "--result", files.result, "Write the plug-in's result file, for a spreadsheet")->type_name("FILE");
}

void RunArguments::AddProtocol(CLI::App& command)
{
    AddText(command, "--site", protocol_.site, "On the page and in the results: where")->type_name("TEXT");
    AddText(command, "--outlet", protocol_.outlet, "the outlet that was measured")->type_name("TEXT");
    AddText(command, "--by", protocol_.by, "who measured")->type_name("TEXT");
    AddText(command, "--order", protocol_.order, "the job's number")->type_name("TEXT");
    AddText(command, "--remark", protocol_.remark, "anything else")->type_name("TEXT");
}

void RunArguments::AddStored(CLI::App& command, ReportOptions& files)
{
    AddText(command, "result", result_, "Result file or journal")->type_name("FILE")->required();
    AddReports(command, files);
    AddProtocol(command);
    AddTexts(command, "--setup", setups_, "The run's setup, where --result needs it and it is another file by now")
        ->type_name("FILE")
        ->allow_extra_args(false);
}

void RunArguments::AddPasses(CLI::App& command, const std::string& repeatHelp)
{
    CLI::Option* journal =
        AddText(command, "--journal", journal_, "Keep each channel on the disk as it is measured")->type_name("FILE");
    CLI::Option* resume =
        AddText(command, "--resume", resume_, "Go on with a journal at the next channel")->type_name("FILE");
    CLI::Option* repeat = command.add_option("--repeat", repeat_, repeatHelp)
                              ->type_name("N")
                              ->check(CLI::Range(0, 1000000).description("0..1000000"));
    CLI::Option* every =
        AddText(command, "--every", every_, "Begin a scan every 90s, 15m, 2h or 1d (until Ctrl+C)")->type_name("TIME");
    // A journal that is gone on with has all this already.
    for (CLI::Option* other :
         {journal, repeat, every, command.get_option("--channels"), command.get_option("--parameters"),
          command.get_option("--site"), command.get_option("--outlet"), command.get_option("--by"),
          command.get_option("--order"), command.get_option("--remark"), command.get_option("--as-is")}) {
        resume->excludes(other);
    }
}

void RunArguments::AddMetrics(CLI::App& command)
{
    AddText(command, "--metrics", scanFiles_.metrics, "Keep a file up to date that a monitoring system reads")
        ->type_name("FILE");
}

void RunArguments::AddToScan(CLI::App& scan)
{
    AddReports(scan, scanFiles_);
    AddMetrics(scan);
    AddProtocol(scan);
    AddPasses(scan, "Scan N times; 0 scans until Ctrl+C");
    scan.get_option("--repeat")->default_str("1");
}

void RunArguments::AddToServe(CLI::App& serve)
{
    AddLimits(serve, scanFiles_);
    AddMetrics(serve);
    AddProtocol(serve);
    AddPasses(serve, "Scan N times and serve that until Ctrl+C (scans until then)");
}

void RunArguments::AddCommands(CLI::App& app)
{
    CLI::App* judge = app.add_subcommand("judge", "Judge a stored run by limits, without a receiver");
    judgeFiles_.limits = L"outlet";
    AddStored(*judge, judgeFiles_);
    judge->footer("Without --limits the limits for cable outlets are used. Exit codes: 0 passed, 1 not passed.");

    CLI::App* report = app.add_subcommand("report", "Make reports of a stored run");
    AddStored(*report, reportFiles_);

    CLI::App* compare = app.add_subcommand("compare", "Show what changed from one run to another");
    AddText(*compare, "old", before_, "Result file or journal")->type_name("OLD")->required();
    AddText(*compare, "new", after_, "Result file or journal")->type_name("NEW")->required();
    compare->add_option("--drift-level", driftLevel_, "Level change in dB that is still none")
        ->type_name("DB")
        ->check(CLI::NonNegativeNumber);
    compare->add_option("--drift-mer", driftMer_, "MER change in dB that is still none")
        ->type_name("DB")
        ->check(CLI::NonNegativeNumber);
    AddText(*compare, "--limits", compareLimits_, "Limits file with a section [drift]")->type_name("FILE");
    compare->footer("Exit codes: 0 nothing changed, 1 something changed.");

    app.add_subcommand("limits", "Print the limits for cable outlets, as a file to begin with");
}

void RunArguments::FillScan(const CLI::App& command, ScanOptions& options) const
{
    options.reports = scanFiles_;
    options.protocol = protocol_;
    options.journal = journal_;
    options.resume = resume_;
    options.interval = every_.empty() ? 0 : ReadInterval(every_);
    const bool isEndless = !every_.empty() || command.get_name() == "serve";
    options.repeat = isEndless && command.count("--repeat") == 0 ? 0 : repeat_;
}

std::optional<int> RunArguments::Run(const CLI::App& app, Console& console) const
{
    if (app.got_subcommand("judge")) {
        return JudgeRun({result_, setups_, judgeFiles_, true, protocol_}, console);
    }
    if (app.got_subcommand("report")) {
        return JudgeRun({result_, setups_, reportFiles_, false, protocol_}, console);
    }
    if (app.got_subcommand("compare")) {
        const CLI::App& compare = *app.get_subcommand("compare");
        const auto given = [&](const char* option, double value) {
            return compare.count(option) != 0 ? std::optional(value) : std::nullopt;
        };
        return Compare(
            {before_, after_, compareLimits_, given("--drift-level", driftLevel_), given("--drift-mer", driftMer_)},
            console);
    }
    if (app.got_subcommand("limits")) {
        return PrintLimits(console);
    }
    return std::nullopt;
}

}  // namespace tvn2x
