#include "plugin/ComInstrument.h"

#include "com/Call.h"

namespace tvn2x {

using com::Call;

/// Afterwards stands in front of every side, because its end is a call of the driver too.
using Afterwards = OwnFloatingPointAfterwards;

template <class Interface>
com::ComPtr<Interface> ComInstrument::Side()
{
    com::ComPtr<Interface> side;
    com::Check(com::Query(driver_.Get(), side), driver_.Get());
    return side;
}

std::wstring ComInstrument::Ask(HRESULT (STDMETHODCALLTYPE IIdentification::*question)(BSTR*))
{
    const Afterwards after;
    return com::Ask(Side<IIdentification>().Get(), question);
}

bool ComInstrument::Online()
{
    const Afterwards after;
    return com::Ask(Side<IDriver>().Get(), &IDriver::get_Online) != VARIANT_FALSE;
}

void ComInstrument::Online(bool online)
{
    const Afterwards after;
    Call(Side<IDriver>().Get(), &IDriver::put_Online, online ? VARIANT_TRUE : VARIANT_FALSE);
}

#define INSTRUMENT_IDENTITY(name)                 \
    std::wstring ComInstrument::name()            \
    {                                             \
        return Ask(&IIdentification::get_##name); \
    }
#include "setup/catalogue/ReceiverOperations.h"

com::ComPtr<IDispatch> ComInstrument::Settings()
{
    const Afterwards after;
    return com::Ask(Side<IDriver>().Get(), &IDriver::get_Settings);
}

}  // namespace tvn2x
