#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "receivers/model/ReceiverSettings.h"
#include "setup/catalogue/Settings.h"

namespace tvn2x {

/// How far one receiver's settings go.
struct ControlRanges
{
    double lowestFrequency;  ///< Hz
    double highestFrequency;
    double lowestSymbolRate;  ///< symbols per second
    double highestSymbolRate;
    int32_t lowestRollOff;  ///< hundredths
    int32_t highestRollOff;
    std::span<const int32_t> ordersOfQam;
};

/// What every receiver shows where it does not measure a reading: nothing. A receiver has a reading of the same name
/// instead for each that it measures.
class UnmeasuredReadings
{
public:
#define RECEIVER_READING(name, parameter) \
    double name()                         \
    {                                     \
        status_ = L"---";                 \
        return 0;                         \
    }
#include "setup/catalogue/ReceiverOperations.h"
    /// Of the last reading: where it tells of a range marker, the reading is 0 or the end of the range.
    std::wstring ValueStatus() const
    {
        return status_;
    }

protected:
    ~UnmeasuredReadings() = default;

    std::wstring status_;
};

/// What is set alike in every receiver, and read back: the operations of that name, in their units. A setter that is
/// refused raises an error that begins with "Let ... failed" and leaves the setting as it was.
class ReceiverControls : public UnmeasuredReadings
{
public:
    double Frequency() const { return settings_.frequency; }
    void Frequency(double hertz);  ///< always tunes anew
    double SymbolRate() const { return settings_.symbolRate; }
    void SymbolRate(double symbolsPerSecond);
    int32_t OrderOfQam() const { return settings_.order; }
    void OrderOfQam(int32_t order);
    int32_t RollOffFactor() const { return settings_.rollOff; }
    void RollOffFactor(int32_t hundredths);
    int32_t BerSamples() const { return settings_.berSamples; }
    void BerSamples(int32_t blocks);  ///< 1..10000
    int32_t LevelUnit() const { return static_cast<int32_t>(settings_.levelUnit); }
    void LevelUnit(int32_t code);
    int32_t InputRoute() const { return settings_.route; }
    void InputRoute(int32_t route);
    int32_t InputAttenuation() const { return settings_.attenuation; }
    void InputAttenuation(int32_t decibels);  ///< 0..70, or 255 for automatic

protected:
    static constexpr int32_t modeRefused = static_cast<int32_t>(0x80040000u + 2003);

    explicit ReceiverControls(const ControlRanges& ranges) : ranges_(&ranges) {}
    ~ReceiverControls() = default;

    /// The signal is another one: what has been received of the last one is over.
    virtual void Tune() = 0;
    /// The client has set the frequency, be it to what it was.
    virtual void TuneAnew() { Tune(); }
    /// Each measurement begins with the symbol rate, also one that need not tune.
    virtual void BeginMeasurement() = 0;
    virtual void RestartBerCount() = 0;
    /// What stands between the socket and the demodulator is another one.
    virtual void FrontEndChanged() {}
    /// Refuses a route that this receiver has not got.
    virtual void RequireRoute(int32_t route) const { static_cast<void>(route); }

    static bool IsChoice(const Setting& setting, int32_t value) { return FindListData(setting.choices, value) >= 0; }

    template <class Value>
    void ChangeSignal(Value ReceiverSettings::*setting, Value value)
    {
        if (settings_.*setting != value) {
            settings_.*setting = value;
            Tune();
        }
    }
    template <class Value>
    void ChangeFrontEnd(Value ReceiverSettings::*setting, Value value)
    {
        if (settings_.*setting != value) {
            settings_.*setting = value;
            FrontEndChanged();
        }
    }

    ReceiverSettings settings_;

private:
    const ControlRanges* ranges_;
};

}  // namespace tvn2x
