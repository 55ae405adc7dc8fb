#include <algorithm>
#include <array>
#include <cstdlib>

#include "receivers/model/SettingRange.h"
#include "setup/catalogue/Settings.h"
#include "simulator/model/ReceiverPhysics.h"

namespace tvn2x {
namespace {

constexpr int32_t filterRefused = static_cast<int32_t>(0x80040000u + 2004);
constexpr int32_t referenceMissing = static_cast<int32_t>(0x80040000u + 2005);
constexpr int32_t routeMissing = static_cast<int32_t>(0x80040000u + 2006);

// The routes in the order in which the basic state takes one: the IF input, which every receiver has, comes last.
constexpr std::array routesByRank{input_route::receiver75, input_route::receiver50, input_route::receiver,
                                  input_route::demodulator, input_route::intermediate};

std::wstring CodeNeeded(Capability capability, int32_t value)
{
    const OptionNeed* const need = FindNeed(capability, value);
    return need ? std::wstring(need->part) : std::wstring();
}

}  // namespace

bool ReceiverPhysics::IsFittedFor(Capability capability, int32_t value) const
{
    const OptionNeed* const need = FindNeed(capability, value);
    return need == nullptr || model_.Network().installedOptions.find(need->part) != std::wstring::npos;
}

/// The basic state, as far as the installed options allow it.
ReceiverSettings ReceiverPhysics::BasicState() const
{
    constexpr int32_t modeWithoutOptions = 1;
    ReceiverSettings basic;
    if (!IsFittedFor(Capability::mode, basic.mode)) {
        basic.mode = modeWithoutOptions;
    }
    basic.route =
        *std::ranges::find_if(routesByRank, [&](int32_t route) { return IsFittedFor(Capability::route, route); });
    if (!IsFittedFor(Capability::filter, basic.sawBandwidth)) {
        basic.sawBandwidth = 0;
    }
    return basic;
}

std::optional<int32_t> ReceiverPhysics::FilterFor(int32_t megahertz) const
{
    const auto fitted = [&](int32_t bandwidth) {
        return IsChoice(setting::sawBandwidth, bandwidth) && IsFittedFor(Capability::filter, bandwidth);
    };
    if (fitted(megahertz)) {
        return megahertz;
    }
    const bool onePlace = megahertz == 6 || megahertz == 7;
    if (onePlace && fitted(13 - megahertz)) {
        return 13 - megahertz;
    }
    if (!model_.Network().swapsFilters) {
        return std::nullopt;
    }
    const auto distance = [&](int32_t bandwidth) { return std::abs(int64_t{bandwidth} - megahertz); };
    int32_t nearest = 0;  // no filter, where none is fitted
    for (const ListItem& filter : setting::sawBandwidth.choices) {
        const bool nearer = nearest == 0 || distance(filter.value) < distance(nearest);
        if (filter.value != 0 && fitted(filter.value) && nearer) {
            nearest = filter.value;
        }
    }
    return nearest;
}

void ReceiverPhysics::TuneAnew()
{
    ++tunings_[static_cast<uint64_t>(settings_.frequency)];
    Tune();
}

/// The network is as it is by now.
void ReceiverPhysics::BeginMeasurement()
{
    CountErrors();
    tuning_.reception = ReceiveNow();
}

void ReceiverPhysics::SawBandwidth(int32_t megahertz)
{
    const std::optional<int32_t> taken = FilterFor(megahertz);
    RequireSetting(taken.has_value(), L"StatusSawFilterBW",
                   L"there is no SAW filter of " + std::to_wstring(megahertz) + L" MHz in this receiver", filterRefused,
                   L"SawBandwidth");
    ChangeFrontEnd(&ReceiverSettings::sawBandwidth, *taken);
}

void ReceiverPhysics::ReferenceSource(int32_t source)
{
    RequireSettingRange(source, 0, 1, L"ReferenceSource", L": 0 is internal, 1 external");
    if (!IsFittedFor(Capability::reference, source)) {
        throw RaisedError(referenceMissing, L"clsReceiver.ReferenceSource", L"Let Setup10MhzRef not available");
    }
    const bool external = source == 1;
    if (external && !settings_.externalReference) {
        referenceSince_ = time_.Seconds();
    }
    ChangeFrontEnd(&ReceiverSettings::externalReference, external);
}

void ReceiverPhysics::RequireRoute(int32_t route) const
{
    RequireSetting(IsFittedFor(Capability::route, route), L"InputRoute",
                   L"the input needs the option " + CodeNeeded(Capability::route, route) + L", which is not installed",
                   routeMissing);
}

void ReceiverPhysics::Mode(int32_t mode)
{
    RequireSetting(mode >= 1 && mode <= 15, L"Mode", std::to_wstring(mode) + L" is not from 1 to 15", modeRefused);
    const bool available = IsFittedFor(Capability::mode, mode);
    if (!available && model_.Network().ignoresModes) {
        return;
    }
    RequireSetting(available, L"Mode",
                   L"it needs the option " + CodeNeeded(Capability::mode, mode) + L", which is not installed",
                   modeRefused);
    ChangeFrontEnd(&ReceiverSettings::mode, mode);
}

void ReceiverPhysics::Hold(bool hold)
{
    if (!hold) {
        held_.reset();
    } else if (!held_) {
        held_ = HeldTuning{tuning_, time_.Seconds()};
    }
}

void ReceiverPhysics::DemodulatorGainControl(int32_t mode)
{
    RequireSettingRange(mode, 0, 1, L"DemodulatorGainControl", L": 0 is fixed, 1 automatic");
    ChangeFrontEnd(&ReceiverSettings::automaticGain, mode == 1);
}

void ReceiverPhysics::Equaliser(int32_t mode)
{
    RequireSettingRange(mode, 0, 1, L"Equaliser", L": 0 is off, 1 adaptive");
    ChangeFrontEnd(&ReceiverSettings::adaptiveEqualiser, mode == 1);
}

void ReceiverPhysics::Initialise()
{
    held_.reset();
    settings_ = BasicState();
    Tune();
}

}  // namespace tvn2x
