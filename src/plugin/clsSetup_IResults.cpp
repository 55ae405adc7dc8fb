#include "plugin/clsSetup_IResults.h"

#include "plugin/clsSetup.h"

namespace tvn2x {

HRESULT clsSetup_IResults::put_Measured(LONG lngIndex, VARIANT_BOOL value) noexcept
{
    return Do([&] { owner_.core.results.Measured(lngIndex, value != VARIANT_FALSE); });
}

HRESULT clsSetup_IResults::put_Result(LONG udtField, SHORT intType, LONG lngIndex, BSTR value) noexcept
{
    return Do([&] { owner_.core.results.Result(udtField, intType, lngIndex, com::ViewOf(value)); });
}

HRESULT clsSetup_IResults::get_Value(SHORT intType, LONG lngIndex, VARIANT* value) noexcept
{
    return Get(value, [&] { return owner_.core.results.Value(intType, lngIndex); });
}

}  // namespace tvn2x
