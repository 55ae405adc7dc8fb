#include "host/commands/Receiver.h"

#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/commands/ConfigurationParent.h"
#include "host/commands/Files.h"
#include "host/receiver/ReceiverOptions.h"
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

/// Filter and reference that the receiver has not got are switched off and replaced by its own for the transfer; the
/// setup keeps what it asks for.
bool WriteWhatThereIs(const Plugin& plugin, const ReceiverReport& report, StopRequest& stop, Console& console)
{
    OtherValue reference(plugin, questions[0]);
    OtherValue filter(plugin, questions[2]);
    for (const ReceiverAnswer& answer : report.answers) {
        if (!answer.isMet && answer.need == Capability::reference) {
            reference.Put(0);
        }
        if (!answer.isMet && answer.need == Capability::filter) {
            filter.Put(0);
        }
    }
    return TransferConfiguration(plugin, Transfer::write, stop, console);
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
void Tell(const ReceiverReport& report, bool forces, Console& console)
{
    if (CanDo(report.answers)) {
        console.Notice(fmt::format(L"Receiver {}: can do everything that the setup asks for", report.serialNumber));
        return;
    }
    std::wstring text = fmt::format(L"receiver {} cannot do this setup:", report.serialNumber);
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

}  // namespace

void UseNetwork(const Plugin& plugin, const std::wstring& network)
{
    if (!network.empty()) {
        Call(SimulatorSettings(plugin), &ISimulatorSettings::put_NetworkModel, com::Bstr(AbsolutePath(network)).Get());
    }
}

OnLine::OnLine(const Plugin& plugin) : plugin_(plugin)
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

bool TransferConfiguration(const Plugin& plugin, Transfer transfer, StopRequest& stop, Console& console, bool* reported)
{
    const auto errors = CreateErrorReport();
    Call(errors, &IErrorReport::Clear);
    const com::ComPtr<ConfigurationParent> parent(new ConfigurationParent(console, stop));
    {
        const AttachedParent attached(plugin, parent.Get());
        Call(plugin.measure, transfer == Transfer::read ? &IMeasure::GetConfiguration : &IMeasure::SetConfiguration);
    }
    console.ClearProgress();
    const bool isReported = Get<long>(errors, &IErrorReport::get_Count) != 0;
    if (isReported) {
        console.Notice(L"tvnhost: " + ErrorText({Get<long>(errors, &IErrorReport::get_Number),
                                                 Get<std::wstring>(errors, &IErrorReport::get_Source),
                                                 Get<std::wstring>(errors, &IErrorReport::get_Description)}));
    }
    if (reported) {
        *reported = isReported;
    }
    return !stop.Poll();
}

bool PrepareReceiver(const Plugin& plugin, const Preparation& how, StopRequest& stop, Console& console)
{
    const ReceiverReport report = AskReceiver(plugin);
    Tell(report, how.forces, console);
    if (how.writes) {
        return WriteWhatThereIs(plugin, report, stop, console);
    }
    const ReceiverAnswer& mode = report.answers.front();
    if (mode.isMet && !mode.isActive) {
        ActivateMode(plugin, how.forces, console);
    }
    return !stop.Poll();
}

}  // namespace tvn2x
