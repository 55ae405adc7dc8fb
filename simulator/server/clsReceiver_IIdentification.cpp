#include "simulator/server/clsReceiver_IIdentification.h"

#include "simulator/server/clsReceiver.h"

namespace tvn2x {

#define INSTRUMENT_IDENTITY(name)                                         \
    HRESULT clsReceiver_IIdentification::get_##name(BSTR* value) noexcept \
    {                                                                     \
        return Get(value, [&] { return owner_.Model().name(); });         \
    }
#include "setup/catalogue/ReceiverOperations.h"

}  // namespace tvn2x
