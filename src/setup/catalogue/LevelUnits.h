#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "dvbc/LevelUnit.h"

namespace tvn2x {

/// A level unit: the receiver knows it by its code, the document by its name.
struct LevelUnitFact
{
    dvbc::LevelUnit unit;
    std::wstring_view name;
    int32_t significantDigits = 0;  ///< that a level is displayed with; 0 for the parameter's own format
};

/// By code, 0..5.
std::span<const LevelUnitFact> LevelUnits();

std::wstring LevelUnitList();                            ///< "dBmV, dBpW, ..." for a sentence
std::wstring_view LevelUnitName(int32_t code);           ///< "" for a code outside 0..5
int32_t LevelUnitCode(std::wstring_view name);           ///< -1 for a name that is none; exact, case-sensitive
int32_t SignificantLevelDigits(std::wstring_view name);  ///< 0 also for an unknown name

/// A level in the unit of a name, in dBµV at 75 ohm. Nothing for an unknown name, or for a voltage that is not above 0.
std::optional<double> LevelInDecibelMicrovolt(double level, std::wstring_view unit);

}  // namespace tvn2x
