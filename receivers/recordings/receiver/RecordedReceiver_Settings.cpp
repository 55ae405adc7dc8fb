#include <algorithm>

#include "receivers/model/SettingRange.h"
#include "receivers/recordings/receiver/RecordedReceiver.h"
#include "setup/catalogue/Options.h"
#include "setup/catalogue/Settings.h"

namespace tvn2x::recordings {
namespace {

constexpr int32_t modeRefused = static_cast<int32_t>(0x80040000u + 2003);

bool IsChoice(const Setting& setting, int32_t value)
{
    return FindListData(setting.choices, value) >= 0;
}

/// Refuses every value but the only one that there is.
void RequireOnly(int32_t only, int32_t value, std::wstring_view setting, const std::wstring& reason)
{
    RequireSetting(value == only, setting, reason);
}

}  // namespace

template <class Value>
void RecordedReceiver::Change(Value Settings::*setting, Value value)
{
    if (settings_.*setting != value) {
        settings_.*setting = value;
        Tune();
    }
}

void RecordedReceiver::BerSamples(int32_t blocks)
{
    RequireSettingRange(blocks, 1, 10000, L"BerSamples", L" samples of 10^7 bits");
    settings_.berSamples = blocks;
    berFrom_.reset();
}

void RecordedReceiver::RollOffFactor(int32_t hundredths)
{
    RequireSettingRange(hundredths, 10, 25, L"RollOffFactor", L" hundredths");
    Change(&Settings::rollOff, hundredths);
}

void RecordedReceiver::OrderOfQam(int32_t order)
{
    constexpr int32_t orders[] = {16, 32, 64, 128, 256};
    RequireSetting(std::ranges::find(orders, order) != std::end(orders), L"OrderOfQam",
                   std::to_wstring(order) + L" is none of 16, 32, 64, 128 and 256");
    Change(&Settings::order, order);
}

void RecordedReceiver::SymbolRate(double symbolsPerSecond)
{
    RequireSettingRange(symbolsPerSecond, 0.87e6, 7e6, L"SymbolRate", L" symbols per second");
    Change(&Settings::symbolRate, symbolsPerSecond);
    berFrom_.reset();
    // Each measurement begins here, also one that need not tune.
    if (channel_ && channel_->IsOver()) {
        Tune();
    }
}

void RecordedReceiver::SawBandwidth(int32_t megahertz)
{
    RequireSetting(IsChoice(setting::sawBandwidth, megahertz), L"SawBandwidth",
                   std::to_wstring(megahertz) + L" is none of 0, 2, 6, 7 and 8 MHz");
    settings_.sawBandwidth = megahertz;
}

void RecordedReceiver::ReferenceSource(int32_t source)
{
    RequireOnly(0, source, L"ReferenceSource", L"a recording has the reference that it was made with");
}

void RecordedReceiver::LevelUnit(int32_t code)
{
    RequireSettingRange(code, 0, 5, L"LevelUnit", L", the codes of dBmV, dBpW, dBuW, dBm, dBuV and mV");
    settings_.levelUnit = static_cast<dvbc::LevelUnit>(code);
}

void RecordedReceiver::InputRoute(int32_t route)
{
    RequireSetting(IsChoice(setting::inputRoute, route), L"InputRoute",
                   std::to_wstring(route) + L" is none of 2, 4, 50, 75 and 128");
    settings_.route = route;
}

void RecordedReceiver::Mode(int32_t mode)
{
    RequireSetting(mode == dvbCDemodulator, L"Mode", L"recordings are measured in mode 4 alone", modeRefused);
}

void RecordedReceiver::Hold(bool hold)
{
    settings_.hold = hold;
    if (channel_) {
        channel_->Rest(hold);
    }
}

void RecordedReceiver::Frequency(double hertz)
{
    RequireSettingRange(hertz, 1, highestFrequency, L"Frequency", L" Hz");
    settings_.frequency = hertz;
    Tune();
}

void RecordedReceiver::InputAttenuation(int32_t decibels)
{
    if (decibels != Settings().attenuation) {
        RequireSettingRange(decibels, 0, 70, L"InputAttenuation", L" dB, or 255 for automatic");
    }
    settings_.attenuation = decibels;
}

void RecordedReceiver::DemodulatorGainControl(int32_t mode)
{
    RequireOnly(1, mode, L"DemodulatorGainControl", L"the gain control is automatic (1)");
}

void RecordedReceiver::Equaliser(int32_t mode)
{
    RequireOnly(1, mode, L"Equaliser", L"the equaliser is adaptive (1)");
}

void RecordedReceiver::Initialise()
{
    settings_ = {};
    Tune();
}

/// All filters and routes: a setup that asks for one is not about the recording. No reference input.
std::wstring RecordedReceiver::InstalledOptions() const
{
    return L"KTR-H2,KTR-H4,KTR-H5,KTR-H6,KTR-H8 (or KTR-H9),EAMOD,RB";
}

}  // namespace tvn2x::recordings
