#include "instrument/HardwareCheck.h"

#include <algorithm>
#include <optional>
#include <string>

#include "util/RaisedError.h"

namespace tvn2x {
namespace {

enum class Capability
{
    mode,
    route,
    filter,
    reference
};

/// Where an option's text is looked for: anywhere in the list of options, or in the list with a comma before its first
/// and behind its last entry, so that the text can name a whole entry.
enum class Search
{
    plain,
    wrapped
};

struct Need
{
    Capability capability;
    int32_t value;  ///< of the setup's setting
    std::wstring_view option;
    Search search;
};

/// What the settings need. The receivers list their filters of 6 and 7 MHz as one entry, "KTR-H8 (or KTR-H9)".
constexpr Need needs[] = {
    {Capability::mode, 4, L",KTR-H2,", Search::wrapped},
    {Capability::mode, 6, L",KTR-S31,", Search::wrapped},
    {Capability::mode, 7, L",KTR-S33,", Search::wrapped},
    {Capability::mode, 8, L",KTR-S31,", Search::wrapped},
    {Capability::mode, 13, L",KTR-H7,", Search::wrapped},
    {Capability::mode, 14, L",KTR-S32,", Search::wrapped},
    {Capability::filter, 2, L",KTR-H6,", Search::wrapped},
    {Capability::filter, 6, L",KTR-H8 ", Search::wrapped},
    {Capability::filter, 7, L"(or KTR-H9),", Search::wrapped},
    {Capability::filter, 8, L",KTR-H4,", Search::wrapped},
    {Capability::reference, 1, L"EXTREF", Search::plain},
    {Capability::route, 2, L"EAMOD", Search::plain},
    {Capability::route, 4, L"RB", Search::plain},
    {Capability::route, 50, L"KTR-H5", Search::plain},
    {Capability::route, 75, L"KTR-H5", Search::plain},
};

constexpr const Need* FindNeed(Capability capability, int32_t value)
{
    const Need* found = std::find_if(std::begin(needs), std::end(needs), [=](const Need& need) {
        return need.capability == capability && need.value == value;
    });
    return found == std::end(needs) ? nullptr : found;
}

bool Met(const Need& need, std::wstring_view options)
{
    if (need.search == Search::plain)
        return options.find(need.option) != options.npos;
    return (L"," + std::wstring(options) + L",").find(need.option) != std::wstring::npos;
}

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

bool HasReferenceInput(std::wstring_view installedOptions)
{
    return Met(*FindNeed(Capability::reference, 1), installedOptions);
}

HardwareCheck::ModeState HardwareCheck::Mode() const
{
    Receiver& receiver = open_();
    const Need* need = FindNeed(Capability::mode, document_.mode);
    const std::wstring options = receiver.InstalledOptions();
    if (need && !Met(*need, options))
        return modeMissing;
    return receiver.Mode() == document_.mode ? modeActive : modeInactive;
}

bool HardwareCheck::ActivateMode() const
{
    try {
        if (Mode() == modeMissing)
            return false;
    } catch (const RaisedError&) {
        return false;
    }
    Receiver& receiver = open_();
    if (TryMode(receiver) == document_.mode)
        return true;
    try {
        receiver.Mode(document_.mode);
    } catch (const RaisedError&) {
        // The mode that is read next tells.
    }
    return TryMode(receiver) == document_.mode;
}

bool HardwareCheck::ExtRef() const
{
    const Need* need = FindNeed(Capability::reference, document_.ReferenceSource());
    return !need || Met(*need, open_().InstalledOptions());
}

bool HardwareCheck::InputPort() const
{
    constexpr int32_t intermediateFrequency = 128;  // every receiver has that input
    if (document_.Zin() == intermediateFrequency)
        return true;
    const Need* need = FindNeed(Capability::route, document_.Zin());
    return need && Met(*need, open_().InstalledOptions());
}

bool HardwareCheck::SawFilterBw() const
{
    const Need* need = FindNeed(Capability::filter, document_.SawBw());
    return !need || Met(*need, open_().InstalledOptions());
}

}  // namespace tvn2x
