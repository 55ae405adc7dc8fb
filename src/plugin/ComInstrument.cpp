#include "plugin/ComInstrument.h"

#include "com/Errors.h"
#include "com/Text.h"

namespace tvn2x {

using com::Check;

template <class Interface>
com::ComPtr<Interface> ComInstrument::Side()
{
    com::ComPtr<Interface> side;
    Check(driver_->QueryInterface(__uuidof(Interface), reinterpret_cast<void**>(side.Put())), driver_.Get());
    return side;
}

std::wstring ComInstrument::Ask(HRESULT (STDMETHODCALLTYPE IIdentification::*question)(BSTR*))
{
    const auto identification = Side<IIdentification>();
    com::Bstr text;
    Check((identification.Get()->*question)(text.Put()), identification.Get());
    return std::wstring(text.View());
}

bool ComInstrument::Online()
{
    const auto driver = Side<IDriver>();
    VARIANT_BOOL online = VARIANT_FALSE;
    Check(driver->get_Online(&online), driver.Get());
    return online != VARIANT_FALSE;
}

void ComInstrument::Online(bool online)
{
    const auto driver = Side<IDriver>();
    Check(driver->put_Online(online ? VARIANT_TRUE : VARIANT_FALSE), driver.Get());
}

std::wstring ComInstrument::InstrumentName()
{
    return Ask(&IIdentification::get_InstrumentName);
}

std::wstring ComInstrument::BusAddress()
{
    return Ask(&IIdentification::get_BusAddress);
}

std::wstring ComInstrument::Model()
{
    return Ask(&IIdentification::get_Model);
}

std::wstring ComInstrument::Manufacturer()
{
    return Ask(&IIdentification::get_Manufacturer);
}

std::wstring ComInstrument::Hardware()
{
    return Ask(&IIdentification::get_Hardware);
}

com::ComPtr<IDispatch> ComInstrument::Settings()
{
    const auto driver = Side<IDriver>();
    com::ComPtr<IDispatch> settings;
    Check(driver->get_Settings(settings.Put()), driver.Get());
    return settings;
}

}  // namespace tvn2x
