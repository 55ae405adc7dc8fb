#include "host/link/ConfigurationParent.h"

#include "com/Text.h"
#include "host/terminal/ProgressLine.h"

namespace tvn2x {

HRESULT ConfigurationParent::Status(BSTR sText) noexcept
{
    return Do([&] {
        status_ = com::ViewOf(sText);
        stop_.Poll();
        if (!console_.ShowsProgress()) {
            console_.Notice(status_);
        }
    });
}

HRESULT ConfigurationParent::Progress(double dValue, VARIANT vSteps) noexcept
{
    return Do([&] {
        VARIANT number;
        VariantInit(&number);
        if (SUCCEEDED(VariantChangeType(&number, &vSteps, 0, VT_R8)) && number.dblVal > 0) {
            steps_ = number.dblVal;
        }
        step_ = dValue;
        stop_.Poll();
        console_.Progress(StepLine(dValue, steps_, status_, console_.ProgressWidth()));
    });
}

HRESULT ConfigurationParent::CellChanged(long, short) noexcept
{
    return S_OK;
}

HRESULT ConfigurationParent::ChannelStart(double, VARIANT) noexcept
{
    return S_OK;
}

}  // namespace tvn2x
