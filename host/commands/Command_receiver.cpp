#include <optional>

#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/commands/Commands.h"
#include "host/commands/SetupFiles.h"
#include "host/console/Files.h"
#include "host/link/Plugin.h"
#include "host/link/Receiver.h"
#include "host/link/SetupReader.h"
#include "host/receiver/ReceiverOptions.h"
#include "host/receiver/ReceiverState.h"
#include "host/setup/Product.h"
#include "setup/catalogue/Options.h"
#include "text/InputError.h"

namespace tvn2x {
namespace {

std::wstring OptionList(const wchar_t* heading, const std::vector<ReceiverOption>& options)
{
    std::wstring text = fmt::format(L"{}{}\n", heading, options.empty() ? L": none" : L":");
    for (const ReceiverOption& option : options) {
        text += fmt::format(L"  {:<20}{}\n", option.code,
                            option.words.empty() ? L"not known to this program" : option.words);
    }
    return text;
}

std::wstring Line(const wchar_t* name, const std::wstring& value)
{
    return fmt::format(L"{:<18}{}\n", name, value);
}

/// Loads a setup after a look at the file, so that what is wrong in it is named.
std::wstring LoadChecked(const Plugin& plugin, const std::wstring& setup)
{
    std::wstring path = AbsolutePath(setup);
    RequireUsable(ReadInput(path), path);
    plugin.Load(path);
    return path;
}

/// Where settings are read to. A setup that is there keeps its channels and whatever else a receiver does not know.
class ReadTarget
{
public:
    explicit ReadTarget(const ConfigurationOptions& options)
        : path_(AbsolutePath(options.setup)), keepsChannels_(!options.replacesChannels)
    {
        if (!options.network.empty()) {
            RequireDifferent(AbsolutePath(options.network), path_);
        }
        exists_ = SystemFiles().Stamp(path_).exists;
        if (exists_ && !IsSetup()) {
            RequireNew(path_, options.forces);
            exists_ = false;
        }
        if (!exists_) {
            pending_.emplace(path_);
        }
    }

    const std::wstring& Path() const { return path_; }
    bool KeepsChannels() const { return exists_ && keepsChannels_; }

    void Load(const Plugin& plugin) const
    {
        if (exists_) {
            plugin.Load(path_);
        }
    }
    void Save(const Plugin& plugin)
    {
        if (exists_) {
            SaveInPlace(plugin, path_);
        } else {
            SaveInto(plugin, *pending_);
            pending_->TakePlace();
        }
    }

private:
    bool IsSetup() const { return InspectSetup(ReadInput(path_), productName).IsUsable(); }

    std::wstring path_;
    bool keepsChannels_;
    bool exists_ = false;  ///< as a setup
    std::optional<PendingFile> pending_;
};

/// What was read although the receiver may be no DVB-C receiver at the moment.
std::wstring ReportedText(const RaisedError& reported, int32_t mode)
{
    if (mode == dvbCDemodulator) {
        return ErrorText(reported);
    }
    return fmt::format(
        L"the receiver is in operating mode {} and not in mode {}: what was read is what it is set to in "
        L"that mode. To bring it into mode {}: tvnhost write SETUP",
        ModeText(mode), ModeText(dvbCDemodulator), dvbCDemodulator);
}

/// Tells what a receiver took otherwise than it was written. True where that matters.
bool TellOtherwise(const SetupSettings& wanted, const SetupSettings& actual, Console& console)
{
    bool matters = false;
    for (const SettingDifference& difference : CompareSettings(wanted, actual)) {
        console.Notice((difference.isNeighbour ? L"" : L"tvnhost: taken otherwise: ") + DifferenceText(difference));
        matters = matters || !difference.isNeighbour;
    }
    return matters;
}

}  // namespace

int Info(const ConfigurationOptions& options, Console& console)
{
    const Plugin plugin;
    UseNetwork(plugin, options.network);
    UseSignals(plugin, options.signals);
    const OnLine online(plugin);
    const ReceiverIdentity& identity = online.Identity();
    const auto installed = Get<std::wstring>(plugin.driver, &IDriver::get_InstalledHardware);
    console.Result(Line(L"Identity", identity.text) + Line(L"Hardware", identity.hardware) +
                   Line(L"Serial number", Get<std::wstring>(plugin.driver, &IDriver::get_SerialNumber)) +
                   Line(L"Firmware", Get<std::wstring>(plugin.driver, &IDriver::get_FirmwareVersion)) +
                   Line(L"Operating mode", ModeText(identity.mode)) +
                   OptionList(L"Options installed", ReadOptions(installed)) +
                   OptionList(L"Options not installed", MissingOptions(installed)));
    return exitDone;
}

int CheckReceiver(const ConfigurationOptions& options, Console& console)
{
    const Plugin plugin;
    const std::wstring path = LoadChecked(plugin, options.setup);
    UseNetwork(plugin, options.network);
    UseSignals(plugin, options.signals);
    const OnLine online(plugin);
    const ReceiverReport report = AskReceiver(plugin);
    const bool can = CanDo(report.answers);
    console.Result(
        fmt::format(L"{}: receiver {} {} this setup\n", path, report.serialNumber, can ? L"can do" : L"cannot do") +
        AnswerList(report.answers, report.options));
    return can ? exitDone : exitFindings;
}

int ReadReceiver(const ConfigurationOptions& options, Console& console)
{
    ReadTarget target(options);
    const Plugin plugin;
    target.Load(plugin);
    const Setup before = ReadSetup(plugin, target.Path());
    UseNetwork(plugin, options.network);
    UseSignals(plugin, options.signals);
    const OnLine online(plugin);
    StopRequest stop(CreateRunControl());
    const Transferred transferred = TransferConfiguration(plugin, before, Transfer::read, stop, console);
    if (transferred.reported) {
        console.Notice(L"tvnhost: " + ReportedText(*transferred.reported, online.Identity().mode));
    }
    if (!transferred.isWhole) {
        console.Notice(L"Stopped: no setup is written");
        return exitStopped;
    }
    if (target.KeepsChannels()) {
        TakeChannels(plugin, before);
    }
    target.Save(plugin);
    const Setup setup = ReadSetup(plugin, target.Path());
    const Setup::Channel& channel = setup.ChannelAt(1);
    console.Result(
        (target.KeepsChannels()
             ? fmt::format(L"{}: its {} channels stay\n", target.Path(), setup.channels.size())
             : fmt::format(L"{}: {:g} MHz, {:g} MSymb/s\n", target.Path(), channel.frequency, channel.symbolRate)) +
        StateText(setup.settings));
    return transferred.reported ? exitFindings : exitDone;
}

int WriteReceiver(const ConfigurationOptions& options, Console& console)
{
    const Plugin plugin;
    const std::wstring path = LoadChecked(plugin, options.setup);
    const Setup setup = ReadSetup(plugin, path);
    UseNetwork(plugin, options.network);
    UseSignals(plugin, options.signals);
    const OnLine online(plugin);
    StopRequest stop(CreateRunControl());
    const Transferred transferred = TransferConfiguration(plugin, setup, Transfer::write, stop, console);
    if (transferred.reported) {
        console.Notice(L"tvnhost: " + ErrorText(*transferred.reported));
    }
    if (!transferred.isWhole) {
        console.Notice(L"Stopped: the receiver has the first settings of the setup only. Write it again");
        return exitStopped;
    }
    const SetupSettings actual = ReadReceiverSettings(plugin, setup);
    const bool isOtherwise = TellOtherwise(setup.settings, actual, console);
    console.Result(path + (isOtherwise ? L": the receiver is set otherwise\n" : L": the receiver is set\n") +
                   StateText(actual));
    return isOtherwise ? exitFindings : exitDone;
}

}  // namespace tvn2x
