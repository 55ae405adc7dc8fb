#include "plugin/SetupCore.h"

#include "com/Module.h"
#include "editor/win32/frmFreqList.h"
#include "instrument/ConfigurationRead.h"
#include "instrument/ConfigurationWrite.h"
#include "instrument/Identity.h"
#include "measure/ResultFile.h"
#include "plugin/ComReceiver.h"
#include "plugin/CreateObject.h"

namespace tvn2x {
namespace {

SetupEnvironment SystemEnvironment()
{
    return {SystemFiles(), SystemMessageBoxes(), SystemLocale()};
}

}  // namespace

bool SetupCore::Load(const std::wstring& productName, const std::wstring& fullPath, std::wstring& model, int32_t& mode)
{
    return LoadSetup(document, SystemEnvironment(), productName, fullPath, model, mode);
}

bool SetupCore::Save(const std::wstring& productName, const std::wstring& appVersion, const std::wstring& fullPath)
{
    return SaveSetup(document, SystemEnvironment(), productName, appVersion, fullPath);
}

bool SetupCore::Backup(const std::wstring& productName, const std::wstring& appVersion, const std::wstring& fullPath)
{
    return BackupSetup(document, SystemEnvironment(), productName, appVersion, fullPath);
}

std::wstring SetupCore::FilePath() const
{
    const std::wstring folder = document.FolderOfFile();
    return folder.empty() ? com::Module::Folder() : folder;
}

void SetupCore::Parent(IDispatch* object)
{
    parent_ = object ? std::make_shared<ComParent>(object) : nullptr;
}

void SetupCore::ResetMeasurement(int32_t channel)
{
    results.Reset(document, SystemLocale(), channel);
}

bool SetupCore::SaveResults(const std::wstring& fullPath)
{
    results.receiver = IsSimulated() ? L"simulated" : L"";
    return tvn2x::SaveResults(document, results, SystemLocale(), resultFile_, SystemMessageBoxes(), fullPath);
}

/// The simulated receiver is told by its settings, which no other has. Whoever has not been used yet is not asked.
bool SetupCore::IsSimulated() const
{
    com::ComPtr<IDriver> driver;
    com::ComPtr<IDispatch> settings;
    com::ComPtr<ISimulatorSettings> simulator;
    return driver_ && SUCCEEDED(com::Query(driver_.Get(), driver)) &&
           SUCCEEDED(com::Outside([&] { return driver->get_Settings(settings.Put()); })) && settings &&
           SUCCEEDED(com::Query(settings.Get(), simulator));
}

template <class Operation>
auto SetupCore::Alone(const wchar_t* source, Operation operation)
{
    const Occupation occupation(occupiedBy_, L"A measurement or a configuration is already running", source);
    const auto parent = parent_;  // stays whole when the host sets another one meanwhile
    // The receiver comes first: without one, nothing else is asked for.
    Receiver& receiver = OpenReceiver();
    return operation(receiver, Run(source), parent.get());
}

bool SetupCore::Edit()
{
    const Occupation occupation(occupiedBy_, L"The setup editor is open", L"clsSetup.Edit");
    const bool accepted = EditSetup(document, SystemLocale());
    if (accepted) {
        ResetMeasurement(0);
    }
    return accepted;
}

bool SetupCore::Measure(int32_t channel)
{
    return Alone(L"clsSetup.Measure", [&](Receiver& receiver, RunControl& run, HostParent* parent) {
        return scan_.Measure(channel, receiver, run, parent);
    });
}

void SetupCore::GetConfiguration()
{
    Alone(L"clsSetup.GetConfiguration", [&](Receiver& receiver, RunControl& run, HostParent* parent) {
        ReadConfiguration(document, {receiver, run, parent, errors_});
    });
}

void SetupCore::SetConfiguration()
{
    Alone(L"clsSetup.SetConfiguration", [&](Receiver& receiver, RunControl& run, HostParent* parent) {
        WriteConfiguration(document, {receiver, run, parent, errors_}, [&] { scan_.ForgetTuning(); });
    });
}

HardwareCheck SetupCore::Hardware()
{
    return {document, [this]() -> Receiver& { return OpenReceiver(); }};
}

bool SetupCore::Test(std::wstring& identity, std::wstring& hardware, int32_t& mode)
{
    identity.clear();
    ComInstrument* instrument = nullptr;
    try {
        instrument = &OpenInstrument();
    } catch (const RaisedError&) {
        return false;  // what cannot be created cannot be identified
    }
    return Identify(*instrument, OpenReceiver(), identity, hardware, mode);
}

const com::ComPtr<IReceiver>& SetupCore::Driver()
{
    if (!driver_) {
        chosen_.Require();
        driver_ = CreateObject<IReceiver>(CLSID_clsReceiver, L"XKTR2x.clsReceiver", L"clsSetup.Driver");
    }
    return driver_;
}

Receiver& SetupCore::OpenReceiver()
{
    if (!receiver_) {
        receiver_ = std::make_unique<ComReceiver>(Driver());
    }
    return *receiver_;
}

ComInstrument& SetupCore::OpenInstrument()
{
    if (!instrument_) {
        instrument_ = std::make_unique<ComInstrument>(Driver());
    }
    return *instrument_;
}

RunControl& SetupCore::Run(const wchar_t* source)
{
    if (!runControl_) {
        runControl_ = std::make_unique<ComRunControl>(
            CreateObject<IRunControl>(CLSID_clsRunControl, L"XKTR2x.clsRunControl", source));
    }
    return *runControl_;
}

}  // namespace tvn2x
