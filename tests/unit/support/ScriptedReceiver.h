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
#include "support/ReceiverAnswers.h"
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
class ScriptedReceiver : public Receiver, public Instrument
{
public:
    explicit ScriptedReceiver(CallLog& log) : log_(log) {}

    ReceiverAnswers answers = GoodAnswers();
    std::map<std::string, std::wstring> markers;  ///< by reading; "" where none is named
    std::map<int32_t, int32_t> sawTaken;          ///< the filters that the receiver takes instead of those asked for
    bool ignoresModes = false;                    ///< keeps its operating mode without an error
    bool isReachable = true;                      ///< can be taken on line
    bool online = false;

    bool Online() override
    {
        log_.Call("Online");
        return online;
    }
    void Online(bool value) override
    {
        log_.Call("Online", value);
        online = value && isReachable;
    }

#define RECEIVER_READING(name, parameter) \
    double name() override                \
    {                                     \
        return Read(#name, answers.name); \
    }
#define RECEIVER_STATE(Type, name)       \
    Type name() override                 \
    {                                    \
        return Get(#name, answers.name); \
    }
#define INSTRUMENT_IDENTITY(name) RECEIVER_STATE(std::wstring, name)
#define RECEIVER_SETTING(Type, name)     \
    Type name() override                 \
    {                                    \
        return Get(#name, answers.name); \
    }                                    \
    void name(Type value) override       \
    {                                    \
        Set(#name, answers.name, value); \
    }
#define RECEIVER_ACTION(name) \
    void name() override      \
    {                         \
        log_.Call(#name);     \
    }
#include "setup/catalogue/ReceiverOperations.h"

private:
    double Read(const char* name, double reading)
    {
        answers.ValueStatus = markers[name];
        log_.Call(name);
        return reading;
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
        stored = Taken(stored, value);
    }

    template <class Value>
    Value Taken(const Value&, Value value)
    {
        return value;
    }
    int32_t Taken(const int32_t& stored, int32_t value)
    {
        if (&stored == &answers.Mode && ignoresModes) {
            return stored;
        }
        const bool swapped = &stored == &answers.SawBandwidth && sawTaken.contains(value);
        return swapped ? sawTaken[value] : value;
    }

    CallLog& log_;
};

/// The program on the other side: run control, parent and error reporter.
class ScriptedHost : public RunControl, public HostParent, public ErrorReporter
{
public:
    explicit ScriptedHost(CallLog& log) : log_(log) {}

    std::vector<RaisedError> reported;
    bool raises = true;  ///< where it is asked to

    bool StopFlag() override
    {
        log_.Call("StopFlag");
        return log_.stop;
    }
    void Pause(float seconds) override { log_.Call("Pause " + CallLog::Text(std::round(seconds * 1000)) + " ms"); }
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
    void Report(int32_t number, const std::wstring& source, const std::wstring& description, bool raise) override
    {
        log_.Call("Report " + std::to_string(number) + (raise ? " raise" : ""));
        reported.emplace_back(number, source, description);
        if (raise && raises) {
            throw reported.back();
        }
    }

private:
    CallLog& log_;
};

}  // namespace tvn2x
