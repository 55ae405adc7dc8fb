#pragma once

#include <windows.h>

#include <memory>

#include "TVNINT.h"
#include "XKTR2x.h"
#include "com/ComPtr.h"
#include "instrument/ConfigurationSteps.h"
#include "instrument/HardwareCheck.h"
#include "measure/ChannelScan.h"
#include "measure/ResultTable.h"
#include "plugin/ChosenDriver.h"
#include "plugin/ComHost.h"
#include "plugin/ComInstrument.h"
#include "setup/SetupDocument.h"
#include "setup/SetupFile.h"
#include "util/Occupation.h"

namespace tvn2x {

/// What the interfaces of clsSetup share: the document, the results, and the objects that it talks to.
class SetupCore
{
public:
    SetupDocument document;
    ResultTable results;

    bool Load(const std::wstring& productName, const std::wstring& fullPath, std::wstring& model, int32_t& mode);
    bool Save(const std::wstring& productName, const std::wstring& appVersion, const std::wstring& fullPath);
    bool Backup(const std::wstring& productName, const std::wstring& appVersion, const std::wstring& fullPath);
    std::wstring FilePath() const;

    void Parent(IDispatch* object);
    void ResetMeasurement(int32_t channel);
    bool SaveResults(const std::wstring& fullPath);

    // One at a time: each raises 5 while another one of them runs.
    bool Edit();  ///< by the user, in a dialog; true for OK, which also resets the results
    bool Measure(int32_t channel);
    void GetConfiguration();
    void SetConfiguration();

    HardwareCheck Hardware();
    /// Identifies the receiver, with the results of Identify; false where no driver object can be created.
    bool Test(std::wstring& identity, std::wstring& hardware, int32_t& mode);

    /// The driver object, created when it is first asked for. Raises 429, with the reason, where it cannot be created.
    Receiver& OpenReceiver();
    /// The same object as an instrument among others.
    ComInstrument& OpenInstrument();

private:
    const com::ComPtr<IReceiver>& Driver();
    RunControl& Run(const wchar_t* source);
    template <class Operation>
    auto Alone(const wchar_t* source, Operation operation);

    bool IsSimulated() const;

    ChosenDriver chosen_;
    com::ComPtr<IReceiver> driver_;
    std::unique_ptr<Receiver> receiver_;
    std::unique_ptr<ComInstrument> instrument_;
    std::unique_ptr<RunControl> runControl_;
    ComErrorReporter errors_;
    std::shared_ptr<HostParent> parent_;
    Replacement resultFile_{SystemFiles()};  ///< open while it is written; closed when the object goes
    Occupation::Mark occupiedBy_ = nullptr;
    ChannelScan scan_{document, results, SystemClock(), SystemLocale()};
};

}  // namespace tvn2x
