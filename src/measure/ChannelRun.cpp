#include "measure/ChannelRun.h"

#include <algorithm>
#include <cmath>

#include "instrument/HardwareCheck.h"
#include "setup/catalogue/LevelUnits.h"
#include "setup/catalogue/Options.h"
#include "setup/catalogue/Parameters.h"
#include "text/Blanks.h"
#include "util/RaisedError.h"
#include "util/modFormat.h"

namespace tvn2x {
namespace {

constexpr int32_t stopRequested = 50000;   ///< the stop flag was found set: the channel ends as "Done"
constexpr int32_t leaveRequested = 50001;  ///< an order to leave at once

constexpr double perMega = 1e6;
constexpr double bitsPerSample = 1e7;
constexpr int16_t progressTotal = 30;
constexpr double longestWait = 23 * 3600;  ///< seconds; clsTimeout cannot tell a day or more
constexpr double largestReading = 1e15;    ///< of any unit, far beyond what is measured
constexpr size_t longestText = 64;         ///< of a driver's own words; no display of a receiver holds more

constexpr std::wstring_view notMeasured = L"---";
constexpr std::wstring_view rangeMarkers = L" --- UNDER OVER ";

/// A reading that is nothing but read, and the parameter that it feeds.
struct PlainReading
{
    MP_TYPES parameter;
    double (Receiver::*read)();
};

constexpr PlainReading plainReadings[] = {
#define RECEIVER_READING(name, parameter) {parameter, &Receiver::name},
#define RECEIVER_READING_OF_ITS_OWN(name, parameter)
#include "setup/catalogue/ReceiverOperations.h"
};

/// Thrown to end the channel from within a step.
struct LeaveAtOnce
{
};

/// Whether a number can have been measured: a driver may answer anything.
bool IsReading(double value)
{
    return std::fabs(value) <= largestReading;
}

/// Whether the receiver says so in place of a value; it may cut or pad its markers.
bool IsRangeMarker(std::wstring_view text)
{
    return !text.empty() && rangeMarkers.find(text) != std::wstring_view::npos;
}

/// A driver's own words as a cell holds them: control characters as blanks, "---" where it is no text for people.
std::wstring CellText(std::wstring text)
{
    if (text.size() > longestText) {
        return std::wstring(notMeasured);
    }
    const auto isControl = [](wchar_t c) { return c < L' ' || (c >= L'\u007F' && c <= L'\u009F'); };
    std::ranges::replace_if(text, isControl, L' ');
    return text;
}

}  // namespace

ChannelRun::ChannelRun(const Collaborators& with, int32_t channel, std::optional<double>& lastTuned)
    : document_(with.document),
      table_(with.table),
      receiver_(with.receiver),
      runControl_(with.runControl),
      parent_(with.parent),
      clock_(with.clock),
      locale_(with.locale),
      channel_(channel),
      frequency_(with.document.Frequency(channel)),
      symbolRate_(with.document.SymbolRate(channel)),
      frequencyText_(FormatNumber(frequency_, true, locale_)),
      lastTuned_(lastTuned)
{
}

bool ChannelRun::Run()
{
    try {
        Guarded([this] { Synchronise(); });
        Measure();
    } catch (const LeaveAtOnce&) {
        // The channel keeps what was written so far and is not marked as measured.
    }
    return result_;
}

/// Here nothing is guarded: any error goes on with the measuring phase.
void ChannelRun::Synchronise()
{
    table_.Measured(channel_, false);
    ReportStatus(L"Synchronising");
    Store(1, MP_STATUS, L"Synchronising");
    ReportCell(-1);
    if (parent_ != nullptr) {
        parent_->ChannelStart(frequency_ * perMega, symbolRate_ * perMega);
    }
    bitTime_ = bitsPerSample / (symbolRate_ * perMega * (std::log(document_.OrderOfQam()) / std::log(2.0)));
    PollStopFlag();
    ReportProgress();
    TuneReceiver();
    WaitForLocks();
}

void ChannelRun::TuneReceiver()
{
    if (lastTuned_ != frequency_) {
        lastTuned_.reset();  // a tuning that fails half-way leaves the receiver anywhere
        receiver_.Frequency(frequency_ * perMega);
        lastTuned_ = frequency_;
    }
    PollStopFlag();
    ReportProgress();

    receiver_.SymbolRate(symbolRate_ * perMega);
    PollStopFlag();
    ReportProgress();

    runControl_.Pause(0.1F);
    if (receiver_.Hold()) {
        receiver_.Hold(false);
    }
    PollStopFlag();
    ReportProgress();
}

void ChannelRun::WaitForLocks()
{
    clsTimeout settling = StartTimer(document_.MaxSettlingTime());
    if (WantsErrorCounters()) {
        receiver_.ResetErrorCounters();
    }
    PollStopFlag();
    ReportProgress();

    if (WaitFor(settling, [this] { return receiver_.RfSignalPresent(); })) {
        state_ |= rfPresent;
    }
    PollStopFlag();
    ReportProgress();

    referenceCanBeLost_ = document_.ReferenceSource() == 1 && HasReferenceInput(receiver_.InstalledOptions());
    if (!referenceCanBeLost_ || WaitFor(settling, [this] { return receiver_.ReferenceLocked(); })) {
        state_ |= referenceLocked;
    }
    PollStopFlag();
    ReportProgress();

    if (state_ == (rfPresent | referenceLocked) && WaitFor(settling, [this] { return CarrierHolds(); })) {
        state_ |= carrierLocked;
    }
    PollStopFlag();
    ReportProgress();

    if (state_ == (rfPresent | referenceLocked | carrierLocked) &&
        WaitFor(settling, [this] { return !receiver_.TsError(); })) {
        state_ |= tsLocked;
    }
    PollStopFlag();
    ReportProgress();
}

/// False when the time ran out, which is no error: the lock indicators show it. A set stop flag ends the wait too; the
/// poll that follows deals with it.
template <class Condition>
bool ChannelRun::WaitFor(clsTimeout& settling, Condition holds)
{
    while (settling.State() != tmoExpired) {
        const bool reached = holds();
        if (runControl_.StopFlag() || reached) {
            return true;
        }
    }
    return false;
}

/// From here on each statement is guarded on its own: after an error the next one follows.
void ChannelRun::Measure()
{
    BeginMeasuring();
    BeginErrorInterval();

    MeasureColumn(MP_RFLEV, [this] {
        if (Has(rfPresent) || receiver_.RfSignalPresent()) {
            StoreReading(MP_RFLEV, &Receiver::ReadRfLevel);
        }
    });
    ShowLock(MP_REF, referenceLocked);
    ShowLock(MP_SYNC, carrierLocked);
    ShowLock(MP_DATA, tsLocked);
    MeasureColumn(MP_BER, [this] {
        if (Has(tsLocked)) {
            IntegrateBer();
        }
    });
    for (const PlainReading& plain : plainReadings) {
        MeasureColumn(plain.parameter, [this, &plain] { StoreReading(plain.parameter, plain.read); });
    }
    MeasureColumn(MP_SY, [this] { StoreErrorRate(MP_SY, &dvbc::ErroredTime::syncErrors); });
    MeasureColumn(MP_DE, [this] { StoreErrorRate(MP_DE, &dvbc::ErroredTime::dataErrors); });

    ShowIntermittent(MP_REF, referenceLost);
    ShowIntermittent(MP_SYNC, carrierLost);
    ShowIntermittent(MP_DATA, tsLost);
    Finish();
}

void ChannelRun::BeginMeasuring()
{
    Guarded([this] { ReportStatus(L"Measuring"); });
    Guarded([this] { Store(1, MP_STATUS, L"Measuring"); });
    Guarded([this] { ReportCell(-1); });
    Guarded([this] { PollStopFlag(); });
}

void ChannelRun::BeginErrorInterval()
{
    if (!WantsErrorCounters()) {
        return;
    }
    Guarded([this] { Recheck(); });
    if (!Has(controlError)) {
        Guarded([this] {
            countersAtStart_ = receiver_.ErrorCounters();
            intervalStart_ = clock_.SteadySeconds();
        });
    }
}

/// One column: cleared, filled by `read`, which stores and reports what it finds, and "---" where it found nothing.
template <class Read>
void ChannelRun::MeasureColumn(MP_TYPES parameter, Read read)
{
    if (Wanted(parameter)) {
        Guarded([&] { table_.ClearColumn(parameter, channel_); });
        Guarded([&] { ReportCell(-1); });
        Guarded([&] { Recheck(); });
        if (!Has(controlError)) {
            Guarded(read);
        }
        bool missing = false;
        Defining([&] {
            missing = table_.Result(0, parameter, channel_).empty();
            if (missing) {
                Store(0, parameter, notMeasured);
            }
        });
        if (missing) {
            Guarded([&] { ReportCell(static_cast<int16_t>(parameter)); });
        }
    }
    EndStep();
}

void ChannelRun::StoreReading(MP_TYPES parameter, Reading reading)
{
    const double value = (receiver_.*reading)();
    const std::wstring marker = receiver_.ValueStatus();
    if (IsRangeMarker(marker)) {
        Store(0, parameter, marker);
    } else if (IsReading(value)) {
        StoreNumber(parameter, value);
    } else {
        return;
    }
    ReportCell(static_cast<int16_t>(parameter));
}

/// The cell follows the count while it runs, so that the user sees it converge. A count that has found no error yet has
/// no ratio: its text is a bound, and the receiver marks it.
void ChannelRun::IntegrateBer()
{
    clsTimeout integration = StartTimer(document_.BerSamples() * bitTime_);
    do {
        const double ratio = receiver_.ReadBer();
        const std::wstring valueStatus = receiver_.ValueStatus();
        const std::wstring countState = receiver_.BerState();
        if (countState == notMeasured) {
            return;
        }
        const std::wstring result = CleanBerResult(receiver_.BerResult());
        if (!IsReading(ratio)) {
            Store(0, MP_BER, notMeasured);
        } else if (IsRangeMarker(valueStatus) || IsRangeMarker(result)) {
            Store(0, MP_BER, result);
        } else {
            table_.Reading(MP_BER, channel_, result, ratio);
        }
        Store(1, MP_BER, CellText(countState));
        Store(2, MP_BER, CellText(valueStatus));
        ReportCell(MP_BER);
        PollStopFlag();
    } while (integration.State() != tmoExpired);
}

/// Errored time as a percentage of the time since BeginErrorInterval; 100 without a stream or without an error. Nothing
/// was measured where the counters were not read then, tell no time or ran back, or differ over less than a second.
void ChannelRun::StoreErrorRate(MP_TYPES parameter, double dvbc::ErroredTime::*counter)
{
    double percent = 100;
    if (Has(tsLocked | tsLost)) {
        if (!intervalStart_) {
            return;
        }
        const double before = countersAtStart_.*counter;
        const double after = receiver_.ErrorCounters().*counter;
        const double now = clock_.SteadySeconds();
        if (!IsReading(before) || !IsReading(after) || after < before) {
            return;
        }
        if (after > before) {
            if (now - *intervalStart_ < 1) {
                return;
            }
            percent = 100 * (after - before) / (std::floor(now) - std::floor(*intervalStart_));
        }
    }
    if (!IsReading(percent)) {
        return;
    }
    StoreNumber(parameter, percent);
    ReportCell(static_cast<int16_t>(parameter));
}

void ChannelRun::ShowLock(MP_TYPES parameter, SyncState lock)
{
    if (Wanted(parameter)) {
        Guarded([&] { table_.ClearColumn(parameter, channel_); });
        Guarded([&] { ReportCell(-1); });
        Defining([&] { Store(0, parameter, Has(lock) ? L"OK" : L"UNSYNC"); });
        Guarded([&] { ReportCell(static_cast<int16_t>(parameter)); });
    }
    EndStep();
}

void ChannelRun::ShowIntermittent(MP_TYPES parameter, SyncState lost)
{
    if (Wanted(parameter) && Has(lost) && !Has(controlError)) {
        Guarded([&] { Store(0, parameter, L"INTERMITTENT"); });
        Guarded([&] { ReportCell(static_cast<int16_t>(parameter)); });
    }
}

void ChannelRun::Finish()
{
    Guarded([this] { ReportProgress(); });
    Guarded([this] { Store(1, MP_TIMESTAMP, locale_.FormatGeneralDate(clock_.Now())); });
    Guarded([this] { ReportCell(MP_TIMESTAMP); });
    Defining([this] { Store(1, MP_STATUS, status_); });
    Guarded([this] { ReportCell(MP_STATUS); });
    Defining([this] { table_.Measured(channel_, true); });
}

void ChannelRun::Recheck()
{
    if (Has(rfPresent)) {
        Recheck(rfPresent, receiver_.RfSignalPresent());
    }
    if (Has(referenceLocked) && referenceCanBeLost_) {
        Recheck(referenceLocked, receiver_.ReferenceLocked());
    }
    if (Has(carrierLocked)) {
        Recheck(carrierLocked, CarrierHolds());
    }
    if (Has(tsLocked)) {
        Recheck(tsLocked, !receiver_.TsError());
    }
}

void ChannelRun::Recheck(SyncState lock, bool holds)
{
    if (!holds) {
        state_ = (state_ & ~uint32_t{lock}) | uint32_t{lock} << lostShift;
    }
}

/// A timer that is sure to expire: a time that is no number is over at once, and none is longer than can be told.
clsTimeout ChannelRun::StartTimer(double seconds) const
{
    constexpr double over = -1;
    clsTimeout timer(clock_);
    timer.Start(static_cast<float>(std::isfinite(seconds) ? std::clamp(seconds, over, longestWait) : over));
    return timer;
}

std::wstring ChannelRun::FormatReading(MP_TYPES parameter, double value) const
{
    const int32_t digits = parameter == MP_RFLEV ? SignificantLevelDigits(document_.LevelUnit()) : 0;
    return digits > 0 ? FormatSignificant(value, digits, true, locale_)
                      : FormatNumber(value, DisplayFormat(parameter), true, locale_);
}

std::wstring ChannelRun::CleanBerResult(const std::wstring& result) const
{
    std::wstring text(TrimBlanks(CellText(result)));
    if (const size_t point = text.find(L'.'); point != std::wstring::npos) {
        text[point] = locale_.DecimalMark();
    }
    return text;
}

void ChannelRun::PollStopFlag()
{
    if (runControl_.StopFlag()) {
        throw RaisedError(stopRequested, {}, {});
    }
}

void ChannelRun::ReportStatus(std::wstring_view phase)
{
    if (parent_ != nullptr) {
        parent_->Status(std::wstring(phase) + L" at " + frequencyText_ + L" MHz");
    }
}

void ChannelRun::ReportCell(int16_t column)
{
    if (parent_ != nullptr) {
        parent_->CellChanged(channel_, column);
    }
}

void ChannelRun::ReportProgress()
{
    progress_ += 1.0;
    if (parent_ != nullptr) {
        parent_->Progress(progress_, progressTotal);
    }
}

void ChannelRun::EndStep()
{
    Guarded([this] { PollStopFlag(); });
    Guarded([this] { ReportProgress(); });
}

void ChannelRun::Store(int32_t field, MP_TYPES parameter, std::wstring_view text)
{
    table_.Result(field, parameter, channel_, text);
}

void ChannelRun::StoreNumber(MP_TYPES parameter, double value)
{
    table_.Reading(parameter, channel_, FormatReading(parameter, value), value);
}

/// Runs a statement of the scan and goes on behind it, whatever it raises.
template <class Statement>
void ChannelRun::Guarded(Statement statement)
{
    try {
        statement();
    } catch (...) {
        HandleError();
    }
}

/// The same for a write that the channel cannot do without: where memory lacks even for that, the caller must know.
template <class Statement>
void ChannelRun::Defining(Statement statement)
{
    try {
        statement();
    } catch (const RaisedError&) {
        HandleError();
    }
}

/// What an error means is decided here and nowhere else. Runs inside a catch block.
void ChannelRun::HandleError()
{
    int32_t number = 0;
    try {
        throw;
    } catch (const RaisedError& raised) {
        number = raised.number;
    } catch (...) {
        // Counts as any other error.
    }
    if (number == leaveRequested) {
        throw LeaveAtOnce{};
    }
    state_ = (state_ & ~uint32_t{allLocks}) | controlError;
    status_ = number == stopRequested ? L"Done" : L"Control Error";
    result_ = result_ && number == stopRequested;
}

}  // namespace tvn2x
