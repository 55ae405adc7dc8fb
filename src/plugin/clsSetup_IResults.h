#pragma once

#include <windows.h>

#include "TVN2x.h"
#include "com/Object.h"

namespace tvn2x {

class clsSetup;

/// IResults of clsSetup: the numbers behind the texts of the result table, and the way back into it for a host that has
/// kept what was measured.
class clsSetup_IResults : public com::Member<IResults, clsSetup>
{
public:
    using Member::Member;

    HRESULT STDMETHODCALLTYPE put_Measured(LONG lngIndex, VARIANT_BOOL value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Result(LONG udtField, SHORT intType, LONG lngIndex, BSTR value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Value(SHORT intType, LONG lngIndex, VARIANT* value) noexcept override;
};

}  // namespace tvn2x
