#include "plugin/ComReceiver.h"

#include "com/Call.h"
#include "com/Wire.h"

namespace tvn2x {
namespace {

/// What the driver hands out, as a value of the core.
template <class Value>
Value Ask(IReceiver* driver, HRESULT (STDMETHODCALLTYPE IReceiver::*question)(com::Wire<Value>*))
{
    if constexpr (std::is_same_v<Value, std::wstring>) {
        return com::Ask(driver, question);
    } else {
        return com::FromWire<Value>(com::Ask(driver, question));
    }
}

}  // namespace

#define RECEIVER_READING(name, parameter)                    \
    double ComReceiver::name()                               \
    {                                                        \
        return Ask<double>(driver_.Get(), &IReceiver::name); \
    }
#define RECEIVER_STATE(Type, name)                               \
    Type ComReceiver::name()                                     \
    {                                                            \
        return Ask<Type>(driver_.Get(), &IReceiver::get_##name); \
    }
#define RECEIVER_COUNTERS(name)
#define RECEIVER_SETTING(Type, name)                                                \
    RECEIVER_STATE(Type, name)                                                      \
    void ComReceiver::name(Type value)                                              \
    {                                                                               \
        com::Call(driver_.Get(), &IReceiver::put_##name, com::ToWire<Type>(value)); \
    }
#define RECEIVER_ACTION(name)                       \
    void ComReceiver::name()                        \
    {                                               \
        com::Call(driver_.Get(), &IReceiver::name); \
    }
#include "setup/catalogue/ReceiverOperations.h"

dvbc::ErroredTime ComReceiver::ErrorCounters()
{
    const OwnFloatingPointAfterwards after;  // of the object's end too
    const auto counters = com::Ask(driver_.Get(), &IReceiver::get_ErrorCounters);
    if (!counters) {
        throw RaisedError(error::objectMissing, L"clsSetup.Driver", L"The instrument driver gives no error counters");
    }
    dvbc::ErroredTime result;
    result.syncErrors = com::Ask(counters.Get(), &IErrorCounters::get_SyncErrors);
    result.dataErrors = com::Ask(counters.Get(), &IErrorCounters::get_DataErrors);
    result.unavailable = com::Ask(counters.Get(), &IErrorCounters::get_Unavailable);
    return result;
}

}  // namespace tvn2x
