#pragma once

#include <optional>
#include <string>

#include "receivers/recordings/source/Recording.h"
#include "receivers/recordings/source/SampleFile.h"

namespace tvn2x::recordings {

/// Reads the head of a WAV file of two channels, the first of them in phase: whole numbers of 8 or 16 bits or floating
/// point of 32 bits, in the common form or in the one for more than 4 GB. What the head says of the length is believed
/// only as far as the file goes.
///
/// The centre frequency is that of the chunk "auxi" that recording programs write, or else the frequency in the file's
/// name: a number before Hz, kHz or MHz. Raises an error that names file, offset and remedy where the file is no such
/// recording, or tells no frequency.
Recording ReadWav(const std::wstring& path, StoredBytes& file, std::optional<double> fullScale);

/// The frequency in Hz that a file's name tells ("cable_306000kHz.wav"), nothing where it tells none.
std::optional<double> FrequencyInName(const std::wstring& name);

}  // namespace tvn2x::recordings
