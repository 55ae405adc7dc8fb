#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

#include "TVN2x.h"
#include "TVNINT.h"
#include "XKIQ2x.h"
#include "XKTR2x.h"
#include "com/Call.h"
#include "com/ComPtr.h"
#include "com/Errors.h"
#include "com/Text.h"
#include "driver/DriverInstead.h"

namespace tvn2x {

/// Calls a member of a COM object; a failure is thrown as RaisedError. An argument that the compiler has to convert
/// (bool to VARIANT_BOOL) is the caller's.
template <class Interface, class Base, class... Parameters, class... Arguments>
void Call(const com::ComPtr<Interface>& object, HRESULT (STDMETHODCALLTYPE Base::*member)(Parameters...),
          Arguments&&... arguments)
{
    com::Call(object.Get(), member, std::forward<Arguments>(arguments)...);
}

/// The same for a member whose last parameter hands out a T.
template <class T, class Interface, class Member, class... Arguments>
T Get(const com::ComPtr<Interface>& object, Member member, Arguments&&... arguments)
{
    if constexpr (std::is_same_v<T, std::wstring>) {
        com::Bstr text;
        Call(object, member, std::forward<Arguments>(arguments)..., text.Put());
        return std::wstring(text.View());
    } else {
        T value{};
        Call(object, member, std::forward<Arguments>(arguments)..., &value);
        return value;
    }
}

/// The plug-in's one object, by the interfaces that the host uses.
struct Plugin
{
    /// Raises 429 with a remedy where the plug-in is not registered.
    Plugin();

    /// Loads a setup that InspectSetup calls usable. Raises where the plug-in refuses it all the same.
    void Load(const std::wstring& path) const;

    com::ComPtr<_clsSetup> document;
    com::ComPtr<ISetup> setup;
    com::ComPtr<IMeasure> measure;
    com::ComPtr<IDriver> driver;
    com::ComPtr<ICheckHardware> check;
    com::ComPtr<IResults> results;
};

/// The parent stays the plug-in's until this goes, whatever ends the operation.
class AttachedParent
{
public:
    AttachedParent(const Plugin& plugin, IDispatch* parent);
    AttachedParent(const AttachedParent&) = delete;
    AttachedParent& operator=(const AttachedParent&) = delete;
    ~AttachedParent();

private:
    const Plugin& plugin_;
};

/// The run-control object that the plug-in shares with the host on this thread. Raises 429 with a remedy where the
/// driver library is not registered.
com::ComPtr<IRunControl> CreateRunControl();

/// The object that keeps the errors which the plug-in reports without raising them.
com::ComPtr<IErrorReport> CreateErrorReport();

/// The receiver of `which` ("simulated", "recordings", "registered" or the identity of a driver's class) for the
/// plug-in and this program, while what is returned lives; "" leaves it to the setting for this program, or else to the
/// registered one. Raises where there is none. Before the plug-in is created.
std::unique_ptr<DriverInstead> ChooseReceiver(const std::wstring& which);

/// The settings of the simulated receiver. Raises where another receiver is connected.
com::ComPtr<ISimulatorSettings> SimulatorSettings(const Plugin& plugin);

/// The settings of the receiver of recorded signals. Raises where another receiver is connected.
com::ComPtr<IRecordingsSettings> RecordingsSettings(const Plugin& plugin);

/// What the receiver tells beside its readings; null where it tells nothing.
com::ComPtr<IChannelDetails> ChannelDetailsOf(const Plugin& plugin);

/// What the user is told of an error: its description, number and source, and what to do about it.
std::wstring ErrorText(const RaisedError& error);

}  // namespace tvn2x
