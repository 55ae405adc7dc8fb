#include "simulator/server/clsReceiver.h"

#include "simulator/server/ErrorCountersObject.h"
#include "simulator/server/ThreadState.h"

namespace tvn2x {

clsReceiver::clsReceiver() : receiver_(std::make_shared<SimulatedReceiver>())
{
    StateOfThread()->timeScale = receiver_->time.Scale();
}

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

#define RECEIVER_READING(name, parameter)                  \
    HRESULT clsReceiver::name(DOUBLE* value) noexcept      \
    {                                                      \
        return Get(value, [&] { return Model().name(); }); \
    }
#define RECEIVER_STATE(Type, name)                                   \
    HRESULT clsReceiver::get_##name(com::Wire<Type>* value) noexcept \
    {                                                                \
        return Get(value, [&] { return Model().name(); });           \
    }
#define RECEIVER_COUNTERS(name)
#define RECEIVER_SETTING(Type, name)                                  \
    RECEIVER_STATE(Type, name)                                        \
    HRESULT clsReceiver::put_##name(com::Wire<Type> value) noexcept   \
    {                                                                 \
        return Do([&] { Model().name(com::FromWire<Type>(value)); }); \
    }
#define RECEIVER_ACTION(name)               \
    HRESULT clsReceiver::name() noexcept    \
    {                                       \
        return Do([&] { Model().name(); }); \
    }
#include "setup/catalogue/ReceiverOperations.h"

HRESULT clsReceiver::get_ErrorCounters(IErrorCounters** value) noexcept
{
    if (!value) {
        return com::Refuse(E_POINTER);
    }
    *value = nullptr;
    return Do([&] {
        *value = new ErrorCountersObject(Model().ErrorCounters());
        (*value)->AddRef();
    });
}

}  // namespace tvn2x
