#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "setup/catalogue/Parameters.h"

namespace tvn2x {

/// The difference to the channel below (LevelSteps): judged as a reading, but not read.
constexpr int32_t levelStep = 1000;

/// What can be judged of a channel, as files and sentences know it.
struct ReadingKind
{
    int32_t parameter;     ///< of MP_TYPES, or levelStep
    const char* name;      ///< on the command line and in files: "rflev"
    const wchar_t* title;  ///< in a sentence: "RF level"
    const wchar_t* unit;   ///< "" where it has none; of the level in limits, where a setup may use another
    bool isLock = false;
    bool isRatio = false;  ///< spans decades, so that differences are counted in them
};

/// The locks and the numeric readings 15..30, then the level step.
std::span<const ReadingKind> ReadingKinds();
/// The unit of a difference of two values: "dB" of levels, "decades" of ratios.
const wchar_t* UnitOfDifference(const ReadingKind& kind);
const ReadingKind* FindReadingKind(int32_t parameter);       ///< null where it is none
const ReadingKind* FindReadingKind(std::wstring_view name);  ///< in any case

}  // namespace tvn2x
