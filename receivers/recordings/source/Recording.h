#pragma once

#include <cmath>
#include <cstdint>
#include <optional>
#include <string>

#include "receivers/recordings/source/SampleFormat.h"

namespace tvn2x::recordings {

/// A stretch of samples that were recorded in one go: at one rate, around one frequency.
struct Recording
{
    std::wstring file = {};  ///< full path of the file that holds the samples
    SampleFormat format = SampleFormat::float32;
    uint64_t firstByte = 0;
    uint64_t samples = 0;
    double rate = 0;                       ///< complex samples a second
    double frequency = 0;                  ///< Hz, that of the samples' zero
    std::optional<double> fullScale = {};  ///< dBµV of a carrier of amplitude 1, nothing where it is not calibrated

    double Seconds() const { return static_cast<double>(samples) / rate; }
    /// Hz from the edge of a band of some width to that of the recording; below 0 where it does not hold the band.
    double Margin(double centre, double width) const { return (rate - width) / 2 - std::abs(centre - frequency); }
    std::wstring FileName() const { return file.substr(file.find_last_of(L"\\/") + 1); }
};

/// What recordings may say of themselves; beyond it a number is none that was meant.
constexpr double lowestRate = 1e5;  ///< samples a second
constexpr double highestRate = 1e9;
constexpr double highestFrequency = 1e11;  ///< Hz
constexpr double lowestFullScale = -100;   ///< dBµV
constexpr double highestFullScale = 300;

}  // namespace tvn2x::recordings
