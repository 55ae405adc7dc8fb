#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/commands/PlanSource.h"
#include "host/commands/Reports.h"
#include "host/console/Console.h"

namespace tvn2x {

/// What a command ends the process with.
enum ExitCode : int
{
    exitDone = 0,      ///< all that was asked for is done, and good
    exitFindings = 1,  ///< a verdict that is no pass, an incomplete run, a change
    exitUnusable = 2,  ///< unusable input or usage
    exitStopped = 3
};

/// What `import` was called with.
struct ImportOptions
{
    PlanSource plan;
    std::wstring setup;
    std::wstring title;  ///< first line of the notes, "" for the plan's own
    std::wstring levelUnit = L"dBµV";
    int32_t berSamples = 10;       ///< blocks of 10^7 bits
    int32_t maxSettlingTime = 10;  ///< seconds
    bool forces = false;           ///< replaces setups that are there
};

/// What `network` was called with.
struct NetworkOptions
{
    PlanSource plan;
    std::wstring model;
    uint64_t seed = 1;
    bool isClean = false;  ///< without impaired channels
    bool forces = false;   ///< replaces a file that is there
};

/// What `scan` was called with.
struct ScanOptions
{
    std::vector<std::wstring> setups;      ///< measured one after another, as one run
    std::wstring network;                  ///< "" leaves the receiver as it is
    std::wstring signals;                  ///< folder of recordings, "" leaves the receiver as it is
    std::optional<std::wstring> channels;  ///< nothing is all
    std::wstring parameters;               ///< "" is what the setup displays
    double timeScale = 1;                  ///< of the simulated receiver's waiting
    bool hasTimeScale = false;
    std::wstring journal;       ///< "" for none
    std::wstring resume;        ///< journal to go on with, "" for a new run
    int32_t repeat = 1;         ///< passes, 0 until stopped
    double interval = 0;        ///< seconds from pass to pass
    bool writes = false;        ///< configures the receiver first
    bool forces = false;        ///< goes on where the receiver cannot do the setup
    bool measuresAsIs = false;  ///< with the receiver's own settings
    bool isServed = false;      ///< no grid is shown, and the results of one pass at a time are kept
    RunProtocol protocol;
    ReportOptions reports;

    /// The receiver of recordings is as new: nobody has set it to anything yet.
    bool WritesSettings() const { return writes || !signals.empty(); }
};

/// What `serve` was called with.
struct ServeOptions
{
    ScanOptions scan;
    std::wstring listen = L"127.0.0.1:8087";
    std::wstring tokenFile;               ///< "" for none
    std::vector<std::wstring> hostNames;  ///< under which it is reached besides localhost and addresses
};

/// What judge and report do with a stored run.
struct JudgeOptions
{
    std::wstring result;
    std::vector<std::wstring> setups;  ///< for a result file; empty for those that the run names
    ReportOptions reports;
    bool shows = true;     ///< the verdict, which the exit code then tells too
    RunProtocol protocol;  ///< in place of what the run has, where something is said
};

/// What `compare` was called with.
struct CompareOptions
{
    std::wstring before;
    std::wstring after;
    std::wstring limits;          ///< "" for the drift limits that are built in
    std::optional<double> level;  ///< dB
    std::optional<double> mer;    ///< dB
};

/// What the commands about the receiver's own state work on.
struct ConfigurationOptions
{
    std::wstring setup;             ///< read from or written to; "" for info
    std::wstring network;           ///< "" leaves the receiver as it is
    std::wstring signals;           ///< the same
    bool replacesChannels = false;  ///< of the setup that is read to, with the one that the receiver is tuned to
    bool forces = false;            ///< replaces what is there
};

/// A setup to edit, or none for a new one, and the file to save it to, "" for its own.
struct EditOptions
{
    std::wstring setup;
    std::wstring output;
    bool forces = false;  ///< replaces a file that is there
};

// Each command returns its exit code, and raises what it cannot go on from.
int Import(const ImportOptions& options, Console& console);
int Network(const NetworkOptions& options, Console& console);
int Scan(const ScanOptions& options, Console& console);
int Serve(const ServeOptions& options, Console& console);  ///< until Ctrl+C
int JudgeRun(const JudgeOptions& options, Console& console);
int Compare(const CompareOptions& options, Console& console);
int PrintLimits(Console& console);
int Show(const std::wstring& setup, Console& console);
int Convert(const std::wstring& oldSetup, const std::wstring& newSetup, bool forces, Console& console);
int Check(const std::wstring& setup, Console& console);  ///< exitFindings where something is doubtful
int Info(const ConfigurationOptions& options, Console& console);
int CheckReceiver(const ConfigurationOptions& options,
                  Console& console);                                      ///< exitFindings where it cannot do the setup
int ReadReceiver(const ConfigurationOptions& options, Console& console);  ///< exitFindings where it is in another mode
/// exitFindings where the receiver took a setting otherwise.
int WriteReceiver(const ConfigurationOptions& options, Console& console);
int Edit(const EditOptions& options, Console& console);  ///< exitStopped where the user cancels
int Doctor(bool asJson, Console& console);     ///< exitFindings where something is wrong with the installation
int Register(bool forUser, Console& console);  ///< the type library TVNINT, for this user alone or for the machine
int Unregister(bool forUser, Console& console);

/// That what was measured is no cable, where it is none.
void ShowOrigin(const FinishedRun& run, Console& console);
/// What is wrong with which channel, and the verdict.
void ShowVerdict(const FinishedRun& run, const RunJudgement& judgement, Console& console);

}  // namespace tvn2x
