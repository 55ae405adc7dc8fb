#include "receivers/driver/ErrorCountersObject.h"

namespace tvn2x {

HRESULT ErrorCountersObject::get_SyncErrors(DOUBLE* value) noexcept
{
    return Get(value, [&] { return time_.syncErrors; });
}

HRESULT ErrorCountersObject::get_DataErrors(DOUBLE* value) noexcept
{
    return Get(value, [&] { return time_.dataErrors; });
}

HRESULT ErrorCountersObject::get_Unavailable(DOUBLE* value) noexcept
{
    return Get(value, [&] { return time_.unavailable; });
}

}  // namespace tvn2x
