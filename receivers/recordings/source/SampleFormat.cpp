#include "receivers/recordings/source/SampleFormat.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace tvn2x::recordings {
namespace {

/// A format by the name that metadata have for it.
struct NamedFormat
{
    std::string_view name;
    SampleFormat format;
    size_t bytes;  ///< of a complex sample
};

constexpr std::array formats{
    NamedFormat{"cf32_le", SampleFormat::float32, 8}, NamedFormat{"ci16_le", SampleFormat::integer16, 4},
    NamedFormat{"ci8", SampleFormat::integer8, 2}, NamedFormat{"cu8", SampleFormat::unsigned8, 2}};

/// Full scale becomes 1.
template <class Stored>
void DecodeIntegers(const char* stored, std::span<std::complex<float>> samples, float centre, float fullScale)
{
    const float scale = 1 / fullScale;
    for (std::complex<float>& sample : samples) {
        std::array<Stored, 2> parts;
        std::memcpy(parts.data(), stored, sizeof parts);
        stored += sizeof parts;
        sample = {(static_cast<float>(parts[0]) - centre) * scale, (static_cast<float>(parts[1]) - centre) * scale};
    }
}

std::optional<size_t> FindUnusable(std::span<const std::complex<float>> samples)
{
    // A number larger than any converter's would overflow where it is squared.
    constexpr float largest = 1e6F;
    const auto isUsable = [](const std::complex<float>& sample) {
        return std::abs(sample.real()) <= largest && std::abs(sample.imag()) <= largest;
    };
    const auto found = std::ranges::find_if_not(samples, isUsable);
    return found == samples.end() ? std::nullopt : std::optional(static_cast<size_t>(found - samples.begin()));
}

}  // namespace

std::optional<SampleFormat> FormatNamed(std::string_view name)
{
    const auto* const found = std::ranges::find(formats, name, &NamedFormat::name);
    return found == formats.end() ? std::nullopt : std::optional(found->format);
}

std::wstring FormatNames()
{
    std::wstring names;
    for (const NamedFormat& named : formats) {
        const bool isLast = named.name == formats.back().name;
        names += names.empty() ? L"" : isLast ? L" and " : L", ";
        names.append(named.name.begin(), named.name.end());
    }
    return names;
}

size_t BytesOf(SampleFormat format)
{
    return std::ranges::find(formats, format, &NamedFormat::format)->bytes;
}

std::optional<size_t> Decode(SampleFormat format, const char* stored, std::span<std::complex<float>> samples)
{
    switch (format) {
        case SampleFormat::float32:
            std::memcpy(static_cast<void*>(samples.data()), stored, samples.size_bytes());
            return FindUnusable(samples);
        case SampleFormat::integer16:
            DecodeIntegers<int16_t>(stored, samples, 0, 32768);
            break;
        case SampleFormat::integer8:
            DecodeIntegers<int8_t>(stored, samples, 0, 128);
            break;
        case SampleFormat::unsigned8:
            DecodeIntegers<uint8_t>(stored, samples, 127.5F, 127.5F);
            break;
    }
    return std::nullopt;
}

}  // namespace tvn2x::recordings
