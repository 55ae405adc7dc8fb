#pragma once

#include <windows.h>

#include "XKTR2x.h"
#include "com/Object.h"

namespace tvn2x {

class clsReceiver;

/// IIdentification of the receiver: who it is.
class clsReceiver_IIdentification final : public com::Member<IIdentification, clsReceiver>
{
public:
    using Member::Member;

#define INSTRUMENT_IDENTITY(name) HRESULT STDMETHODCALLTYPE get_##name(BSTR* value) noexcept override;
#include "setup/catalogue/ReceiverOperations.h"
};

}  // namespace tvn2x
