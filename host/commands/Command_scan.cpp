#include <algorithm>
#include <cmath>
#include <vector>

#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/commands/Commands.h"
#include "host/commands/JournalFile.h"
#include "host/commands/SetupFiles.h"
#include "host/console/Files.h"
#include "host/link/Plugin.h"
#include "host/link/Receiver.h"
#include "host/link/RunCollector.h"
#include "host/link/ScanParent.h"
#include "host/link/SetupReader.h"
#include "host/link/StopRequest.h"
#include "host/report/RunGrid.h"
#include "host/run/ChannelSelection.h"
#include "host/run/RunRecords.h"
#include "host/run/Sha256.h"
#include "host/setup/Product.h"
#include "text/Duration.h"
#include "text/InputError.h"
#include "util/Clock.h"

namespace tvn2x {
namespace {

std::wstring ChannelText(const Setup::Channel& channel)
{
    return ChannelName(channel.userField, channel.frequency);
}

/// The journal of a scan, or none.
class ScanJournal
{
public:
    ScanJournal(const ScanOptions& options, size_t wholeBytes, Console& console)
    {
        if (!options.journal.empty()) {
            file_.emplace(JournalFile::Create(AbsolutePath(options.journal)));
        } else if (!options.resume.empty()) {
            file_.emplace(JournalFile::Open(AbsolutePath(options.resume), wholeBytes));
        }
        if (file_) {
            journal_.emplace(*file_, [&console](FileFault fault) { Tell(fault, console); });
        }
    }
    ScanJournal(const ScanJournal&) = delete;
    ScanJournal& operator=(const ScanJournal&) = delete;

    void Add(const std::string& line)
    {
        if (journal_) {
            journal_->Add(line);
        }
    }
    bool IsWhole() const { return !journal_ || journal_->IsWhole(); }

private:
    static void Tell(FileFault fault, Console& console)
    {
        console.Notice(fault == FileFault::none
                           ? L"tvnhost: the journal takes lines again; nothing is missing in it"
                           : L"tvnhost: the journal cannot be written (" + std::wstring(FaultText(fault)) +
                                 L"). The scan goes on and keeps its results in memory; the journal is tried again "
                                 L"with each channel");
    }

    std::optional<JournalFile> file_;
    std::optional<Journal> journal_;
};

/// Everything that a scan works on.
struct ScanRun
{
    const Plugin& plugin;
    Setup& setup;
    FinishedRun& run;
    ScanJournal& journal;
    StopRequest& stop;
    Console& console;
};

ChannelResult MeasureChannel(const ScanRun& scan, const ChannelTurn& turn)
{
    VARIANT nothing;
    nothing.vt = VT_ERROR;
    nothing.scode = DISP_E_PARAMNOTFOUND;
    const std::wstring began = NowUtc();
    const double start = SystemClock().SteadySeconds();
    Get<VARIANT_BOOL>(scan.plugin.measure, &IMeasure::Measure, turn.channel, nothing);
    ChannelResult result = CollectChannel(scan.plugin, scan.setup, turn);
    result.began = began;
    result.seconds = std::round((SystemClock().SteadySeconds() - start) * 1e3) / 1e3;
    return result;
}

/// Measures what is left of a pass; returns the seconds that took. A channel that a stop has ended counts as not
/// measured.
double MeasurePass(const ScanRun& scan, const std::vector<ChannelTurn>& turns)
{
    const com::ComPtr<ScanParent> parent(new ScanParent(scan.console, scan.stop, static_cast<int32_t>(turns.size())));
    const AttachedParent attached(scan.plugin, parent.Get());
    int32_t position = 0;
    for (const ChannelTurn& turn : turns) {
        const std::wstring text = ChannelText(scan.setup.ChannelAt(turn.channel));
        if (scan.stop.Poll()) {
            scan.run.channels.push_back(CollectChannel(scan.plugin, scan.setup, turn));
            continue;
        }
        parent->Begin(text);
        ChannelResult result = MeasureChannel(scan, turn);
        parent->End();
        const bool stopped = scan.stop.Poll();
        if (stopped) {
            result.outcome = ChannelOutcome::unmeasured;
        } else {
            scan.journal.Add(ChannelLine(result));
        }
        if (!scan.console.ShowsProgress()) {
            scan.console.Notice(fmt::format(L"{:>4}/{}  {:<16}  {}", ++position, turns.size(), text,
                                            stopped ? L"stopped" : OutcomeText(result.outcome)));
        }
        scan.run.channels.push_back(std::move(result));
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

void ShowPass(const FinishedRun& run, int32_t pass, bool stopped, double seconds, Console& console)
{
    const ScanSummary summary = SummaryOf(run, pass, stopped, seconds);
    console.Result(RunGrid(run, pass).Render(console.ResultWidth()));
    console.Result((run.passes == 1 ? L"" : fmt::format(L"Pass {}: ", pass)) + summary.Text() + L"\n");
    ShowSimulation(run, console);
}

/// Lets the system's messages in for a while.
void HandleMessagesFor(double seconds)
{
    MsgWaitForMultipleObjectsEx(0, nullptr, static_cast<DWORD>(std::ceil(seconds * 1000)), QS_ALLINPUT,
                                MWMO_INPUTAVAILABLE);
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        DispatchMessageW(&message);
    }
}

/// Waits until a pass is due, a moment of the steady clock: who sets the one on the wall changes nothing. Ends early
/// where the scan is to stop.
void WaitFor(double due, StopRequest& stop, Console& console)
{
    constexpr double atOnce = 0.2;  // seconds
    while (!stop.Poll()) {
        const double left = due - SystemClock().SteadySeconds();
        if (left <= 0) {
            break;
        }
        console.Progress(L"Next pass in " + DurationText(left));
        HandleMessagesFor(std::min(atOnce, left));
    }
    console.ClearProgress();
}

/// Pass after pass until all are done or the scan is stopped.
void MeasurePasses(const ScanRun& scan)
{
    double due = SystemClock().SteadySeconds();
    std::vector<ChannelTurn> turns = TurnsLeft(scan.run);
    if (turns.empty()) {
        scan.console.Notice(L"The journal is complete: nothing is left to measure");
        ShowPass(scan.run, scan.run.channels.back().pass, false, scan.run.Seconds(), scan.console);
    }
    while (!turns.empty()) {
        const int32_t pass = turns.front().pass;
        Call(scan.plugin.measure, &IMeasure::ResetMeasurement, 0);
        const double seconds = MeasurePass(scan, turns);
        scan.run.stopped = scan.stop.Poll();
        std::ranges::stable_sort(scan.run.channels, {},
                                 [](const ChannelResult& channel) { return std::pair(channel.pass, channel.number); });
        ShowPass(scan.run, pass, scan.run.stopped, seconds, scan.console);
        turns = scan.run.stopped ? std::vector<ChannelTurn>() : TurnsLeft(scan.run);
        if (!turns.empty()) {
            // A pass that took longer than the interval puts off the later ones, rather than chasing after them.
            due = std::max(due + scan.run.interval, SystemClock().SteadySeconds());
            WaitFor(due, scan.stop, scan.console);
            if (scan.stop.Poll()) {
                scan.run.stopped = true;
                break;
            }
        }
    }
}

/// Readings of a network and reckoned ones, or those of two models, are no one run.
void RequireSameSimulation(const RunReceiver& before, const RunReceiver& now, const std::wstring& journal)
{
    const auto text = [](const RunReceiver& receiver) {
        return receiver.simulation ? SimulationText(receiver) : L"a receiver that is not simulated";
    };
    if (before.simulation != now.simulation) {
        RaiseInput(journal + L" was begun with another network: " + text(before) + L". Now there is: " + text(now) +
                   L". Give --network as it was, or begin a new run with --journal and another file.");
    }
}

/// What a scan goes on with, nothing where it begins anew.
std::optional<StoredRun> ReadResumed(const ScanOptions& options, const std::wstring& sha256, int32_t size,
                                     Console& console)
{
    if (options.resume.empty()) {
        return std::nullopt;
    }
    StoredRun stored = ReadRun(ReadInput(AbsolutePath(options.resume)), options.resume);
    RequireSameSetup(stored.run, options.resume, sha256, options.setup, size,
                     L". Give the setup as it was, or begin a new run with --journal and another file.");
    if (stored.isTorn) {
        console.Notice(options.resume + L": the last line is torn; its channel is measured again");
    }
    return stored;
}

FinishedRun NewRun(const Setup& setup, const std::wstring& sha256, const ScanOptions& options)
{
    FinishedRun run = DescribeRun(setup, sha256, options.parameters);
    for (const int32_t number :
         options.channels ? SelectChannels(*options.channels, setup.channels) : AllChannels(setup.channels)) {
        const Setup::Channel& channel = setup.ChannelAt(number);
        run.selection.push_back({number, channel.userField, channel.frequency, channel.symbolRate});
    }
    run.protocol = options.protocol;
    run.passes = options.repeat;
    run.interval = options.interval;
    return run;
}

/// The run's receiver is the one on line.
void TakeReceiver(const RunReceiver& receiver, const ScanOptions& options, FinishedRun& run, Console& console)
{
    if (options.resume.empty()) {
        run.receiver = receiver;
        return;
    }
    RequireSameSimulation(run.receiver, receiver, options.resume);
    if (receiver != run.receiver) {
        console.Notice(L"tvnhost: " + options.resume + L" was begun with another receiver (serial number " +
                       run.receiver.serialNumber + L")");
    }
}

/// A new run states the settings that the receiver really has; the level unit is part of a caption.
void TakeState(const Setup& setup, FinishedRun& run)
{
    run.setup.settings = setup.settings;
    for (RunColumn& column : run.columns) {
        column.caption = setup.ParameterAt(column.parameter).caption;
    }
}

void RequireTargets(const ScanOptions& options, const std::wstring& path)
{
    std::vector<std::wstring> sources{path};
    if (options.reports.HasLimitsFile()) {
        sources.push_back(AbsolutePath(options.reports.limits));
    }
    if (!options.network.empty()) {
        sources.push_back(AbsolutePath(options.network));
    }
    for (const std::wstring* journal : {&options.journal, &options.resume}) {
        if (!journal->empty()) {
            for (const std::wstring& source : sources) {
                RequireDifferent(source, AbsolutePath(*journal));
            }
            sources.push_back(AbsolutePath(*journal));
        }
    }
    RequireReportTargets(options.reports, sources);
}

/// What is doubtful about the channels that are to be measured.
void TellDoubts(const SetupInspection& inspection, const std::vector<PlannedChannel>& channels,
                const std::wstring& path, Console& console)
{
    for (const SetupRemark& remark : inspection.remarks) {
        if (std::ranges::any_of(channels,
                                [&](const PlannedChannel& channel) { return remark.IsAbout(channel.number); })) {
            console.Notice(RemarkText(path, remark));
        }
    }
}

void TellAdded(const std::vector<std::wstring>& captions, Console& console)
{
    if (!captions.empty()) {
        console.Notice(fmt::format(L"Measured beyond what the setup displays and saves, because verdicts need it: {}",
                                   fmt::join(captions, L", ")));
    }
}

/// The simulated receiver's network, and how fast its time passes.
void SetSimulator(const Plugin& plugin, const ScanOptions& options, int32_t maxSettlingTime)
{
    UseNetwork(plugin, options.network);
    if (options.hasTimeScale) {
        const auto simulator = SimulatorSettings(plugin);
        Call(simulator, &ISimulatorSettings::put_TimeScale, options.timeScale);
        Call(simulator, &ISimulatorSettings::put_SettlingTime, static_cast<double>(maxSettlingTime));
    }
}

/// Brings the receiver on line into the setup's state, as far as the options say. False where a stop has ended that.
bool Prepare(const ScanRun& scan, const ScanOptions& options, const ReceiverIdentity& identity)
{
    TakeReceiver(DescribeReceiver(scan.plugin, identity), options, scan.run, scan.console);
    const Preparation how{.writes = options.writes,
                          .forces = options.forces,
                          .measuresAsIs = options.measuresAsIs,
                          .setsSimulator = !options.network.empty() || options.hasTimeScale};
    if (!PrepareReceiver(scan.plugin, scan.setup, how, scan.stop, scan.console)) {
        scan.console.Notice(L"Stopped before the first channel");
        return false;
    }
    scan.setup = ReadSetup(scan.plugin, scan.setup.path);
    if (options.resume.empty()) {
        TakeState(scan.setup, scan.run);
    }
    return true;
}

/// Measures what is left, between the journal's lines that tell of the run.
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
    MeasurePasses(scan);
    if (!wasComplete) {
        run.ended = NowUtc();
        scan.journal.Add(EndLine(run));
    }
    run.Complete();
}

/// The verdict and the reports; returns the exit code.
int Conclude(const ScanRun& scan, const ScanOptions& options, const Limits* limits)
{
    const RunJudgement judgement = Judge(scan.run, limits);
    if (limits) {
        ShowVerdict(scan.run, judgement, scan.console);
    }
    WriteReports(scan.run, judgement, limits, options.reports,
                 {&scan.plugin, options.resume.empty() && scan.run.IsOnePass()}, scan.console);
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
    const std::wstring path = AbsolutePath(options.setup);
    const std::string content = ReadInput(path);
    const SetupInspection inspection = RequireUsable(content, path);
    const int32_t size = inspection.channels;
    if (size == 0) {
        RaiseInput(path + L": there is no channel to measure. Add some in the setup's editor: tvnhost edit SETUP");
    }
    const std::optional<Limits> limits = LoadLimits(options.reports.limits);
    const Limits* const allowed = limits ? &*limits : nullptr;
    RequireTargets(options, path);
    const std::wstring sha256 = Sha256(content);
    std::optional<StoredRun> stored = ReadResumed(options, sha256, size, console);
    const Plugin plugin;
    plugin.Load(path);
    if (stored) {
        TakeSettings(plugin, stored->run.setup.settings);
    }
    Setup setup = ReadSetup(plugin, path);
    TellAdded(MeasureForVerdicts(plugin, setup, allowed), console);
    FinishedRun run = stored ? std::move(stored->run) : NewRun(setup, sha256, options);
    ScanJournal journal(options, stored ? stored->wholeBytes : 0, console);
    TellDoubts(inspection, run.selection, path, console);
    StopRequest stop(CreateRunControl());
    SetSimulator(plugin, options, setup.settings.maxSettlingTime);
    const ScanRun scan{plugin, setup, run, journal, stop, console};
    std::optional<OnLine> online;  // what is complete needs no receiver
    if (!TurnsLeft(run).empty()) {
        online.emplace(plugin);
        if (!Prepare(scan, options, online->Identity())) {
            return exitStopped;
        }
    }
    MeasureRun(scan, stored.has_value());
    return Conclude(scan, options, allowed);
}

}  // namespace tvn2x
