#pragma once

#include <complex>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tvn2x::recordings {

/// How a complex sample is stored: in-phase part first, little-endian.
enum class SampleFormat
{
    float32,    ///< cf32_le: full scale is 1
    integer16,  ///< ci16_le: full scale is 32768
    integer8,   ///< ci8: full scale is 128
    unsigned8   ///< cu8: full scale is 127.5 on either side of 127.5
};

/// The format that the metadata of a recording call so, nothing for one that is not read.
std::optional<SampleFormat> FormatNamed(std::string_view name);

/// Their names, for an error: "cf32_le, ci16_le, ci8 and cu8".
std::wstring FormatNames();

/// Bytes of one complex sample.
size_t BytesOf(SampleFormat format);

/// Makes numbers of stored samples, full scale as 1: `stored` holds as many as `samples` has room for. The position of
/// the first that is no finite number, nothing where all are.
std::optional<size_t> Decode(SampleFormat format, const char* stored, std::span<std::complex<float>> samples);

}  // namespace tvn2x::recordings
