#pragma once

#include <cstdint>
#include <string>

namespace tvn2x {

/// The three error counters of the transport stream: errored time since their last reset, in seconds.
struct ErrorCounters
{
    double syncErrors = 0;
    double dataErrors = 0;
    double unavailable = 0;
};

/// What the product needs of a test receiver, one method per operation. Any operation may raise a RaisedError.
class Receiver
{
public:
    virtual ~Receiver() = default;

    // Readings. ValueStatus tells of the last one: "", or the range marker "---", "UNDER" or "OVER".
    virtual double ReadFrequencyOffset() = 0;        ///< Hz
    virtual double ReadRfLevel() = 0;                ///< in the receiver's level unit
    virtual double ReadCarrierToInterference() = 0;  ///< dB
    virtual double ReadCarrierSuppression() = 0;     ///< dB
    virtual double ReadMer() = 0;                    ///< dB RMS
    virtual double ReadMerPercent() = 0;             ///< % RMS
    virtual double ReadPhaseJitter() = 0;            ///< degrees RMS
    virtual double ReadIqImbalance() = 0;            ///< %
    virtual double ReadIqPhase() = 0;                ///< degrees
    virtual double ReadSignalToNoise() = 0;          ///< dB
    virtual double ReadBer() = 0;                    ///< ratio before Reed-Solomon; starts a count where none runs
    virtual std::wstring ValueStatus() = 0;
    virtual std::wstring BerState() = 0;   ///< "---" where no count can run
    virtual std::wstring BerResult() = 0;  ///< text with a point as decimal separator

    // Synchronisation.
    virtual bool TsError() = 0;
    virtual bool SymbolClockUnlocked() = 0;
    virtual bool CarrierUnlocked() = 0;
    virtual bool ReferenceLocked() = 0;
    virtual bool RfSignalPresent() = 0;
    virtual ErrorCounters ReadErrorCounters() = 0;
    virtual void ResetErrorCounters() = 0;

    // Settings.
    virtual int32_t BerSamples() = 0;  ///< blocks of 10^7 bits
    virtual void BerSamples(int32_t samples) = 0;
    virtual int32_t RollOffFactor() = 0;  ///< hundredths
    virtual void RollOffFactor(int32_t hundredths) = 0;
    virtual int32_t OrderOfQam() = 0;
    virtual void OrderOfQam(int32_t order) = 0;
    virtual double SymbolRate() = 0;  ///< symbols per second
    virtual void SymbolRate(double symbolsPerSecond) = 0;
    virtual int32_t SawBandwidth() = 0;  ///< MHz, 0 = off
    virtual void SawBandwidth(int32_t megahertz) = 0;
    virtual int32_t ReferenceSource() = 0;  ///< 0 internal, 1 external
    virtual void ReferenceSource(int32_t source) = 0;
    virtual int32_t LevelUnit() = 0;  ///< code 0..5
    virtual void LevelUnit(int32_t code) = 0;
    virtual int32_t InputRoute() = 0;  ///< 2, 4, 50, 75 or 128
    virtual void InputRoute(int32_t route) = 0;
    virtual int32_t Mode() = 0;  ///< operating mode, 4 = DVB-C demodulator
    virtual void Mode(int32_t mode) = 0;
    virtual bool Hold() = 0;  ///< readings and lock states are frozen while true
    virtual void Hold(bool hold) = 0;
    virtual double Frequency() = 0;  ///< centre frequency in Hz
    virtual void Frequency(double hertz) = 0;
    virtual void InputAttenuation(int32_t decibels) = 0;    ///< of the receiver routes; 255 is automatic
    virtual void DemodulatorGainControl(int32_t mode) = 0;  ///< of the demodulator route; 1 is automatic
    virtual void Equaliser(int32_t mode) = 0;               ///< 1 is adaptive
    virtual void Initialise() = 0;                          ///< brings the receiver into its basic state

    // Identity.
    virtual std::wstring SerialNumber() = 0;
    virtual std::wstring FirmwareVersion() = 0;
    virtual std::wstring InstalledOptions() = 0;  ///< separated by commas
};

/// The receiver as an instrument among others: whether it is on line, and who it is. Any operation may raise an error.
class Instrument
{
public:
    virtual ~Instrument() = default;
    virtual bool Online() = 0;
    virtual void Online(bool online) = 0;  ///< stays off line, without an error, where nothing answers
    virtual std::wstring InstrumentName() = 0;
    virtual std::wstring BusAddress() = 0;
    virtual std::wstring Model() = 0;
    virtual std::wstring Manufacturer() = 0;
    virtual std::wstring Hardware() = 0;  ///< variant and revision
};

/// How the host asks a running operation to stop, and how an operation waits. Shared with the host.
class RunControl
{
public:
    virtual ~RunControl() = default;
    virtual bool StopFlag() = 0;
    virtual void Pause(float seconds) = 0;
};

/// The host's parent object. Any notice may raise an error.
class HostParent
{
public:
    virtual ~HostParent() = default;
    virtual void Status(const std::wstring& text) = 0;
    virtual void Progress(double value) = 0;
    virtual void Progress(double value, int16_t steps) = 0;
    virtual void CellChanged(int32_t channel, int16_t column) = 0;  ///< column -1 is the whole row
    virtual void ChannelStart(double hertz, double symbolsPerSecond) = 0;
};

/// Where an operation reports errors, for the host to look up. Shared with the host.
class ErrorReporter
{
public:
    virtual ~ErrorReporter() = default;
    /// Keeps the error for the host; with `raise` it also comes back as a RaisedError.
    virtual void Report(int32_t number, const std::wstring& source, const std::wstring& description, bool raise) = 0;
};

}  // namespace tvn2x
