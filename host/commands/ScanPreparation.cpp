#include "host/commands/ScanPreparation.h"

#include <algorithm>
#include <functional>
#include <set>

#include "Version.h"
#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/commands/SetupFiles.h"
#include "host/console/Files.h"
#include "host/link/Plugin.h"
#include "host/link/Receiver.h"
#include "host/link/RunCollector.h"
#include "host/link/SetupReader.h"
#include "host/run/ChannelSelection.h"
#include "text/InputError.h"
#include "text/RichText.h"

namespace tvn2x {
namespace {

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

/// The targets are looked at before anything is made.
std::optional<StoredRun> ReadStored(const ScanOptions& options, const std::vector<ScanFile>& files, Console& console)
{
    RequireTargets(options, files);
    return ReadResumed(options, files, console);
}

ScanParts LoadParts(const std::vector<ScanFile>& files, const std::optional<StoredRun>& stored)
{
    ScanParts parts;
    for (const ScanFile& file : files) {
        ScanPart& part = parts.emplace_back(file);
        if (stored) {
            TakeSettings(part.plugin, stored->run.setups[parts.size() - 1].settings);
            part.setup = ReadSetup(part.plugin, file.described.path);
        }
    }
    RequireOneLevelUnit(parts);
    return parts;
}

}  // namespace

PreparedScan::PreparedScan(const ScanOptions& options, const Limits* limits, LiveRun* live, Console& console)
    : options_(options),
      files_(ReadScanFiles(options.setups)),
      stored_(ReadStored(options, files_, console)),
      parts_(LoadParts(files_, stored_)),
      run_(stored_ ? std::move(stored_->run) : NewRun(parts_, files_, options)),
      journal_(options, stored_ ? stored_->wholeBytes : 0, console),
      stop_(CreateRunControl()),
      receiver_(parts_, options_, stop_, console),
      scan_{parts_, receiver_, run_, journal_, stop_, console, live, options.isServed}
{
    for (const ScanFile& file : files_) {
        TellDoubts(file, run_.selection, console);
    }
    PrepareParts(parts_, run_, options_, limits, console);
}

bool PreparedScan::Measure()
{
    // What is complete needs no receiver.
    if (!TurnsLeft(run_).empty() && !PrepareReceivers(scan_, options_)) {
        return false;
    }
    MeasureRun(scan_, stored_.has_value());
    return true;
}

}  // namespace tvn2x
