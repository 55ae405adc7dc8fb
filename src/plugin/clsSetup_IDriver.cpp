#include "plugin/clsSetup_IDriver.h"

#include "plugin/clsSetup.h"

namespace tvn2x {

HRESULT clsSetup_IDriver::get_FirmwareVersion(BSTR* value) noexcept
{
    return Get(value, [&] { return owner_.core.OpenReceiver().FirmwareVersion(); });
}

HRESULT clsSetup_IDriver::get_InstalledHardware(BSTR* value) noexcept
{
    return Get(value, [&] { return owner_.core.OpenReceiver().InstalledOptions(); });
}

HRESULT clsSetup_IDriver::put_Online(VARIANT_BOOL blnNewValue) noexcept
{
    return Do([&] { owner_.core.OpenInstrument().Online(blnNewValue != VARIANT_FALSE); });
}

HRESULT clsSetup_IDriver::get_Online(VARIANT_BOOL* value) noexcept
{
    return Get(value, [&] { return owner_.core.OpenInstrument().Online(); });
}

HRESULT clsSetup_IDriver::get_SerialNumber(BSTR* value) noexcept
{
    return Get(value, [&] { return owner_.core.OpenReceiver().SerialNumber(); });
}

HRESULT clsSetup_IDriver::get_Settings(IDispatch** value) noexcept
{
    return Get(value, [&] { return owner_.core.OpenInstrument().Settings().Detach(); });
}

HRESULT clsSetup_IDriver::Test(BSTR* strIdentity, BSTR* strHardware, LONG* udtMode, VARIANT_BOOL* result) noexcept
{
    if (!strIdentity || !strHardware || !udtMode) {
        return com::Refuse(E_POINTER);
    }
    return Get(result, [&] {
        std::wstring identity;
        std::wstring hardware(com::ViewOf(*strHardware));
        auto mode = static_cast<int32_t>(*udtMode);
        const bool identified = owner_.core.Test(identity, hardware, mode);
        com::Bstr identityAnswer(identity), hardwareAnswer(hardware);
        SysFreeString(*strIdentity);
        *strIdentity = identityAnswer.Detach();
        SysFreeString(*strHardware);
        *strHardware = hardwareAnswer.Detach();
        *udtMode = mode;
        return identified;
    });
}

}  // namespace tvn2x
