#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/commands/Commands.h"
#include "host/commands/Files.h"
#include "host/commands/Plugin.h"
#include "host/commands/Receiver.h"
#include "host/commands/SetupFiles.h"
#include "host/commands/SetupReader.h"
#include "host/receiver/ReceiverOptions.h"
#include "host/setup/Product.h"
#include "setup/catalogue/Settings.h"
#include "text/InputError.h"

namespace tvn2x {
namespace {

struct Identity
{
    std::wstring text;  ///< "name,address,model,manufacturer"
    std::wstring hardware;
    int32_t mode = 0;
};

/// Raises where no receiver answers, or an instrument that is none.
Identity Identify(const Plugin& plugin)
{
    com::Bstr identity(L""), hardware(L"");
    BSTR texts[] = {identity.Detach(), hardware.Detach()};
    long mode = 0;
    VARIANT_BOOL isKnown = VARIANT_FALSE;
    const HRESULT result = com::Outside([&] { return plugin.driver->Test(&texts[0], &texts[1], &mode, &isKnown); });
    *identity.Put() = texts[0];
    *hardware.Put() = texts[1];
    com::Check(result, plugin.driver.Get());
    if (!isKnown) {
        Call(plugin.driver, &IDriver::put_Online, VARIANT_TRUE);
        RaiseInput(Get<VARIANT_BOOL>(plugin.driver, &IDriver::get_Online)
                       ? L"the instrument that answers does not identify itself as a KTR receiver. Check which one is "
                         L"connected"
                       : L"no receiver answers. Check that it is connected and switched on");
    }
    return {std::wstring(identity.View()), std::wstring(hardware.View()), static_cast<int32_t>(mode)};
}

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

/// What read and write carry over, in words.
std::wstring Configuration(const SetupSettings& settings)
{
    return Line(L"  Input route", ChoiceWords(setting::inputRoute, settings.inputRoute)) +
           Line(L"  Level unit", settings.levelUnit) +
           Line(L"  SAW filter", ChoiceWords(setting::sawBandwidth, settings.sawBandwidth)) +
           Line(L"  Order of QAM", ChoiceWords(setting::orderOfQam, settings.orderOfQam)) +
           Line(L"  Rolloff factor", ChoiceWords(setting::rollOffFactor, settings.rollOffFactor)) +
           Line(L"  BER samples", std::to_wstring(settings.berSamples)) +
           Line(L"  Reference", ChoiceWords(setting::referenceSource, settings.referenceSource));
}

/// Loads a setup after a look at the file, so that what is wrong in it is named.
std::wstring LoadChecked(const Plugin& plugin, const std::wstring& setup)
{
    const std::wstring path = AbsolutePath(setup);
    RequireUsable(ReadInput(path), path);
    plugin.Load(path);
    return path;
}

}  // namespace

int Info(const ConfigurationOptions& options, Console& console)
{
    const Plugin plugin;
    UseNetwork(plugin, options.network);
    const Identity identity = Identify(plugin);
    const OnLine online(plugin);
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
    const std::wstring target = AbsolutePath(options.setup);
    const Plugin plugin;
    UseNetwork(plugin, options.network);
    const OnLine online(plugin);
    StopRequest stop(CreateRunControl());
    PendingFile pending(target);
    bool isReported = false;
    if (!TransferConfiguration(plugin, Transfer::read, stop, console, &isReported)) {
        console.Notice(L"Stopped: no setup is written");
        return exitStopped;
    }
    SaveInto(plugin, pending);
    pending.TakePlace();
    const Setup setup = ReadSetup(plugin, target);
    const Setup::Channel& channel = setup.ChannelAt(1);
    console.Result(fmt::format(L"{}: {:g} MHz, {:g} MSymb/s\n", target, channel.frequency, channel.symbolRate) +
                   Configuration(setup.settings));
    return isReported ? exitFindings : exitDone;
}

int WriteReceiver(const ConfigurationOptions& options, Console& console)
{
    const Plugin plugin;
    const std::wstring path = LoadChecked(plugin, options.setup);
    UseNetwork(plugin, options.network);
    const OnLine online(plugin);
    StopRequest stop(CreateRunControl());
    if (!TransferConfiguration(plugin, Transfer::write, stop, console)) {
        console.Notice(L"Stopped: the receiver has the first settings of the setup only. Write it again");
        return exitStopped;
    }
    console.Result(path + L": the receiver is set\n" + Configuration(ReadSettings(plugin)));
    return exitDone;
}

}  // namespace tvn2x
