#include "host/link/Receiver.h"

#include <algorithm>
#include <utility>

#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/console/Files.h"
#include "host/link/ConfigurationParent.h"
#include "host/link/SetupReader.h"
#include "host/receiver/ReceiverOptions.h"
#include "host/receiver/ReceiverState.h"
#include "setup/catalogue/LevelUnits.h"
#include "setup/catalogue/Settings.h"
#include "text/InputError.h"

namespace tvn2x {
namespace {

/// A setting of the loaded setup that the receiver may not be able to do, and the question whether it is.
struct Question
{
    Capability need;
    const Setting& values;
    HRESULT (STDMETHODCALLTYPE _clsSetup::*get)(long*);
    HRESULT (STDMETHODCALLTYPE _clsSetup::*put)(long);
    HRESULT (STDMETHODCALLTYPE ICheckHardware::*isMet)(VARIANT_BOOL*);
};
const Question questions[] = {
    {Capability::reference, setting::referenceSource, &_clsSetup::get_ReferenceSource, &_clsSetup::put_ReferenceSource,
     &ICheckHardware::ExtRef},
    {Capability::route, setting::inputRoute, &_clsSetup::get_Zin, &_clsSetup::put_Zin, &ICheckHardware::InputPort},
    {Capability::filter, setting::sawBandwidth, &_clsSetup::get_SawBw, &_clsSetup::put_SawBw,
     &ICheckHardware::SawFilterBw},
};

/// Another value in the loaded setup until this goes.
class OtherValue
{
public:
    OtherValue(const Plugin& plugin, const Question& question)
        : plugin_(plugin), question_(question), original_(Get<long>(plugin.document, question.get))
    {
    }
    OtherValue(const OtherValue&) = delete;
    OtherValue& operator=(const OtherValue&) = delete;
    ~OtherValue() { (plugin_.document.Get()->*question_.put)(original_); }

    void Put(long value) { Call(plugin_.document, question_.put, value); }
    int32_t Original() const { return original_; }

private:
    const Plugin& plugin_;
    const Question& question_;
    long original_;
};

bool IsMet(const Plugin& plugin, const Question& question)
{
    return Get<VARIANT_BOOL>(plugin.check, question.isMet) != VARIANT_FALSE;
}

ReceiverAnswer Ask(const Plugin& plugin, const Question& question)
{
    OtherValue value(plugin, question);
    ReceiverAnswer answer{.need = question.need, .asked = value.Original(), .isMet = IsMet(plugin, question)};
    if (!answer.isMet) {
        for (const ListItem& choice : question.values.choices) {
            value.Put(choice.value);
            if (IsMet(plugin, question)) {
                answer.possible.push_back(choice.value);
            }
        }
    }
    return answer;
}

ReceiverAnswer AskMode(const Plugin& plugin)
{
    const long state = Get<long>(plugin.check, &ICheckHardware::Mode);
    return {.need = Capability::mode,
            .asked = Get<long>(plugin.setup, &ISetup::get_Mode),
            .isMet = state != 0,
            .isActive = state == 2};
}

bool IsUnmet(const ReceiverReport& report, Capability need)
{
    return std::ranges::any_of(report.answers,
                               [&](const ReceiverAnswer& answer) { return answer.need == need && !answer.isMet; });
}

/// Writes the setup to a receiver that may not be able to do it. The list of options may name what is fitted otherwise,
/// so the receiver itself has the last word: only what it refuses is left out, its own reference and no filter in
/// place of it. The setup keeps what it asks for.
Transferred WriteWhatThereIs(const Plugin& plugin, const Setup& setup, const ReceiverReport& report, StopRequest& stop,
                             Console& console)
{
    const bool mayLackReference = IsUnmet(report, Capability::reference);
    const bool mayLackFilter = IsUnmet(report, Capability::filter);
    for (const auto& [lacksReference, lacksFilter] :
         {std::pair(false, false), std::pair(true, false), std::pair(false, true)}) {
        if (lacksReference > mayLackReference || lacksFilter > mayLackFilter) {
            continue;
        }
        OtherValue reference(plugin, questions[0]);
        OtherValue filter(plugin, questions[2]);
        reference.Put(lacksReference ? 0 : reference.Original());
        filter.Put(lacksFilter ? 0 : filter.Original());
        try {
            return TransferConfiguration(plugin, setup, Transfer::write, stop, console);
        } catch (const RaisedError&) {
            if (!mayLackReference && !mayLackFilter) {
                throw;
            }
        }
    }
    OtherValue reference(plugin, questions[0]);
    OtherValue filter(plugin, questions[2]);
    reference.Put(mayLackReference ? 0 : reference.Original());
    filter.Put(mayLackFilter ? 0 : filter.Original());
    return TransferConfiguration(plugin, setup, Transfer::write, stop, console);
}

void ActivateMode(const Plugin& plugin, bool forces, Console& console)
{
    const std::wstring mode = ModeText(Get<long>(plugin.setup, &ISetup::get_Mode));
    if (Get<VARIANT_BOOL>(plugin.check, &ICheckHardware::ActivateMode)) {
        console.Notice(L"The receiver was in another operating mode; it is now in mode " + mode);
        return;
    }
    const std::wstring problem = L"the receiver does not change to operating mode " + mode;
    if (!forces) {
        RaiseInput(problem + L". Set it by hand, or go on with --force");
    }
    console.Notice(L"tvnhost: " + problem + L"; going on (--force)");
}

/// Raises where the receiver cannot do the setup and the scan is not to go on all the same.
void Tell(const ReceiverReport& report, const Setup& setup, bool forces, Console& console)
{
    if (CanDo(report.answers)) {
        console.Notice(
            fmt::format(L"Receiver {}: can do everything that {} asks for", report.serialNumber, setup.FileName()));
        return;
    }
    std::wstring text = fmt::format(L"receiver {} cannot do {}:", report.serialNumber, setup.FileName());
    for (const ReceiverAnswer& answer : report.answers) {
        if (!answer.isMet) {
            text += L"\n  " + AnswerText(answer, report.options);
        }
    }
    if (!forces) {
        RaiseInput(text + L"\nTo scan all the same: --force");
    }
    console.Notice(L"tvnhost: " + text + L"\nGoing on (--force): the results are not what the setup means");
}

/// The simulated receiver's settings. What it seems not to have got it may refuse.
void SetSimulator(const Plugin& plugin, const SetupSettings& settings, const ReceiverReport& report)
{
    const auto simulator = SimulatorSettings(plugin);
    const long unit = LevelUnitCode(settings.levelUnit);
    if (unit >= 0) {
        Call(simulator, &ISimulatorSettings::put_LevelUnit, unit);
    }
    Call(simulator, &ISimulatorSettings::put_OrderOfQam, settings.orderOfQam);
    Call(simulator, &ISimulatorSettings::put_RollOffFactor, settings.rollOffFactor);
    Call(simulator, &ISimulatorSettings::put_BerSamples, settings.berSamples);
    const auto set = [&](Capability need, auto put, long value) {
        try {
            Call(simulator, put, value);
        } catch (const RaisedError&) {
            if (!IsUnmet(report, need)) {
                throw;
            }
        }
    };
    set(Capability::route, &ISimulatorSettings::put_InputRoute, settings.inputRoute);
    set(Capability::filter, &ISimulatorSettings::put_SawBandwidth, settings.sawBandwidth);
    set(Capability::reference, &ISimulatorSettings::put_ReferenceSource, settings.referenceSource);
}

/// Raises where the receiver is set otherwise than the setup and the scan is not to go on all the same.
void TellDifferences(const Setup& setup, const SetupSettings& actual, const ReceiverReport& report,
                     const Preparation& how, Console& console)
{
    std::wstring text;
    for (const SettingDifference& difference : CompareSettings(setup.settings, actual)) {
        const bool isForced = how.forces && difference.need && IsUnmet(report, *difference.need);
        if (difference.isNeighbour || isForced) {
            console.Notice(DifferenceText(difference));
        } else {
            text += L"\n  " + DifferenceText(difference);
        }
    }
    if (text.empty()) {
        return;
    }
    if (!how.measuresAsIs) {
        RaiseInput(L"the receiver is set otherwise than " + setup.FileName() + L":" + text +
                   (how.writes ? L"\nIt did not take these when they were written. "
                               : L"\nTo bring it into the setup's state: --write. ") +
                   L"To measure with the receiver's own settings: --as-is");
    }
    console.Notice(L"tvnhost: the receiver's own settings count, not those of " + setup.FileName() + L" (--as-is):" +
                   text);
}

/// The plug-in's setup is as it was when this goes, whatever was read into it meanwhile.
class KeptSetup
{
public:
    KeptSetup(const Plugin& plugin, const Setup& setup) : plugin_(plugin), setup_(setup) {}
    KeptSetup(const KeptSetup&) = delete;
    KeptSetup& operator=(const KeptSetup&) = delete;
    ~KeptSetup()
    {
        try {
            TakeSettings(plugin_, setup_.settings);
            TakeChannels(plugin_, setup_);
        } catch (const RaisedError&) {
            // The plug-in's own setup took these before; where it fails now, the next use of it raises.
        }
    }

private:
    const Plugin& plugin_;
    const Setup& setup_;
};

/// The run control's stop flag is not set until this goes, but for a stop that is asked for meanwhile.
class StopHeldBack
{
public:
    StopHeldBack()
        : runControl_(CreateRunControl()), wasSet_(Get<VARIANT_BOOL>(runControl_, &IRunControl::get_StopFlag))
    {
        Call(runControl_, &IRunControl::put_StopFlag, VARIANT_FALSE);
    }
    /// Takes it away again; true where there was one.
    bool TakeNew()
    {
        const bool isNew = Get<VARIANT_BOOL>(runControl_, &IRunControl::get_StopFlag) != VARIANT_FALSE;
        if (isNew) {
            wasSet_ = VARIANT_TRUE;
            Call(runControl_, &IRunControl::put_StopFlag, VARIANT_FALSE);
        }
        return isNew;
    }
    StopHeldBack(const StopHeldBack&) = delete;
    StopHeldBack& operator=(const StopHeldBack&) = delete;
    ~StopHeldBack()
    {
        if (wasSet_) {
            runControl_->put_StopFlag(wasSet_);
        }
    }

private:
    com::ComPtr<IRunControl> runControl_;
    VARIANT_BOOL wasSet_;
};

/// An error of a write with what it left behind.
RaisedError WithState(const RaisedError& error, const Plugin& plugin, const Setup& setup, double step)
{
    std::optional<SetupSettings> now;
    try {
        now = ReadReceiverSettings(plugin, setup);
    } catch (const RaisedError&) {
        // It does not tell.
    }
    RaisedError told = error;
    told.description += L". " + RefusalText(step, now);
    return told;
}

ReceiverIdentity Identify(const Plugin& plugin)
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

}  // namespace

void UseNetwork(const Plugin& plugin, const std::wstring& network)
{
    if (!network.empty()) {
        Call(SimulatorSettings(plugin), &ISimulatorSettings::put_NetworkModel, com::Bstr(AbsolutePath(network)).Get());
    }
}

void UseSignals(const Plugin& plugin, const std::wstring& folder)
{
    if (!folder.empty()) {
        Call(RecordingsSettings(plugin), &IRecordingsSettings::put_Signals, com::Bstr(AbsolutePath(folder)).Get());
    }
}

OnLine::OnLine(const Plugin& plugin) : plugin_(plugin), identity_(Identify(plugin))
{
    Call(plugin_.driver, &IDriver::put_Online, VARIANT_TRUE);
}

OnLine::~OnLine()
{
    plugin_.driver->put_Online(VARIANT_FALSE);
}

ReceiverReport AskReceiver(const Plugin& plugin)
{
    ReceiverReport report;
    report.answers.push_back(AskMode(plugin));
    for (const Question& question : questions) {
        report.answers.push_back(Ask(plugin, question));
    }
    report.options = Get<std::wstring>(plugin.driver, &IDriver::get_InstalledHardware);
    report.serialNumber = Get<std::wstring>(plugin.driver, &IDriver::get_SerialNumber);
    return report;
}

Transferred TransferConfiguration(const Plugin& plugin, const Setup& setup, Transfer transfer, StopRequest& stop,
                                  Console& console)
{
    const auto errors = CreateErrorReport();
    Call(errors, &IErrorReport::Clear);
    const com::ComPtr<ConfigurationParent> parent(new ConfigurationParent(console, stop));
    try {
        const AttachedParent attached(plugin, parent.Get());
        Call(plugin.measure, transfer == Transfer::read ? &IMeasure::GetConfiguration : &IMeasure::SetConfiguration);
    } catch (const RaisedError& error) {
        console.ClearProgress();
        throw transfer == Transfer::read ? error : WithState(error, plugin, setup, parent->Step());
    }
    console.ClearProgress();
    Transferred transferred{.isWhole = parent->IsAtEnd() || !stop.Poll(), .reported = {}};
    if (Get<long>(errors, &IErrorReport::get_Count) != 0) {
        transferred.reported = {Get<long>(errors, &IErrorReport::get_Number),
                                Get<std::wstring>(errors, &IErrorReport::get_Source),
                                Get<std::wstring>(errors, &IErrorReport::get_Description)};
    }
    return transferred;
}

SetupSettings ReadReceiverSettings(const Plugin& plugin, const Setup& setup)
{
    StopHeldBack stop;
    const KeptSetup kept(plugin, setup);
    // A unit that the receiver has and nobody knows leaves the setup's as it was.
    Call(plugin.document, &_clsSetup::put_LevelUnit, com::Bstr(L"").Get());
    do {
        Call(plugin.measure, &IMeasure::GetConfiguration);
    } while (stop.TakeNew());
    SetupSettings settings = ReadSettings(plugin);
    settings.maxSettlingTime = setup.settings.maxSettlingTime;
    return settings;
}

void TakeSettings(const Plugin& plugin, const SetupSettings& settings)
{
    const auto& document = plugin.document;
    Call(document, &_clsSetup::put_LevelUnit, com::Bstr(settings.levelUnit).Get());
    Call(document, &_clsSetup::put_OrderOfQam, settings.orderOfQam);
    Call(document, &_clsSetup::put_RollOffFactor, settings.rollOffFactor);
    Call(document, &_clsSetup::put_SawBw, settings.sawBandwidth);
    Call(document, &_clsSetup::put_Zin, settings.inputRoute);
    Call(document, &_clsSetup::put_ReferenceSource, settings.referenceSource);
    Call(document, &_clsSetup::put_BerSamples, settings.berSamples);
}

void TakeChannels(const Plugin& plugin, const Setup& setup)
{
    const auto& document = plugin.document;
    Call(document, &_clsSetup::put_DefaultSymbolRate, setup.defaultSymbolRate);
    Call(document, &_clsSetup::put_ListSize, static_cast<long>(setup.channels.size()));
    long index = 0;
    for (const Setup::Channel& channel : setup.channels) {
        ++index;
        Call(document, &_clsSetup::put_Frequency, index, channel.frequency);
        Call(document, &_clsSetup::put_SymbolRate, index, channel.symbolRate);
        Call(document, &_clsSetup::put_UserField, index, com::Bstr(channel.userField).Get());
    }
}

std::optional<SetupSettings> PrepareReceiver(const Plugin& plugin, const Setup& setup, const Preparation& how,
                                             StopRequest& stop, Console& console)
{
    const ReceiverReport report = AskReceiver(plugin);
    Tell(report, setup, how.forces, console);
    if (how.writes) {
        const Transferred written = WriteWhatThereIs(plugin, setup, report, stop, console);
        if (written.reported) {
            console.Notice(L"tvnhost: " + ErrorText(*written.reported));
        }
        if (!written.isWhole) {
            return std::nullopt;
        }
    } else {
        if (how.setsSimulator) {
            SetSimulator(plugin, setup.settings, report);
        }
        const ReceiverAnswer& mode = report.answers.front();
        if (mode.isMet && !mode.isActive) {
            ActivateMode(plugin, how.forces, console);
        }
    }
    if (stop.Poll()) {
        return std::nullopt;
    }
    const SetupSettings actual = ReadReceiverSettings(plugin, setup);
    TellDifferences(setup, actual, report, how, console);
    TakeSettings(plugin, actual);
    return actual;
}

}  // namespace tvn2x
