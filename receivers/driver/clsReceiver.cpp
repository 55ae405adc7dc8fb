#include "receivers/driver/clsReceiver.h"

#include "receivers/driver/ErrorCountersObject.h"

namespace tvn2x {

void* clsReceiver::FindInterface(REFIID id) noexcept
{
    if (id == __uuidof(IDriver)) {
        return static_cast<IDriver*>(&driver_);
    }
    if (id == __uuidof(IIdentification)) {
        return static_cast<IIdentification*>(&identification_);
    }
    return nullptr;
}

#define RECEIVER_READING(name, parameter)                   \
    HRESULT clsReceiver::name(DOUBLE* value) noexcept       \
    {                                                       \
        return Get(value, [&] { return Served().name(); }); \
    }
#define RECEIVER_STATE(Type, name)                                   \
    HRESULT clsReceiver::get_##name(com::Wire<Type>* value) noexcept \
    {                                                                \
        return Get(value, [&] { return Served().name(); });          \
    }
#define RECEIVER_COUNTERS(name)
#define RECEIVER_SETTING(Type, name)                                   \
    RECEIVER_STATE(Type, name)                                         \
    HRESULT clsReceiver::put_##name(com::Wire<Type> value) noexcept    \
    {                                                                  \
        return Do([&] { Served().name(com::FromWire<Type>(value)); }); \
    }
#define RECEIVER_ACTION(name)                \
    HRESULT clsReceiver::name() noexcept     \
    {                                        \
        return Do([&] { Served().name(); }); \
    }
#include "setup/catalogue/ReceiverOperations.h"

HRESULT clsReceiver::get_ErrorCounters(IErrorCounters** value) noexcept
{
    if (!value) {
        return com::Refuse(E_POINTER);
    }
    *value = nullptr;
    return Do([&] {
        *value = new ErrorCountersObject(Served().ErrorCounters());
        (*value)->AddRef();
    });
}

}  // namespace tvn2x
