#include <algorithm>
#include <cmath>
#include <functional>
#include <set>
#include <vector>

#include "Version.h"
#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/commands/Commands.h"
#include "host/commands/JournalFile.h"
#include "host/commands/ScanParts.h"
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
#include "text/Duration.h"
#include "text/InputError.h"
#include "text/RichText.h"
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
    ScanParts& parts;
    PartReceiver& receiver;
    FinishedRun& run;
    ScanJournal& journal;
    StopRequest& stop;
    Console& console;
};

/// Brings the receiver into the state of a channel's setup and measures the channel; nothing where a stop comes before.
/// Where the receiver fails in between, the channel ends with an error as one does that it fails in, and the next one
/// tries again: nobody watches a scan of many passes.
std::optional<ChannelResult> MeasureChannel(const ScanRun& scan, const ChannelTurn& turn, ScanParent& parent)
{
    const size_t position = scan.run.SetupOf(turn.channel);
    const ScanPart& part = scan.parts[position];
    const int32_t channel = part.OwnNumber(turn.channel);
    std::wstring began;
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
        scan.console.Notice(L"tvnhost: " + ErrorText(error));
        PutError(part.plugin, channel);
    }
    parent.End();
    ChannelResult result = CollectChannel(part.plugin, part.setup, channel);
    result.began = began;
    result.seconds = std::round((SystemClock().SteadySeconds() - start) * 1e3) / 1e3;
    return result;
}

/// Measures what is left of a pass; returns the seconds that took. A channel that a stop has ended counts as not
/// measured.
double MeasurePass(const ScanRun& scan, const std::vector<ChannelTurn>& turns)
{
    const com::ComPtr<ScanParent> parent(new ScanParent(scan.console, scan.stop, static_cast<int32_t>(turns.size())));
    int32_t position = 0;
    for (const ChannelTurn& turn : turns) {
        const ScanPart& part = scan.parts[scan.run.SetupOf(turn.channel)];
        std::optional<ChannelResult> measured = MeasureChannel(scan, turn, *parent.Get());
        ChannelResult result =
            measured ? std::move(*measured) : CollectChannel(part.plugin, part.setup, part.OwnNumber(turn.channel));
        result.pass = turn.pass;
        result.number = turn.channel;
        if (measured) {
            const bool stopped = scan.stop.Poll();
            if (stopped) {
                result.outcome = ChannelOutcome::unmeasured;
            } else {
                scan.journal.Add(ChannelLine(result));
            }
            if (!scan.console.ShowsProgress()) {
                scan.console.Notice(fmt::format(L"{:>4}/{}  {:<16}  {}", ++position, turns.size(), result.Name(),
                                                stopped ? L"stopped" : OutcomeText(result.outcome)));
            }
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
    ShowOrigin(run, console);
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
        for (const ScanPart& part : scan.parts) {
            Call(part.plugin.measure, &IMeasure::ResetMeasurement, 0);
        }
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
        const std::wstring origin = OriginText(receiver);
        return origin.empty() ? L"a cable" : origin;
    };
    if (before.simulation != now.simulation || before.recordings != now.recordings) {
        RaiseInput(journal + L" was begun with another network: " + text(before) + L". Now there is: " + text(now) +
                   L". Give --network or --signals as it was, or begin a new run with --journal and another file.");
    }
}

/// What a scan goes on with, nothing where it begins anew.
std::optional<StoredRun> ReadResumed(const ScanOptions& options, const std::vector<ScanFile>& files, Console& console)
{
    if (options.resume.empty()) {
        return std::nullopt;
    }
    StoredRun stored = ReadRun(ReadInput(AbsolutePath(options.resume)), options.resume);
    std::vector<RunSetup> given;
    std::ranges::transform(files, std::back_inserter(given), &ScanFile::described);
    const int32_t channels = given.back().firstChannel + files.back().inspection.channels - 1;
    RequireSameSetups(stored.run, options.resume, given, channels,
                      L". Give each setup as it was, in the same order, or begin a new run with --journal and another "
                      L"file.");
    if (stored.isTorn) {
        console.Notice(options.resume + L": the last line is torn; its channel is measured again");
    }
    return stored;
}

/// The channels of all parts, by their numbers in the run.
std::vector<PlannedChannel> SelectionOf(const ScanParts& parts, const std::optional<std::wstring>& chosen)
{
    std::vector<Setup::Channel> all;
    for (const ScanPart& part : parts) {
        all.insert(all.end(), part.setup.channels.begin(), part.setup.channels.end());
    }
    std::vector<PlannedChannel> selection;
    for (const int32_t number : chosen ? SelectChannels(*chosen, all) : AllChannels(all)) {
        const Setup::Channel& channel = all[static_cast<size_t>(number - 1)];
        selection.push_back({number, channel.userField, channel.frequency, channel.symbolRate});
    }
    return selection;
}

FinishedRun NewRun(const ScanParts& parts, const std::vector<ScanFile>& files, const ScanOptions& options)
{
    FinishedRun run;
    run.program = L"tvnhost " TVN_VERSION;
    run.began = NowUtc();
    for (size_t i = 0; i < files.size(); ++i) {
        run.setups.push_back(files[i].described);
        run.setups.back().notes = PlainText(parts[i].setup.notes);
        run.setups.back().settings = parts[i].setup.settings;
    }
    run.columns = DescribeColumns(SetupsOf(parts), options.parameters);
    run.selection = SelectionOf(parts, options.channels);
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
void TakeState(const ScanParts& parts, const ScanOptions& options, FinishedRun& run)
{
    RequireOneLevelUnit(parts);
    for (size_t i = 0; i < parts.size(); ++i) {
        run.setups[i].settings = parts[i].setup.settings;
    }
    run.columns = DescribeColumns(SetupsOf(parts), options.parameters);
}

void RequireTargets(const ScanOptions& options, const std::vector<ScanFile>& files)
{
    std::vector<std::wstring> sources;
    std::ranges::transform(files, std::back_inserter(sources),
                           [](const ScanFile& file) { return file.described.path; });
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

/// What is doubtful about the channels of a setup that are to be measured.
void TellDoubts(const ScanFile& file, const std::vector<PlannedChannel>& channels, Console& console)
{
    for (const SetupRemark& remark : file.inspection.remarks) {
        if (std::ranges::any_of(channels, [&](const PlannedChannel& channel) {
                return remark.IsAbout(channel.number - file.described.firstChannel + 1);
            })) {
            console.Notice(RemarkText(file.described.path, remark));
        }
    }
}

/// Each setup in a plug-in of its own, in which the receiver and the network are the options' and all is measured that
/// the run needs.
void PrepareParts(ScanParts& parts, const FinishedRun& run, const ScanOptions& options, const Limits* limits,
                  Console& console)
{
    for (const ScanPart& part : parts) {
        const std::vector<std::wstring> added = MeasureForRun(part.plugin, part.setup, run.columns, limits);
        if (!added.empty()) {
            console.Notice(
                fmt::format(L"{}: measured beyond what it displays and saves, because columns or verdicts "
                            L"need it: {}",
                            part.setup.path, fmt::join(added, L", ")));
        }
        UseNetwork(part.plugin, options.network);
        UseSignals(part.plugin, options.signals);
        if (options.hasTimeScale) {
            const auto simulator = SimulatorSettings(part.plugin);
            Call(simulator, &ISimulatorSettings::put_TimeScale, options.timeScale);
            Call(simulator, &ISimulatorSettings::put_SettlingTime,
                 static_cast<double>(part.setup.settings.maxSettlingTime));
        }
    }
}

/// Brings the receiver on line into the state of each setup that has channels to measure: what it cannot do is told
/// before the first channel. The first comes last and stays. False where a stop has ended that.
bool PrepareReceivers(const ScanRun& scan, const ScanOptions& options)
{
    std::set<size_t, std::greater<>> needed;
    for (const PlannedChannel& channel : scan.run.selection) {
        needed.insert(scan.run.SetupOf(channel.number));
    }
    const bool isSimulated = !options.network.empty() || options.hasTimeScale;
    if (needed.size() > 1 && scan.run.passes != 1 && !options.WritesSettings() && !isSimulated) {
        // A plug-in tunes the receiver only where it did not do so last, and does not know of the others.
        RaiseInput(
            L"several setups that are scanned again and again are written to the receiver in turn. Give --write.");
    }
    const ReceiverIdentity& identity = scan.receiver.GoOnLine(*needed.begin());
    TakeReceiver(DescribeReceiver(scan.parts[*needed.begin()].plugin, identity), options, scan.run, scan.console);
    for (const size_t part : needed) {
        if (!scan.receiver.Prepare(part)) {
            scan.console.Notice(L"Stopped before the first channel");
            return false;
        }
    }
    if (options.resume.empty()) {
        TakeState(scan.parts, options, scan.run);
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
    ResultWriter writer{.plugins = {}, .hasMeasured = options.resume.empty() && scan.run.IsOnePass()};
    std::ranges::transform(scan.parts, std::back_inserter(writer.plugins),
                           [](const ScanPart& part) { return &part.plugin; });
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
    const std::vector<ScanFile> files = ReadScanFiles(options.setups);
    const std::optional<Limits> limits = LoadLimits(options.reports.limits);
    const Limits* const allowed = limits ? &*limits : nullptr;
    RequireTargets(options, files);
    std::optional<StoredRun> stored = ReadResumed(options, files, console);
    ScanParts parts;
    for (const ScanFile& file : files) {
        ScanPart& part = parts.emplace_back(file);
        if (stored) {
            TakeSettings(part.plugin, stored->run.setups[parts.size() - 1].settings);
            part.setup = ReadSetup(part.plugin, file.described.path);
        }
    }
    RequireOneLevelUnit(parts);
    FinishedRun run = stored ? std::move(stored->run) : NewRun(parts, files, options);
    ScanJournal journal(options, stored ? stored->wholeBytes : 0, console);
    for (const ScanFile& file : files) {
        TellDoubts(file, run.selection, console);
    }
    StopRequest stop(CreateRunControl());
    PrepareParts(parts, run, options, allowed, console);
    PartReceiver receiver(parts, options, stop, console);
    const ScanRun scan{parts, receiver, run, journal, stop, console};
    // What is complete needs no receiver.
    if (!TurnsLeft(run).empty() && !PrepareReceivers(scan, options)) {
        return exitStopped;
    }
    MeasureRun(scan, stored.has_value());
    return Conclude(scan, options, allowed);
}

}  // namespace tvn2x
