#include "receivers/model/ReceiverControls.h"

#include <algorithm>
#include <string>

#include "receivers/model/SettingRange.h"

namespace tvn2x {
namespace {

/// "16, 32 and 64"
std::wstring ListOf(std::span<const int32_t> numbers)
{
    std::wstring text = std::to_wstring(numbers.front());
    for (const int32_t number : numbers.subspan(1)) {
        text += (number == numbers.back() ? L" and " : L", ") + std::to_wstring(number);
    }
    return text;
}

}  // namespace

void ReceiverControls::Frequency(double hertz)
{
    RequireSettingRange(hertz, ranges_->lowestFrequency, ranges_->highestFrequency, L"Frequency", L" Hz");
    settings_.frequency = hertz;
    TuneAnew();
}

void ReceiverControls::SymbolRate(double symbolsPerSecond)
{
    RequireSettingRange(symbolsPerSecond, ranges_->lowestSymbolRate, ranges_->highestSymbolRate, L"SymbolRate",
                        L" symbols per second");
    RestartBerCount();
    BeginMeasurement();
    ChangeSignal(&ReceiverSettings::symbolRate, symbolsPerSecond);
}

void ReceiverControls::OrderOfQam(int32_t order)
{
    RequireSetting(std::ranges::find(ranges_->ordersOfQam, order) != ranges_->ordersOfQam.end(), L"OrderOfQam",
                   std::to_wstring(order) + L" is none of " + ListOf(ranges_->ordersOfQam));
    ChangeSignal(&ReceiverSettings::order, order);
}

void ReceiverControls::RollOffFactor(int32_t hundredths)
{
    RequireSettingRange(hundredths, ranges_->lowestRollOff, ranges_->highestRollOff, L"RollOffFactor", L" hundredths");
    ChangeSignal(&ReceiverSettings::rollOff, hundredths);
}

void ReceiverControls::BerSamples(int32_t blocks)
{
    RequireSettingRange(blocks, 1, 10000, L"BerSamples", L" samples of 10^7 bits");
    settings_.berSamples = blocks;
    RestartBerCount();
}

void ReceiverControls::LevelUnit(int32_t code)
{
    RequireSettingRange(code, 0, 5, L"LevelUnit", L", the codes of dBmV, dBpW, dBuW, dBm, dBuV and mV");
    settings_.levelUnit = static_cast<dvbc::LevelUnit>(code);
}

void ReceiverControls::InputRoute(int32_t route)
{
    RequireSetting(IsChoice(setting::inputRoute, route), L"InputRoute",
                   std::to_wstring(route) + L" is none of 2, 4, 50, 75 and 128");
    RequireRoute(route);
    ChangeFrontEnd(&ReceiverSettings::route, route);
}

void ReceiverControls::InputAttenuation(int32_t decibels)
{
    if (decibels != automaticAttenuation) {
        RequireSettingRange(decibels, 0, 70, L"InputAttenuation", L" dB, or 255 for automatic");
    }
    ChangeFrontEnd(&ReceiverSettings::attenuation, decibels);
}

}  // namespace tvn2x
