#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace tvn2x {

/// The numbers of the parameters, as the plug-in's type library has them.
namespace parameter {

constexpr int32_t userField = 10;
constexpr int32_t frequency = 11;
constexpr int32_t symbolRate = 12;
constexpr int32_t status = 13;
constexpr int32_t timeStamp = 14;
constexpr int32_t level = 15;
constexpr int32_t ber = 16;
constexpr int32_t frequencyOffset = 17;
constexpr int32_t reference = 18;
constexpr int32_t sync = 19;
constexpr int32_t data = 20;
constexpr int32_t iqImbalance = 21;
constexpr int32_t iqPhase = 22;
constexpr int32_t carrierSuppression = 23;
constexpr int32_t phaseJitter = 24;
constexpr int32_t carrierToInterference = 25;
constexpr int32_t signalToNoise = 26;
constexpr int32_t mer = 27;
constexpr int32_t merPercent = 28;
constexpr int32_t syncErrors = 29;
constexpr int32_t dataErrors = 30;
constexpr int32_t levelStep = 1000;  ///< not read: the difference to the channel below, see LevelSteps

}  // namespace parameter

/// How a parameter appears in files and sentences.
struct ReadingKind
{
    int32_t parameter;
    const char* name;   ///< on the command line and in files: "rflev"
    const char* title;  ///< in a sentence: "RF level"
    const char* unit;   ///< "" where it has none; of the level in limits, where a setup may use another
    bool isLock = false;
    bool isRatio = false;  ///< spans decades, so that differences are counted in them
};

/// The locks and the numeric readings 15..30, then the level step.
std::span<const ReadingKind> ReadingKinds();
const ReadingKind* FindReadingKind(int32_t parameter);      ///< null where it is none
const ReadingKind* FindReadingKind(std::string_view name);  ///< in any case

/// A level of one of the plug-in's units (dBmV, dBpW, dBµW, dBm, dBµV, mV; UTF-8) in dBµV at 75 ohm. Nothing for
/// another unit, or for a voltage that is not above 0.
std::optional<double> LevelInDecibelMicrovolt(double level, std::string_view unit);

}  // namespace tvn2x
