#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "instrument/Receiver.h"
#include "measure/ResultTable.h"
#include "setup/SetupDocument.h"
#include "util/Clock.h"
#include "util/clsTimeout.h"
#include "util/modLocaleInfo.h"

namespace tvn2x {

/// One call: its working state and its steps, from top to bottom in the order in which they run.
class ChannelRun
{
public:
    /// What a scan works with and on. The parent is null where the host has set none.
    struct Collaborators
    {
        const SetupDocument& document;
        ResultTable& table;
        Receiver& receiver;
        RunControl& runControl;
        HostParent* parent;
        Clock& clock;
        const Locale& locale;
    };

    ChannelRun(const Collaborators& with, int32_t channel, std::optional<double>& lastTuned);

    /// False where an unexpected error ended the channel.
    bool Run();

private:
    /// Synchronisation state of the channel, a bit set. A lock that goes while measuring leaves its lost bit behind.
    static constexpr uint32_t lostShift = 4;
    enum SyncState : uint32_t
    {
        rfPresent = 1,
        referenceLocked = 2,
        carrierLocked = 4,
        tsLocked = 8,
        allLocks = rfPresent | referenceLocked | carrierLocked | tsLocked,
        rfLost = rfPresent << lostShift,
        referenceLost = referenceLocked << lostShift,
        carrierLost = carrierLocked << lostShift,
        tsLost = tsLocked << lostShift,
        controlError = 256  ///< nothing more is read from the receiver for this channel
    };

    using Reading = double (Receiver::*)();

    void Synchronise();
    void Measure();

    void TuneReceiver();
    void WaitForLocks();
    template <class Condition>
    bool WaitFor(clsTimeout& settling, Condition holds);

    void BeginMeasuring();
    void BeginErrorInterval();
    template <class Read>
    void MeasureColumn(MP_TYPES parameter, Read read);
    void StoreReading(MP_TYPES parameter, Reading reading);
    void IntegrateBer();
    void StoreErrorRate(MP_TYPES parameter, double dvbc::ErroredTime::*counter);
    void ShowLock(MP_TYPES parameter, SyncState lock);
    void ShowIntermittent(MP_TYPES parameter, SyncState lost);
    void Finish();

    void Recheck();
    void Recheck(SyncState lock, bool holds);
    bool CarrierHolds() { return !receiver_.SymbolClockUnlocked() && !receiver_.CarrierUnlocked(); }
    bool Has(uint32_t bits) const { return (state_ & bits) != 0; }
    bool Wanted(MP_TYPES parameter) const { return document_.Parameter(0, parameter); }
    bool WantsErrorCounters() const { return Wanted(MP_SY) || Wanted(MP_DE); }
    clsTimeout StartTimer(double seconds) const;
    std::wstring FormatReading(MP_TYPES parameter, double value) const;
    std::wstring CleanBerResult(const std::wstring& result) const;

    void PollStopFlag();
    void ReportStatus(std::wstring_view phase);
    void ReportCell(int16_t column);
    void ReportProgress();
    void EndStep();
    void Store(int32_t field, MP_TYPES parameter, std::wstring_view text);
    void StoreNumber(MP_TYPES parameter, double value);

    template <class Statement>
    void Guarded(Statement statement);
    template <class Statement>
    void Defining(Statement statement);
    void HandleError();

    const SetupDocument& document_;
    ResultTable& table_;
    Receiver& receiver_;
    RunControl& runControl_;
    HostParent* parent_;
    Clock& clock_;
    const Locale& locale_;

    const int32_t channel_;
    const double frequency_;   ///< MHz
    const double symbolRate_;  ///< MSymb/s
    const std::wstring frequencyText_;
    std::optional<double>& lastTuned_;  ///< MHz

    uint32_t state_ = 0;
    std::wstring_view status_ = L"Done";
    bool result_ = true;
    double progress_ = 0;
    double bitTime_ = 0;               ///< seconds that 10^7 bits take
    bool referenceCanBeLost_ = false;  ///< an external reference is in use
    dvbc::ErroredTime countersAtStart_;
    std::optional<double> intervalStart_;  ///< of the error counting, in the clock's steady seconds
};

}  // namespace tvn2x
