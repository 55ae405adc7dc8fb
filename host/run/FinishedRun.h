#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "host/run/ReadingKind.h"
#include "host/run/ScanSummary.h"
#include "host/setup/Setup.h"
#include "util/modLocaleInfo.h"

namespace tvn2x {

/// What a reading's number stands for.
enum class Bound
{
    exact,
    below,  ///< the value is at most the number ("<1.7E-8"), or under the receiver's range where there is none
            ///< ("UNDER")
    above
};

/// One measured value. The text is what the result grid shows; the number is what it was made of, so that nothing is
/// judged by rounded digits.
struct Reading
{
    int32_t parameter = 0;
    std::wstring text;  ///< "61.1", "<1.7E-8", "UNDER", "---"; of a lock "OK", "UNSYNC", "INTERMITTENT"
    /// In `unit`, six significant digits, which is more than a receiver can tell: a file shows it as it is reckoned
    /// with. Of a bound the number in its text. Nothing for a lock and for what could not be measured.
    std::optional<double> value{};
    Bound bound = Bound::exact;
    std::wstring unit{};

    bool operator==(const Reading&) const = default;
};

/// A reading of a result cell. `measured` is the number behind its text, levelUnit the setup's; the locale is the one
/// that the text was written in.
Reading MakeReading(int32_t parameter, std::wstring_view cell, std::optional<double> measured,
                    std::wstring_view levelUnit, const Locale& locale);

/// What became of a channel that was measured. Nobody but the lock indicators tells that it is synchronised: each of
/// them was measured and is "OK".
ChannelOutcome OutcomeOf(std::wstring_view status, const std::vector<Reading>& readings);

/// What a channel is called in sentences and rows, from its label, which may be missing, and its frequency in MHz:
/// "K45 666 MHz".
std::wstring ChannelName(const std::wstring& label, double frequency);

/// A received symbol: the constellation's points stand at odd numbers. As a file keeps it, in 32nds.
struct Symbol
{
    int32_t inPhase = 0;
    int32_t quadrature = 0;

    bool operator==(const Symbol&) const = default;
};
constexpr double symbolScale = 32;

/// What a receiver tells of a channel beside its readings, where it tells anything.
struct ChannelDetails
{
    std::wstring remark;           ///< about the reception, in words
    bool hasUnknownLevel = false;  ///< the receiver is not calibrated: no limit of the level applies
    std::vector<Symbol> symbols;   ///< the last ones received

    bool operator==(const ChannelDetails&) const = default;
    bool IsEmpty() const { return *this == ChannelDetails(); }
};

/// The result of one measurement of one channel.
struct ChannelResult
{
    int32_t pass = 1;    ///< which of the repeated scans, from 1
    int32_t number = 0;  ///< in the run, from 1
    std::wstring label;
    double frequency = 0;    ///< MHz
    double symbolRate = 0;   ///< MSymb/s
    int32_t orderOfQam = 0;  ///< of its setup
    ChannelOutcome outcome = ChannelOutcome::unmeasured;
    std::wstring status;     ///< "Done", "Control Error", ...
    std::wstring timeStamp;  ///< as the plug-in wrote it, in the user's own format
    std::wstring began;      ///< UTC, "2026-11-21T12:59:05.123Z"; "" where the channel was not measured
    double seconds = 0;      ///< that the measurement took
    std::vector<Reading> readings;
    ChannelDetails details{};

    bool operator==(const ChannelResult&) const = default;

    const Reading* Find(int32_t parameter) const;  ///< null where the setup does not measure it
    /// The number of a reading, nothing where there is none or where it is a bound.
    std::optional<double> Value(int32_t parameter) const;
    std::wstring Name() const { return ChannelName(label, frequency); }
};

/// One column of the result grid.
struct RunColumn
{
    int32_t parameter = 0;
    std::wstring caption;

    bool operator==(const RunColumn&) const = default;
};

/// What a run keeps of a setup that it followed.
struct RunSetup
{
    std::wstring path;
    std::wstring sha256;  ///< of the file
    std::wstring notes;
    /// The number in the run of the setup's own channel 1. The channels of several setups are counted through.
    int32_t firstChannel = 1;
    SetupSettings settings;

    std::wstring FileName() const { return path.substr(path.find_last_of(L"\\/") + 1); }

    bool operator==(const RunSetup&) const = default;
};

/// The network that a simulated receiver received.
struct RunSimulation
{
    std::wstring model;   ///< path of the network model file, "" for none: noise alone
    std::wstring sha256;  ///< of that file, "" without one
    std::wstring seed;

    bool operator==(const RunSimulation&) const = default;
};

/// The recorded signals that a receiver played.
struct RunRecordings
{
    std::wstring folder;
    std::wstring bands;  ///< which files hold which frequencies

    bool operator==(const RunRecordings&) const = default;
};

/// What the receiver says of itself; "" where it does not tell.
struct RunReceiver
{
    std::wstring identity;
    std::wstring hardware;
    std::wstring serialNumber;
    std::wstring firmware;
    std::wstring options;
    std::optional<RunSimulation> simulation;    ///< nothing for a real receiver
    std::optional<RunRecordings> recordings{};  ///< nothing where the signal is a cable's, at this moment

    bool operator==(const RunReceiver&) const = default;
};

/// What whoever hands the run in says of it; "" for what was not said.
struct RunProtocol
{
    std::wstring site;
    std::wstring outlet;
    std::wstring by;     ///< who measured
    std::wstring order;  ///< the job's number
    std::wstring remark;

    void Take(const RunProtocol& later);  ///< what it says in place of what was said
    bool operator==(const RunProtocol&) const = default;
};

/// A channel that was to be measured.
struct PlannedChannel
{
    int32_t number = 0;  ///< in the run, from 1
    std::wstring label;
    double frequency = 0;   ///< MHz
    double symbolRate = 0;  ///< MSymb/s

    bool operator==(const PlannedChannel&) const = default;
};

/// Everything known of a scan that has ended or was stopped. Every report is made from this.
struct FinishedRun
{
    std::wstring program;          ///< name and version of the program that measured
    std::vector<RunSetup> setups;  ///< one after another, at least one
    RunReceiver receiver;
    RunProtocol protocol;
    std::vector<RunColumn> columns;         ///< of the result grid, from left to right
    std::vector<PlannedChannel> selection;  ///< by number
    int32_t passes = 1;                     ///< how often they were to be measured, 0 for no end
    double interval = 0;                    ///< seconds from the beginning of one pass to that of the next, 0 for none
    std::wstring began;                     ///< UTC
    std::wstring ended;                     ///< "" where the run never came to its end
    std::vector<std::wstring> resumed;      ///< when it was gone on with
    bool stopped = false;
    std::vector<ChannelResult> channels;  ///< by pass and number
    double secondsBefore = 0;             ///< spent on measurements that are kept no longer

    bool operator==(const FinishedRun&) const = default;

    /// The position in `setups` of the one that a channel of the run is in.
    size_t SetupOf(int32_t channel) const;
    /// The orders of QAM of its channels, each once, ascending.
    std::set<int32_t> OrdersOfQam() const;
    bool MixesOrders() const;  ///< its setups differ in the order of QAM
    /// What a channel of it is called in sentences: "K45 666 MHz", where it mixes orders "K45 666 MHz 64-QAM", because
    /// a frequency may be there with two.
    std::wstring NameOf(const ChannelResult& channel) const;

    /// Gives each channel that was to be measured its place: what a pass that began lacks is added as unmeasured. Of
    /// two results of a channel in one pass an unmeasured one goes.
    void Complete();
    /// Measurements that were to be made: of each channel one in each pass, without a number of passes in each that
    /// began.
    int64_t Planned() const;
    int64_t Measured() const;  ///< of these, those that were made
    bool IsComplete() const { return Measured() > 0 && Measured() == Planned(); }

    double Seconds() const;  ///< spent on measuring
    bool IsOnePass() const;  ///< the latest result of each channel is of one and the same pass
    /// Positions of the latest result of each channel, by number.
    std::vector<size_t> Latest() const;
};

/// The files of its setups: "net-64qam.ini, net-256qam.ini".
std::wstring SetupNames(const FinishedRun& run);

/// What was received where it is no cable: "Simulated receiver: network model town.ini, SHA-256 0123..., seed 7" or
/// "Recorded signals: folder C:\\town, cable.wav 301 to 311 MHz". "" otherwise.
std::wstring OriginText(const RunReceiver& receiver);

/// A point in time as a run keeps it.
std::wstring UtcText(int64_t millisecondsSince1970);
/// The other way round; nothing for what is no point in time.
std::optional<int64_t> MillisecondsOf(const std::wstring& utc);
/// The same in local time with its offset from UTC: "2026-11-21 13:59:05 +01:00". What is no point in time stays as it
/// is.
std::wstring LocalText(const std::wstring& utc);

}  // namespace tvn2x
