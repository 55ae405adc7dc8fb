#include "TestReceiver.h"
#include "support/TestSession.h"
#include "util/modFormat.h"

namespace tvn2x {
namespace {

/// A receiver at a network of two channels, by the names of its operations.
class Session : public TestSession, private TestReceiver
{
public:
    const Deeds deeds{
        {"channel", [this] { Set(L"Channel " + Word(0), Text(1)); }},
        {"network", [this] { Set(L"Network", Text()); }},
        {"no-network", [this] { receiver.Physics().Network({}); }},
        {"renew-network", [this] { Renew(); }},
        {"wait", [this] { time.now += Value(0); }},
        {"hour", [this] { time.calendar = Value(0) * 3600; }},
#define RECEIVER_SETTING(Type, name) {#name, [this] { receiver.name(static_cast<Type>(Value(0))); }},
#define RECEIVER_ACTION(name) {#name, [this] { receiver.name(); }},
#include "setup/catalogue/ReceiverOperations.h"
    };
    const Sights sights{
        {"locking", [this] { return Locking(); }},
        {"locks", [this] { return Locks(); }},
        {"of-channel", [this] { return receiver.Physics().Network().Get(L"channel " + Word(0), Text(1)); }},
        {"of-network", [this] { return receiver.Physics().Network().Get(L"Network", Text()); }},
        {"error-of", [this] { return ErrorOf(*this, std::string(rest)); }},
#define RECEIVER_READING(name, parameter) {#name, [this] { return Marked(receiver.name()); }},
#define RECEIVER_STATE(Type, name) {#name, [this] { return Shown(receiver.name()); }},
#define RECEIVER_COUNTERS(name)
#define RECEIVER_SETTING(Type, name) {#name, [this] { return Shown(receiver.name()); }},
#include "setup/catalogue/ReceiverOperations.h"
    };

private:
    static std::wstring Shown(bool state)
    {
        return Told(state);
    }
    static std::wstring Shown(const std::wstring& state)
    {
        return state;
    }
    static std::wstring Shown(int32_t number)
    {
        return Told(number);
    }
    static std::wstring Shown(double number)
    {
        return FormatNumber(number, L"0.0##", false, SystemLocale());
    }
    /// A reading with its range marker.
    std::wstring Marked(double reading)
    {
        const std::wstring marker = receiver.ValueStatus();
        return Shown(reading) + (marker.empty() ? L"" : L" ") + marker;
    }
    /// The locks that come until all hold, in ten seconds at most, with their times in milliseconds.
    std::wstring Locking()
    {
        std::wstring all, last;
        for (int32_t i = 0; i < 10000 && last != L"RSCT"; ++i) {
            const std::wstring locks = Locks();
            all += locks == last ? L"" : (all.empty() ? L"" : L" ") + locks + L" " + std::to_wstring(i);
            last = locks;
            time.now += 0.001;
        }
        return all;
    }
};

TEST(SimulatedReceiver, AnswersAsEachSessionExpects)
{
    PlaySessions("receiver-sessions.txt", [](const std::string&) { return std::make_unique<Session>(); });
}

}  // namespace
}  // namespace tvn2x
