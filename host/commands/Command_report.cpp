#include <algorithm>
#include <deque>

#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/commands/Commands.h"
#include "host/commands/SetupFiles.h"
#include "host/console/Files.h"
#include "host/judge/RunComparison.h"
#include "host/judge/VerdictText.h"
#include "host/link/Plugin.h"
#include "host/link/Receiver.h"
#include "host/report/RunGrid.h"
#include "host/run/Journal.h"
#include "host/run/Sha256.h"
#include "host/setup/Product.h"
#include "text/InputError.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

/// The channels that a verdict is about, each with its reason.
TextGrid Findings(const FinishedRun& run, const RunJudgement& judgement)
{
    TextGrid grid({L"Channel", L"Verdict", L"Why"}, 1);
    for (size_t i = 0; i < run.channels.size(); ++i) {
        const ChannelJudgement& channel = judgement.channels[i];
        if (channel.verdict != Verdict::pass) {
            const std::wstring pass = run.passes == 1 ? L"" : fmt::format(L" pass {}", run.channels[i].pass);
            grid.AddRow({run.NameOf(run.channels[i]) + pass, VerdictName(channel.verdict), channel.reason});
        }
    }
    return grid;
}

/// Where the setups are that a stored run followed.
std::vector<std::wstring> SetupsOf(const FinishedRun& run, const JudgeOptions& options)
{
    std::vector<std::wstring> paths = options.setups;
    if (paths.empty()) {
        std::ranges::transform(run.setups, std::back_inserter(paths), &RunSetup::path);
    }
    std::ranges::transform(paths, paths.begin(), AbsolutePath);
    return paths;
}

/// Loads those setups, which have to be as they were then.
std::deque<Plugin> LoadSetupsOf(const FinishedRun& run, const JudgeOptions& options)
{
    std::vector<RunSetup> given;
    int32_t channels = 0;
    for (const std::wstring& path : SetupsOf(run, options)) {
        const std::string content = ReadInput(path);
        RunSetup& setup = given.emplace_back();
        setup.path = path;
        setup.sha256 = Sha256(content);
        setup.firstChannel = channels + 1;
        channels += RequireUsable(content, path).channels;
    }
    RequireSameSetups(run, options.result, given, channels,
                      L". Name each setup as it was with --setup, in the run's order, or leave out --result.");
    std::deque<Plugin> plugins;
    for (size_t i = 0; i < given.size(); ++i) {
        plugins.emplace_back().Load(given[i].path);
        TakeSettings(plugins.back(), run.setups[i].settings);  // it may have been measured with the receiver's own
    }
    return plugins;
}

}  // namespace

void ShowOrigin(const FinishedRun& run, Console& console)
{
    if (const std::wstring origin = OriginText(run.receiver); !origin.empty()) {
        console.Result(origin + L"\n");
    }
}

void ShowVerdict(const FinishedRun& run, const RunJudgement& judgement, Console& console)
{
    if (judgement.Count(Verdict::pass) != judgement.planned) {
        console.Result(Findings(run, judgement).Render(console.ResultWidth()));
    }
    console.Result(VerdictSentence(run, judgement) + L"\n");
}

int JudgeRun(const JudgeOptions& options, Console& console)
{
    const std::optional<Limits> limits = LoadLimits(options.reports.limits);
    FinishedRun run = LoadRun(options.result, console);
    run.protocol.Take(options.protocol);
    std::vector<std::wstring> sources = SetupsOf(run, options);
    sources.push_back(AbsolutePath(options.result));
    if (options.reports.HasLimitsFile()) {
        sources.push_back(AbsolutePath(options.reports.limits));
    }
    RequireReportTargets(options.reports, sources);
    const RunJudgement judgement = Judge(run, limits ? &*limits : nullptr);
    if (options.shows) {
        ShowVerdict(run, judgement, console);
        ShowOrigin(run, console);
    } else if (!options.reports.HasReports()) {
        RaiseInput(
            L"there is nothing to do. Say which report to make: --html FILE, --junit FILE, --json FILE or --result "
            L"FILE.");
    }
    // What a simulated receiver has measured is marked in the result file, which the plug-in writes.
    const auto receiver =
        run.receiver.simulation && !options.reports.result.empty() ? ChooseReceiver(L"simulated") : nullptr;
    const std::deque<Plugin> plugins =
        options.reports.result.empty() ? std::deque<Plugin>() : LoadSetupsOf(run, options);
    ResultWriter writer;
    std::ranges::transform(plugins, std::back_inserter(writer.plugins), [](const Plugin& plugin) { return &plugin; });
    WriteReports(run, judgement, limits ? &*limits : nullptr, options.reports, writer, console);
    if (options.shows) {
        return judgement.ExitCode();
    }
    if (!judgement.isComplete) {
        console.Notice(L"tvnhost: " + options.result + L" is incomplete: " + VerdictSentence(run, judgement));
    }
    return judgement.isComplete ? exitDone : exitFindings;
}

int Compare(const CompareOptions& options, Console& console)
{
    std::map<int32_t, double> drift = options.limits.empty() ? OutletLimits().drift : LoadLimits(options.limits)->drift;
    if (drift.empty()) {
        RaiseInput(options.limits + L" has no section [drift]. Add one, like [drift] with a line rflev=2.");
    }
    if (options.level) {
        drift[MP_RFLEV] = *options.level;
    }
    if (options.mer) {
        drift[MP_MER] = *options.mer;
    }
    const FinishedRun before = LoadRun(options.before, console);
    const FinishedRun after = LoadRun(options.after, console);
    const RunComparison comparison = CompareRuns(before, after, drift);
    if (!comparison.changes.empty()) {
        console.Result(ComparisonGrid(comparison).Render(console.ResultWidth()));
    }
    for (const FinishedRun* run : {&before, &after}) {
        ShowOrigin(*run, console);
    }
    console.Result(fmt::format(L"{} {} in both runs, {} changed\n", comparison.channels,
                               comparison.channels == 1 ? L"channel" : L"channels", comparison.changed));
    return comparison.changed == 0 ? exitDone : exitFindings;
}

int PrintLimits(Console& console)
{
    console.Result(FromUtf8(OutletLimitsText()));
    return exitDone;
}

}  // namespace tvn2x
