#include "setup/catalogue/LevelUnits.h"

#include <algorithm>
#include <array>

namespace tvn2x {
namespace {

using enum dvbc::LevelUnit;

// A decibel is a logarithm: its tenths mean the same at every level. A voltage spans decades (33 dBµV are 0.04467 mV).
constexpr std::array<LevelUnitFact, 6> units{
    {{dBmV, L"dBmV"}, {dBpW, L"dBpW"}, {dBuW, L"dB\u00B5W"}, {dBm, L"dBm"}, {dBuV, L"dB\u00B5V"}, {mV, L"mV", 4}}};

const LevelUnitFact* Find(std::wstring_view name)
{
    const auto* found = std::ranges::find(units, name, &LevelUnitFact::name);
    return found == units.end() ? nullptr : found;
}

}  // namespace

std::span<const LevelUnitFact> LevelUnits()
{
    return units;
}

std::wstring LevelUnitList()
{
    std::wstring list;
    for (const LevelUnitFact& fact : units) {
        (list += list.empty() ? L"" : L", ") += fact.name;
    }
    return list;
}

std::wstring_view LevelUnitName(int32_t code)
{
    return code >= 0 && code < static_cast<int32_t>(units.size()) ? units[static_cast<size_t>(code)].name
                                                                  : std::wstring_view();
}

int32_t LevelUnitCode(std::wstring_view name)
{
    const LevelUnitFact* const fact = Find(name);
    return fact ? static_cast<int32_t>(fact->unit) : -1;
}

int32_t SignificantLevelDigits(std::wstring_view name)
{
    const LevelUnitFact* const fact = Find(name);
    return fact ? fact->significantDigits : 0;
}

std::optional<double> LevelInDecibelMicrovolt(double level, std::wstring_view unit)
{
    const LevelUnitFact* const fact = Find(unit);
    return fact ? dvbc::DecibelMicrovolts(fact->unit, level) : std::nullopt;
}

}  // namespace tvn2x
