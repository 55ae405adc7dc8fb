#include "receivers/driver/clsReceiver_IIdentification.h"

#include "receivers/driver/clsReceiver.h"

namespace tvn2x {

#define INSTRUMENT_IDENTITY(name)                                         \
    HRESULT clsReceiver_IIdentification::get_##name(BSTR* value) noexcept \
    {                                                                     \
        return Get(value, [&] { return owner_.Served().name(); });        \
    }
#include "setup/catalogue/ReceiverOperations.h"

}  // namespace tvn2x
