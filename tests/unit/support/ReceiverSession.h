#pragma once

#include <string>

#include "dvbc/ErroredTime.h"
#include "support/TestSession.h"
#include "util/modFormat.h"

namespace tvn2x {

/// A session with a receiver, by the names of its operations. Behind a reading stands its range marker.
class ReceiverSession : public TestSession
{
protected:
    template <class Receiver>
    Deeds With(Receiver& receiver, Deeds deeds) const
    {
#define RECEIVER_SETTING(Type, name) deeds[#name] = [this, &receiver] { receiver.name(static_cast<Type>(Value(0))); };
#define RECEIVER_ACTION(name) deeds[#name] = [&receiver] { receiver.name(); };
#include "setup/catalogue/ReceiverOperations.h"
        deeds["Online"] = [this, &receiver] { receiver.Online(Number(0) != 0); };
        return deeds;
    }
    template <class Receiver>
    Sights With(Receiver& receiver, Sights sights)
    {
#define RECEIVER_READING(name, parameter)                        \
    sights[#name] = [&receiver] {                                \
        const std::wstring reading = Shown(receiver.name());     \
        const std::wstring marker = receiver.ValueStatus();      \
        return reading + (marker.empty() ? L"" : L" ") + marker; \
    };
#define RECEIVER_OPERATION(name) sights[#name] = [&receiver] { return Shown(receiver.name()); };
#define RECEIVER_ACTION(name)
#include "setup/catalogue/ReceiverOperations.h"
        return sights;
    }

private:
    static std::wstring Shown(const std::wstring& state)
    {
        return state;
    }
    static std::wstring Shown(const dvbc::ErroredTime& time)
    {
        return L"sync " + Shown(time.syncErrors) + L", data " + Shown(time.dataErrors) + L", unavailable " +
               Shown(time.unavailable);
    }
    static std::wstring Shown(double number)
    {
        return FormatNumber(number, L"0.0##", false, SystemLocale());
    }
    template <class State>
    static std::wstring Shown(State state)
    {
        return Told(state);
    }
};

}  // namespace tvn2x
