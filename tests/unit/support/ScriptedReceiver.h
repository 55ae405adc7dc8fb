#pragma once

#include <array>
#include <charconv>
#include <cmath>
#include <exception>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "instrument/Receiver.h"
#include "util/RaisedError.h"

namespace tvn2x {

/// What the scripted receiver, run control and parent share: one list of all calls in order, and what is to go wrong.
class CallLog
{
public:
    std::vector<std::string> calls;                  ///< "ReadMer", "SymbolRate 6900000", "Progress 1/30"
    std::function<void(const std::string&)> onCall;  ///< runs in each call before it fails or answers
    bool stop = false;                               ///< the stop flag

    /// The n-th call (from 1) that begins with `name`, "" for any, raises what the pointer holds.
    void FailAt(int n, std::exception_ptr failure, std::string name = {}) { fail_ = {std::move(name), n, failure}; }
    void FailAt(int n, int32_t number, std::string name = {})
    {
        FailAt(n, std::make_exception_ptr(RaisedError(number, L"XKTR2x", L"scripted")), std::move(name));
    }
    /// The stop flag is set from the n-th call that begins with `name` on.
    void StopAt(int n, std::string name = {}) { stop_ = {std::move(name), n, {}}; }

    /// Runs `action` in the first call that begins with `name`.
    void Once(std::string name, std::function<void()> action)
    {
        onCall = [this, name = std::move(name), action = std::move(action)](const std::string& call) {
            if (call.starts_with(name)) {
                const auto run = action;
                onCall = {};
                run();
            }
        };
    }
    /// Nothing goes wrong from here on.
    void Disarm()
    {
        fail_ = {};
        stop_ = {};
        stop = false;
        onCall = {};
    }

    /// Whether the failure or the stop has happened.
    bool Triggered() const { return fail_.remaining < 0 || stop_.remaining < 0; }
    int Count(const std::string& name) const
    {
        int count = 0;
        for (const std::string& call : calls) {
            count += call.starts_with(name) ? 1 : 0;
        }
        return count;
    }

    void Call(std::string call)
    {
        calls.push_back(std::move(call));
        const std::string text = calls.back();
        stop = stop_.Reached(text) || stop;
        if (onCall) {
            onCall(text);
        }
        if (fail_.Reached(text)) {
            std::rethrow_exception(fail_.failure);
        }
    }
    void Call(const char* name, double value) { Call(std::string(name) + " " + Text(value)); }

    static std::string Text(double value)
    {
        std::array<char, 64> digits{};
        return {digits.data(),
                std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed).ptr};
    }

private:
    struct Trigger
    {
        bool Reached(const std::string& call)
        {
            if (remaining <= 0 || !call.starts_with(name) || --remaining > 0) {
                return false;
            }
            remaining = -1;
            return true;
        }

        std::string name;
        int remaining = 0;  ///< 0 is never, -1 has happened
        std::exception_ptr failure;
    };

    Trigger fail_;
    Trigger stop_;
};

/// A receiver that answers what a test has written into it: a channel in perfect order, unless told otherwise.
class ScriptedReceiver : public Receiver
{
public:
    explicit ScriptedReceiver(CallLog& log) : log_(log) {}

    // Answers.
    std::map<std::string, double> readings{
        {"ReadFrequencyOffset", 1200},     {"ReadRfLevel", 2.5},      {"ReadCarrierToInterference", 41.5},
        {"ReadCarrierSuppression", 52.25}, {"ReadMer", 38.5},         {"ReadMerPercent", 1.25},
        {"ReadPhaseJitter", 0.5},          {"ReadIqImbalance", 0.25}, {"ReadIqPhase", 0.75},
        {"ReadSignalToNoise", 39.5},       {"ReadBer", 1e-8},
    };
    std::map<std::string, std::wstring> markers;  ///< by reading; "" where none is named
    std::wstring berState = L"RUN";
    std::wstring berResult = L"1.0E-8";
    bool tsError = false;
    bool symbolClockUnlocked = false;
    bool carrierUnlocked = false;
    bool referenceLocked = true;
    bool rfSignalPresent = true;
    ErrorCounters counters;
    std::wstring options = L"DVBC,EXTREF";

    std::map<int32_t, int32_t> sawTaken;  ///< the filters that the receiver takes instead of those asked for
    bool ignoresModes = false;            ///< keeps its operating mode without an error

    // Settings, as they were written last.
    int32_t berSamples = 10;
    int32_t rollOffFactor = 15;
    int32_t orderOfQam = 64;
    double symbolRate = 6.9e6;
    int32_t sawBandwidth = 8;
    int32_t referenceSource = 0;
    int32_t levelUnit = 0;
    int32_t inputRoute = 75;
    int32_t mode = 4;
    bool hold = false;
    double frequency = 0;

    double ReadFrequencyOffset() override { return Read("ReadFrequencyOffset"); }
    double ReadRfLevel() override { return Read("ReadRfLevel"); }
    double ReadCarrierToInterference() override { return Read("ReadCarrierToInterference"); }
    double ReadCarrierSuppression() override { return Read("ReadCarrierSuppression"); }
    double ReadMer() override { return Read("ReadMer"); }
    double ReadMerPercent() override { return Read("ReadMerPercent"); }
    double ReadPhaseJitter() override { return Read("ReadPhaseJitter"); }
    double ReadIqImbalance() override { return Read("ReadIqImbalance"); }
    double ReadIqPhase() override { return Read("ReadIqPhase"); }
    double ReadSignalToNoise() override { return Read("ReadSignalToNoise"); }
    double ReadBer() override { return Read("ReadBer"); }
    std::wstring ValueStatus() override { return Get("ValueStatus", markers[lastReading_]); }
    std::wstring BerState() override { return Get("BerState", berState); }
    std::wstring BerResult() override { return Get("BerResult", berResult); }

    bool TsError() override { return Get("TsError", tsError); }
    bool SymbolClockUnlocked() override { return Get("SymbolClockUnlocked", symbolClockUnlocked); }
    bool CarrierUnlocked() override { return Get("CarrierUnlocked", carrierUnlocked); }
    bool ReferenceLocked() override { return Get("ReferenceLocked", referenceLocked); }
    bool RfSignalPresent() override { return Get("RfSignalPresent", rfSignalPresent); }
    ErrorCounters ReadErrorCounters() override { return Get("ReadErrorCounters", counters); }
    void ResetErrorCounters() override { log_.Call("ResetErrorCounters"); }

    int32_t BerSamples() override { return Get("BerSamples", berSamples); }
    void BerSamples(int32_t value) override { Set("BerSamples", berSamples, value); }
    int32_t RollOffFactor() override { return Get("RollOffFactor", rollOffFactor); }
    void RollOffFactor(int32_t value) override { Set("RollOffFactor", rollOffFactor, value); }
    int32_t OrderOfQam() override { return Get("OrderOfQam", orderOfQam); }
    void OrderOfQam(int32_t value) override { Set("OrderOfQam", orderOfQam, value); }
    double SymbolRate() override { return Get("SymbolRate", symbolRate); }
    void SymbolRate(double value) override { Set("SymbolRate", symbolRate, value); }
    int32_t SawBandwidth() override { return Get("SawBandwidth", sawBandwidth); }
    void SawBandwidth(int32_t value) override
    {
        Set("SawBandwidth", sawBandwidth, value);
        if (sawTaken.count(value) != 0)
            sawBandwidth = sawTaken[value];
    }
    int32_t ReferenceSource() override { return Get("ReferenceSource", referenceSource); }
    void ReferenceSource(int32_t value) override { Set("ReferenceSource", referenceSource, value); }
    int32_t LevelUnit() override { return Get("LevelUnit", levelUnit); }
    void LevelUnit(int32_t value) override { Set("LevelUnit", levelUnit, value); }
    int32_t InputRoute() override { return Get("InputRoute", inputRoute); }
    void InputRoute(int32_t value) override { Set("InputRoute", inputRoute, value); }
    int32_t Mode() override { return Get("Mode", mode); }
    void Mode(int32_t value) override
    {
        int32_t ignored = 0;
        Set("Mode", ignoresModes ? ignored : mode, value);
    }
    bool Hold() override { return Get("Hold", hold); }
    void Hold(bool value) override { Set("Hold", hold, value); }
    double Frequency() override { return Get("Frequency", frequency); }
    void Frequency(double value) override { Set("Frequency", frequency, value); }
    void InputAttenuation(int32_t value) override { log_.Call("InputAttenuation", value); }
    void DemodulatorGainControl(int32_t value) override { log_.Call("DemodulatorGainControl", value); }
    void Equaliser(int32_t value) override { log_.Call("Equaliser", value); }
    void Initialise() override { log_.Call("Initialise"); }

    std::wstring SerialNumber() override { return Get<std::wstring>("SerialNumber", L"100001"); }
    std::wstring FirmwareVersion() override { return Get<std::wstring>("FirmwareVersion", L"2.10"); }
    std::wstring InstalledOptions() override { return Get("InstalledOptions", options); }

private:
    double Read(const char* name)
    {
        lastReading_ = name;
        log_.Call(name);
        return readings[name];
    }

    template <class Answer>
    Answer Get(const char* name, const Answer& answer)
    {
        log_.Call(name);
        return answer;
    }

    template <class Value>
    void Set(const char* name, Value& stored, Value value)
    {
        log_.Call(name, value);
        stored = value;
    }

    CallLog& log_;
    std::string lastReading_;
};

/// An instrument that is what a test makes it.
class ScriptedInstrument : public Instrument
{
public:
    explicit ScriptedInstrument(CallLog& log) : log_(log) {}

    bool answers = true;  ///< can be taken on line
    bool online = false;
    std::wstring model = L"KTR";
    std::wstring manufacturer = L"KESTREL&BRAND";
    std::wstring hardware = L"KTR 23";

    bool Online() override
    {
        log_.Call("Online");
        return online;
    }
    void Online(bool value) override
    {
        log_.Call("Online", value);
        online = value && answers;
    }
    std::wstring InstrumentName() override { return Get("InstrumentName", L"Receiver 3"); }
    std::wstring BusAddress() override { return Get("BusAddress", L"GPIB0::12"); }
    std::wstring Model() override { return Get("Model", model); }
    std::wstring Manufacturer() override { return Get("Manufacturer", manufacturer); }
    std::wstring Hardware() override { return Get("Hardware", hardware); }

private:
    std::wstring Get(const char* name, const std::wstring& answer)
    {
        log_.Call(name);
        return answer;
    }

    CallLog& log_;
};

class ScriptedErrorReporter : public ErrorReporter
{
public:
    explicit ScriptedErrorReporter(CallLog& log) : log_(log) {}

    std::vector<RaisedError> reported;
    bool raises = true;  ///< where it is asked to

    void Report(int32_t number, const std::wstring& source, const std::wstring& description, bool raise) override
    {
        log_.Call("Report " + std::to_string(number) + (raise ? " raise" : ""));
        reported.emplace_back(number, source, description);
        if (raise && raises)
            throw reported.back();
    }

private:
    CallLog& log_;
};

class ScriptedRunControl : public RunControl
{
public:
    explicit ScriptedRunControl(CallLog& log) : log_(log) {}

    bool StopFlag() override
    {
        log_.Call("StopFlag");
        return log_.stop;
    }
    void Pause(float seconds) override { log_.Call("Pause " + CallLog::Text(std::round(seconds * 1000)) + " ms"); }

private:
    CallLog& log_;
};

class ScriptedParent : public HostParent
{
public:
    explicit ScriptedParent(CallLog& log) : log_(log) {}

    void Status(const std::wstring& text) override { log_.Call("Status " + std::string(text.begin(), text.end())); }
    void Progress(double value) override { log_.Call("Progress", value); }
    void Progress(double value, int16_t steps) override
    {
        log_.Call("Progress " + CallLog::Text(value) + "/" + std::to_string(steps));
    }
    void CellChanged(int32_t channel, int16_t column) override
    {
        log_.Call("Cell " + std::to_string(channel) + "," + std::to_string(column));
    }
    void ChannelStart(double hertz, double symbolsPerSecond) override
    {
        log_.Call("ChannelStart " + CallLog::Text(hertz) + " " + CallLog::Text(symbolsPerSecond));
    }

private:
    CallLog& log_;
};

}  // namespace tvn2x
