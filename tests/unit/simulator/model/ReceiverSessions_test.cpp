#include "TestReceiver.h"
#include "support/ReceiverSession.h"

namespace tvn2x {
namespace {

/// A receiver at a network of two channels, by the names of its operations.
class Session : public ReceiverSession, private TestReceiver
{
public:
    const Deeds deeds = With(receiver, Deeds{
                                           {"channel", [this] { Set(L"Channel " + Word(0), Text(1)); }},
                                           {"network", [this] { Set(L"Network", Text()); }},
                                           {"no-network", [this] { receiver.Physics().Network({}); }},
                                           {"renew-network", [this] { Renew(); }},
                                           {"wait", [this] { time.now += Value(0); }},
                                           {"hour", [this] { time.calendar = Value(0) * 3600; }},
                                       });
    const Sights sights =
        With(receiver,
             Sights{
                 {"locking", [this] { return Locking(); }},
                 {"locks", [this] { return Locks(); }},
                 {"of-channel", [this] { return receiver.Physics().Network().Get(L"channel " + Word(0), Text(1)); }},
                 {"of-network", [this] { return receiver.Physics().Network().Get(L"Network", Text()); }},
                 {"error-of", [this] { return ErrorOf(*this, std::string(rest)); }},
             });

private:
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
