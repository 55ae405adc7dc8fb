#include "plugin/clsSetup_ICheckHardware.h"

#include "plugin/clsSetup.h"

namespace tvn2x {

HRESULT clsSetup_ICheckHardware::ActivateMode(VARIANT_BOOL* result) noexcept
{
    return Get(result, [&] { return owner_.core.Hardware().ActivateMode(); });
}

HRESULT clsSetup_ICheckHardware::ExtRef(VARIANT_BOOL* result) noexcept
{
    return Get(result, [&] { return owner_.core.Hardware().ExtRef(); });
}

HRESULT clsSetup_ICheckHardware::InputPort(VARIANT_BOOL* result) noexcept
{
    return Get(result, [&] { return owner_.core.Hardware().InputPort(); });
}

HRESULT clsSetup_ICheckHardware::Mode(LONG* result) noexcept
{
    return Get(result, [&] { return int32_t{owner_.core.Hardware().Mode()}; });
}

HRESULT clsSetup_ICheckHardware::SawFilterBw(VARIANT_BOOL* result) noexcept
{
    return Get(result, [&] { return owner_.core.Hardware().SawFilterBw(); });
}

}  // namespace tvn2x
