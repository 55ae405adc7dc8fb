#include "receivers/driver/clsReceiver_IDriver.h"

#include "receivers/driver/clsReceiver.h"

namespace tvn2x {
namespace {

void Replace(BSTR* text, std::wstring_view value)
{
    const BSTR replacement = com::NewBstr(value);
    SysFreeString(*text);
    *text = replacement;
}

}  // namespace

HRESULT clsReceiver_IDriver::get_FirmwareVersion(BSTR* value) noexcept
{
    return Get(value, [&] { return owner_.Served().FirmwareVersion(); });
}

HRESULT clsReceiver_IDriver::get_InstalledHardware(BSTR* value) noexcept
{
    return Get(value, [&] { return owner_.Served().InstalledOptions(); });
}

HRESULT clsReceiver_IDriver::put_Online(VARIANT_BOOL blnNewValue) noexcept
{
    return Do([&] { owner_.Served().Online(blnNewValue != VARIANT_FALSE); });
}

HRESULT clsReceiver_IDriver::get_Online(VARIANT_BOOL* value) noexcept
{
    return Get(value, [&] { return owner_.Served().Online(); });
}

HRESULT clsReceiver_IDriver::get_SerialNumber(BSTR* value) noexcept
{
    return Get(value, [&] { return owner_.Served().SerialNumber(); });
}

HRESULT clsReceiver_IDriver::get_Settings(IDispatch** value) noexcept
{
    return Get(value, [&] { return owner_.Served().NewSettings(); });
}

HRESULT clsReceiver_IDriver::Test(BSTR* strIdentity, BSTR* strHardware, LONG* udtMode, VARIANT_BOOL* result) noexcept
{
    if (!strIdentity || !strHardware || !udtMode) {
        return com::Refuse(E_POINTER);
    }
    return Get(result, [&] {
        DriverReceiver& receiver = owner_.Served();
        if (!receiver.Online()) {
            return false;
        }
        Replace(strIdentity, receiver.InstrumentName() + L"," + receiver.BusAddress() + L"," + receiver.Model() + L"," +
                                 receiver.Manufacturer());
        Replace(strHardware, receiver.Hardware());
        *udtMode = receiver.Mode();
        return true;
    });
}

}  // namespace tvn2x
