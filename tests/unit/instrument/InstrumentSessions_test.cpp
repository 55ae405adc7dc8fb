#include "instrument/ConfigurationRead.h"
#include "instrument/ConfigurationSteps.h"
#include "instrument/ConfigurationWrite.h"
#include "instrument/HardwareCheck.h"
#include "instrument/Identity.h"
#include "setup/SetupDocument.h"
#include "support/RaisedBy.h"
#include "support/ScriptedReceiver.h"
#include "support/TestSession.h"
#include "util/modFormat.h"

namespace tvn2x {
namespace {

/// A setup and a receiver that is asked, read and written.
class Session : public TestSession
{
public:
    const Deeds deeds{
        {"list", [this] { document.ListSize(Number(0)); }},
        {"label", [this] { document.UserField(Number(0), Text(1)); }},
        {"frequency", [this] { document.Frequency(Number(0), Value(1)); }},
        {"route", [this] { document.Zin(Number(0)); }},
        {"level-unit", [this] { document.LevelUnit(Text()); }},
        {"filter", [this] { document.SawBw(Number(0)); }},
        {"order", [this] { document.OrderOfQam(Number(0)); }},
        {"reference", [this] { document.ReferenceSource(Number(0)); }},
        {"notes", [this] { document.Notes(Text()); }},
        {"settling", [this] { document.MaxSettlingTime(Number(0)); }},
        {"clean", [this] { document.dirty = false; }},

        {"takes", [this] { receiver.sawTaken[Number(0)] = Number(1); }},
        {"keeps-its-mode", [this] { receiver.ignoresModes = true; }},
        {"answers-nobody", [this] { receiver.isReachable = false; }},
        {"on-line", [this] { receiver.online = true; }},
        {"host-goes-on", [this] { host.raises = false; }},
        {"fails", [this] { Fail(Number(0), {}); }},
        {"fails-at", [this] { Fail(1, words[0]); }},
        {"works", [this] { log.Disarm(); }},
        {"gone", [this] { isGone = true; }},
#define RECEIVER_STATE(Type, name) {#name, [this] { Answer(receiver.answers.name); }},
#define RECEIVER_COUNTERS(name)
#define RECEIVER_SETTING(Type, name) RECEIVER_STATE(Type, name)
#define INSTRUMENT_IDENTITY(name) RECEIVER_STATE(std::wstring, name)
#include "setup/catalogue/ReceiverOperations.h"
    };
    const Sights sights{
        {"read", [this] { return Begun([&] { ReadConfiguration(document, Peers()); }); }},
        {"write", [this] { return Begun([&] { WriteConfiguration(document, Peers(), [] {}); }); }},
        {"identify", [this] { return Identified(); }},
        {"activate", [this] { return Activated(); }},
        {"has-route", [this] { return Told(check.InputPort()); }},
        {"has-filter", [this] { return Told(check.SawFilterBw()); }},
        {"has-reference", [this] { return Told(check.ExtRef()); }},

        {"opened", [this] { return Told(opened); }},
        {"calls", [this] { return Told(log.Count(rest)); }},
        {"all-calls", [this] { return AllCalls(); }},
        {"last-call", [this] { return FromUtf8(log.calls.back()); }},
        {"reported", [this] { return RaisedBy([&] { throw host.reported.at(0); }); }},
        {"channels", [this] { return Told(document.ListSize()); }},
        {"label", [this] { return document.UserField(Number(0)); }},
        {"frequency", [this] { return FormatNumber(document.Frequency(1), false, SystemLocale()); }},
        {"default-rate", [this] { return FormatNumber(document.DefaultSymbolRate(), false, SystemLocale()); }},
        {"level-unit", [this] { return document.LevelUnit(); }},
        {"order", [this] { return Told(document.OrderOfQam()); }},
        {"reference", [this] { return Told(document.ReferenceSource()); }},
        {"notes", [this] { return document.Notes(); }},
        {"settling", [this] { return Told(document.MaxSettlingTime()); }},
        {"dirty", [this] { return Told(document.dirty); }},
#define RECEIVER_SETTING(Type, name) {#name, [this] { return Told(receiver.answers.name); }},
#include "setup/catalogue/ReceiverOperations.h"
    };

private:
    void Fail(int n, const std::string& call)
    {
        const std::wstring description = call.empty() ? L"scripted" : Text(1);
        log.FailAt(n, std::make_exception_ptr(RaisedError(4711, L"XKTR2x", description)), call);
    }
    ConfigurationPeers Peers()
    {
        return {receiver, host, &host, host};
    }

    /// The error that something ends with, after whatever was called before.
    template <class Action>
    std::wstring Begun(const Action& action)
    {
        log.calls.clear();
        return RaisedBy(action);
    }
    std::wstring Activated()
    {
        log.calls.clear();
        return Told(check.ActivateMode());
    }
    /// Whether it is known, and the identity, hardware and mode that it tells.
    std::wstring Identified()
    {
        std::wstring identity = L"old", hardware = L"old";
        int32_t mode = -1;
        log.calls.clear();
        const bool isKnown = Identify(receiver, receiver, identity, hardware, mode);
        return Told(isKnown) + L" | " + identity + L" | " + hardware + L" | " + Told(mode);
    }
    std::wstring AllCalls() const
    {
        std::string all;
        for (const std::string& call : log.calls) {
            all += (all.empty() ? "" : ", ") + call;
        }
        return FromUtf8(all);
    }

    SetupDocument document;
    CallLog log;
    ScriptedReceiver receiver{log};
    ScriptedHost host{log};
    bool isGone = false;
    int opened = 0;  ///< how often the check asked for the receiver
    HardwareCheck check{document, [this]() -> Receiver& {
                            isGone ? throw RaisedError(429, {}, {}) : ++opened;
                            return receiver;
                        }};
};

TEST(Instrument, IsAskedReadAndWrittenAsEachSessionExpects)
{
    PlaySessions("instrument-sessions.txt", [](const std::string&) { return std::make_unique<Session>(); });
}

}  // namespace
}  // namespace tvn2x
