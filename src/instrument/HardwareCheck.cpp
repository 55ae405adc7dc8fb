#include "instrument/HardwareCheck.h"

#include <optional>
#include <string>

#include "setup/catalogue/Options.h"
#include "util/RaisedError.h"

namespace tvn2x {
namespace {

/// The receiver's operating mode, none where it does not say.
std::optional<int32_t> TryMode(Receiver& receiver)
{
    try {
        return receiver.Mode();
    } catch (const RaisedError&) {
        return std::nullopt;
    }
}

}  // namespace

HardwareCheck::ModeState HardwareCheck::Mode() const
{
    Receiver& receiver = open_();
    const OptionNeed* need = FindNeed(Capability::mode, document_.mode);
    const std::wstring options = receiver.InstalledOptions();
    if (need && !IsMet(*need, options)) {
        return modeMissing;
    }
    return receiver.Mode() == document_.mode ? modeActive : modeInactive;
}

bool HardwareCheck::ActivateMode() const
{
    try {
        if (Mode() == modeMissing) {
            return false;
        }
    } catch (const RaisedError&) {
        return false;
    }
    Receiver& receiver = open_();
    if (TryMode(receiver) == document_.mode) {
        return true;
    }
    try {
        receiver.Mode(document_.mode);
    } catch (const RaisedError&) {
        // The mode that is read next tells.
    }
    return TryMode(receiver) == document_.mode;
}

bool HardwareCheck::ExtRef() const
{
    const OptionNeed* need = FindNeed(Capability::reference, document_.ReferenceSource());
    return !need || IsMet(*need, open_().InstalledOptions());
}

bool HardwareCheck::InputPort() const
{
    if (document_.Zin() == input_route::intermediate) {
        return true;
    }
    const OptionNeed* need = FindNeed(Capability::route, document_.Zin());
    return need && IsMet(*need, open_().InstalledOptions());
}

bool HardwareCheck::SawFilterBw() const
{
    const OptionNeed* need = FindNeed(Capability::filter, document_.SawBw());
    return !need || IsMet(*need, open_().InstalledOptions());
}

}  // namespace tvn2x
