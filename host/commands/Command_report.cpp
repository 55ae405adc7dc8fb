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
            grid.AddRow({run.channels[i].Name() + pass, VerdictName(channel.verdict), channel.reason});
        }
    }
    return grid;
}

/// Where the setup is that a stored run followed.
std::wstring SetupOf(const FinishedRun& run, const JudgeOptions& options)
{
    return AbsolutePath(options.setup.empty() ? run.setup.path : options.setup);
}

/// Loads that setup, which has to be as it was then.
void LoadSetupOf(const FinishedRun& run, const JudgeOptions& options, const Plugin& plugin)
{
    const std::wstring path = SetupOf(run, options);
    const std::string content = ReadInput(path);
    const int32_t channels = RequireUsable(content, path).channels;
    RequireSameSetup(run, options.result, Sha256(content), path, channels,
                     L". Name the setup as it was with --setup, or leave out --result.");
    plugin.Load(path);
    TakeSettings(plugin, run.setup.settings);  // it may have been measured with the receiver's own
}

}  // namespace

void ShowSimulation(const FinishedRun& run, Console& console)
{
    if (run.receiver.simulation) {
        console.Result(SimulationText(run.receiver) + L"\n");
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
    std::vector<std::wstring> sources{AbsolutePath(options.result), SetupOf(run, options)};
    if (options.reports.HasLimitsFile()) {
        sources.push_back(AbsolutePath(options.reports.limits));
    }
    RequireReportTargets(options.reports, sources);
    const RunJudgement judgement = Judge(run, limits ? &*limits : nullptr);
    if (options.shows) {
        ShowVerdict(run, judgement, console);
        ShowSimulation(run, console);
    } else if (!options.reports.HasReports()) {
        RaiseInput(
            L"there is nothing to do. Say which report to make: --html FILE, --junit FILE, --json FILE or --result "
            L"FILE.");
    }
    // What a simulated receiver has measured is marked in the result file, which the plug-in writes.
    const auto receiver =
        run.receiver.simulation && !options.reports.result.empty() ? ChooseReceiver(L"simulated") : nullptr;
    std::optional<Plugin> plugin;
    if (!options.reports.result.empty()) {
        LoadSetupOf(run, options, plugin.emplace());
    }
    WriteReports(run, judgement, limits ? &*limits : nullptr, options.reports, {plugin ? &*plugin : nullptr, false},
                 console);
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
        ShowSimulation(*run, console);
    }
    console.Result(fmt::format(L"{} channels in both runs, {} changed\n", comparison.channels, comparison.changed));
    return comparison.changed == 0 ? exitDone : exitFindings;
}

int PrintLimits(Console& console)
{
    console.Result(FromUtf8(OutletLimitsText()));
    return exitDone;
}

}  // namespace tvn2x
