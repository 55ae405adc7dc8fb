#pragma once

#include <windows.h>

#include "TVNINT.h"
#include "XKTR2x.h"
#include "com/ComPtr.h"
#include "instrument/Receiver.h"

namespace tvn2x {

/// The driver object's sides as an instrument: the host's IDriver and the driver library's identification. A driver
/// that lacks one of them raises an error when that side is asked for.
class ComInstrument final : public Instrument
{
public:
    explicit ComInstrument(com::ComPtr<IReceiver> driver) : driver_(std::move(driver)) {}

    bool Online() override;
    void Online(bool online) override;
#define INSTRUMENT_IDENTITY(name) std::wstring name() override;
#include "setup/catalogue/ReceiverOperations.h"

    com::ComPtr<IDispatch> Settings();  ///< the driver's own settings object, none where it has none

private:
    template <class Interface>
    com::ComPtr<Interface> Side();
    std::wstring Ask(HRESULT (STDMETHODCALLTYPE IIdentification::*question)(BSTR*));

    com::ComPtr<IReceiver> driver_;
};

}  // namespace tvn2x
