#include "simulator/server/clsReceiver_IDriver.h"

#include "simulator/server/SimulatorSettings.h"
#include "simulator/server/clsReceiver.h"

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
    return Get(value, [&] { return owner_.Model().FirmwareVersion(); });
}

HRESULT clsReceiver_IDriver::get_InstalledHardware(BSTR* value) noexcept
{
    return Get(value, [&] { return owner_.Model().InstalledOptions(); });
}

HRESULT clsReceiver_IDriver::put_Online(VARIANT_BOOL blnNewValue) noexcept
{
    return Do([&] { owner_.Model().Online(blnNewValue != VARIANT_FALSE); });
}

HRESULT clsReceiver_IDriver::get_Online(VARIANT_BOOL* value) noexcept
{
    return Get(value, [&] { return owner_.Model().Online(); });
}

HRESULT clsReceiver_IDriver::get_SerialNumber(BSTR* value) noexcept
{
    return Get(value, [&] { return owner_.Model().SerialNumber(); });
}

HRESULT clsReceiver_IDriver::get_Settings(IDispatch** value) noexcept
{
    return Get(value, [&] {
        auto* settings = new SimulatorSettings(owner_.Shared());
        settings->AddRef();
        return settings;
    });
}

HRESULT clsReceiver_IDriver::Test(BSTR* strIdentity, BSTR* strHardware, LONG* udtMode, VARIANT_BOOL* result) noexcept
{
    if (!strIdentity || !strHardware || !udtMode) {
        return com::Refuse(E_POINTER);
    }
    return Get(result, [&] {
        ReceiverModel& receiver = owner_.Model();
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
