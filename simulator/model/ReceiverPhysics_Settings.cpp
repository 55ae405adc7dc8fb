#include <algorithm>
#include <array>
#include <cstdlib>

#include "dvbc/Qam.h"
#include "receivers/model/SettingRange.h"
#include "setup/catalogue/Settings.h"
#include "simulator/model/ReceiverPhysics.h"

namespace tvn2x {
namespace {

constexpr int32_t modeRefused = static_cast<int32_t>(0x80040000u + 2003);
constexpr int32_t filterRefused = static_cast<int32_t>(0x80040000u + 2004);
constexpr int32_t referenceMissing = static_cast<int32_t>(0x80040000u + 2005);
constexpr int32_t routeMissing = static_cast<int32_t>(0x80040000u + 2006);

// The routes in the order in which the basic state takes one: the IF input, which every receiver has, comes last.
constexpr std::array routesByRank{input_route::receiver75, input_route::receiver50, input_route::receiver,
                                  input_route::demodulator, input_route::intermediate};

bool IsChoice(const Setting& setting, int32_t value)
{
    return FindListData(setting.choices, value) >= 0;
}

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

template <class Value>
void ReceiverPhysics::Change(Value ReceiverSettings::*setting, Value value)
{
    if (settings_.*setting == value) {
        return;
    }
    settings_.*setting = value;
    Tune();
}

void ReceiverPhysics::BerSamples(int32_t blocks)
{
    RequireSettingRange(blocks, 1, 10000, L"BerSamples", L" samples of 10^7 bits");
    settings_.berSamples = blocks;
    ber_.reset();
}

void ReceiverPhysics::RollOffFactor(int32_t hundredths)
{
    RequireSettingRange(hundredths, 12, 35, L"RollOffFactor", L" hundredths");
    Change(&ReceiverSettings::rollOff, hundredths);
}

void ReceiverPhysics::OrderOfQam(int32_t order)
{
    RequireSetting(dvbc::IsOrderOfQam(order), L"OrderOfQam",
                   std::to_wstring(order) + L" is none of 4, 16, 32, 64, 128 and 256");
    Change(&ReceiverSettings::order, order);
}

void ReceiverPhysics::SymbolRate(double symbolsPerSecond)
{
    RequireSettingRange(symbolsPerSecond, 0.1e6, 8e6, L"SymbolRate", L" symbols per second");
    ber_.reset();
    // Each measurement begins here, also one that need not tune: the network is as it is by now.
    CountErrors();
    tuning_.reception = ReceiveNow();
    Change(&ReceiverSettings::symbolRate, symbolsPerSecond);
}

void ReceiverPhysics::SawBandwidth(int32_t megahertz)
{
    const std::optional<int32_t> taken = FilterFor(megahertz);
    RequireSetting(taken.has_value(), L"StatusSawFilterBW",
                   L"there is no SAW filter of " + std::to_wstring(megahertz) + L" MHz in this receiver", filterRefused,
                   L"SawBandwidth");
    Change(&ReceiverSettings::sawBandwidth, *taken);
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
    Change(&ReceiverSettings::externalReference, external);
}

void ReceiverPhysics::LevelUnit(int32_t code)
{
    RequireSettingRange(code, 0, 5, L"LevelUnit", L", the codes of dBmV, dBpW, dBuW, dBm, dBuV and mV");
    settings_.levelUnit = static_cast<dvbc::LevelUnit>(code);
}

void ReceiverPhysics::InputRoute(int32_t route)
{
    RequireSetting(IsChoice(setting::inputRoute, route), L"InputRoute",
                   std::to_wstring(route) + L" is none of 2, 4, 50, 75 and 128");
    RequireSetting(IsFittedFor(Capability::route, route), L"InputRoute",
                   L"the input needs the option " + CodeNeeded(Capability::route, route) + L", which is not installed",
                   routeMissing);
    Change(&ReceiverSettings::route, route);
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
    Change(&ReceiverSettings::mode, mode);
}

void ReceiverPhysics::Hold(bool hold)
{
    if (!hold) {
        held_.reset();
    } else if (!held_) {
        held_ = HeldTuning{tuning_, time_.Seconds()};
    }
}

void ReceiverPhysics::Frequency(double hertz)
{
    RequireSettingRange(hertz, 30e6, 1200e6, L"Frequency", L" Hz");
    settings_.frequency = hertz;
    ++tunings_[static_cast<uint64_t>(hertz)];
    Tune();
}

void ReceiverPhysics::InputAttenuation(int32_t decibels)
{
    if (decibels != automaticAttenuation) {
        RequireSettingRange(decibels, 0, 70, L"InputAttenuation", L" dB, or 255 for automatic");
    }
    Change(&ReceiverSettings::attenuation, decibels);
}

void ReceiverPhysics::DemodulatorGainControl(int32_t mode)
{
    RequireSettingRange(mode, 0, 1, L"DemodulatorGainControl", L": 0 is fixed, 1 automatic");
    Change(&ReceiverSettings::automaticGain, mode == 1);
}

void ReceiverPhysics::Equaliser(int32_t mode)
{
    RequireSettingRange(mode, 0, 1, L"Equaliser", L": 0 is off, 1 adaptive");
    Change(&ReceiverSettings::adaptiveEqualiser, mode == 1);
}

void ReceiverPhysics::Initialise()
{
    held_.reset();
    settings_ = BasicState();
    Tune();
}

}  // namespace tvn2x
