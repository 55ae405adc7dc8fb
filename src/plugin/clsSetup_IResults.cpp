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

}  // namespace tvn2x
