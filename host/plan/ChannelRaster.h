#pragma once

#include <string>

namespace tvn2x {

/// What a cable engineer calls a channel of this centre frequency in MHz: its number in the European cable raster
/// ("S21", "K36") within 250 kHz of the raster's centre, else the frequency ("114 MHz", "377.75 MHz").
std::wstring ChannelLabel(double megahertz);

}  // namespace tvn2x
