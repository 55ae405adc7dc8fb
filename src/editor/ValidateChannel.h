#pragma once

#include <cstdint>

#include "util/MessageBox.h"
#include "util/modLocaleInfo.h"

namespace tvn2x {

/// What ValidateChannel found.
namespace channel_status {

constexpr int16_t valid = 1;
constexpr int16_t badFrequency = 2;  ///< whatever the symbol rate
constexpr int16_t badSymbolRate = 3;

}  // namespace channel_status

/// Checks a channel and puts it onto the receiver's raster, telling the user of every fault and of every change.
///
/// frequency: MHz, 3 to 1000, cut down to a raster of 0.1 Hz; symbolRate: MSymb/s, 0.1 to 7, rounded to one of 1000
/// symbols/s. Either may be null: it is then neither checked nor changed. What is no number (NaN) is too low. Nothing
/// changes where something is out of range.
int16_t ValidateChannel(double* frequency, double* symbolRate, MessageBoxes& messages, const Locale& locale);

}  // namespace tvn2x
