#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>

/// What decides whether a setup file can be loaded, and as what.
namespace tvn2x::setup_file {

constexpr std::wstring_view modelName = L"2x";
constexpr double oldVersion = 1.4;                ///< the version of the old layout, exactly
constexpr double firstVersionWithHardware = 2.0;  ///< from here on the file names the receiver's model

/// Version 1.4 had so many parameters fewer.
constexpr int32_t addedParameters = 10;

/// Display positions have 16 bits, and so has the number of parameters, with those that an old file gains.
constexpr int32_t lastPosition = std::numeric_limits<int16_t>::max();
constexpr int32_t mostParameters = lastPosition - addedParameters;

/// A channel whose frequency is missing takes its defaults, but only so many may be: a list costs memory whether or not
/// its rows are in the file.
constexpr int32_t mostMissingRows = std::numeric_limits<int16_t>::max();

/// The highest row number that a file is believed to hold: any that a 16-bit integer can name, and above that as many
/// as a text of so many bytes (in UTF-8) has room for, a row taking one line of at least 20 bytes.
inline int32_t MostRows(size_t textSize)
{
    constexpr size_t always = std::numeric_limits<int16_t>::max();
    constexpr size_t bytesPerRow = 20;
    return static_cast<int32_t>(std::max(always, textSize / bytesPerRow));
}

}  // namespace tvn2x::setup_file
