#include "simulator/server/clsReceiver_IIdentification.h"

#include "simulator/server/clsReceiver.h"

namespace tvn2x {

HRESULT clsReceiver_IIdentification::get_InstrumentName(BSTR* value) noexcept
{
    return Get(value, [&] { return owner_.Model().InstrumentName(); });
}

HRESULT clsReceiver_IIdentification::get_BusAddress(BSTR* value) noexcept
{
    return Get(value, [&] { return owner_.Model().BusAddress(); });
}

HRESULT clsReceiver_IIdentification::get_Model(BSTR* value) noexcept
{
    return Get(value, [&] { return owner_.Model().Model(); });
}

HRESULT clsReceiver_IIdentification::get_Manufacturer(BSTR* value) noexcept
{
    return Get(value, [&] { return owner_.Model().Manufacturer(); });
}

HRESULT clsReceiver_IIdentification::get_Hardware(BSTR* value) noexcept
{
    return Get(value, [&] { return owner_.Model().Hardware(); });
}

}  // namespace tvn2x
