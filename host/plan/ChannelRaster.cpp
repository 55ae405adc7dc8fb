#include "host/plan/ChannelRaster.h"

#include <cmath>

#include "util/modFormat.h"

namespace tvn2x {
namespace {

/// Channels first..last with equal spacing.
struct Band
{
    wchar_t letter;
    int first;
    int last;
    double centre;   ///< of the first channel, MHz
    double spacing;  ///< MHz
};

// Below 300 MHz the raster has 7 MHz; the digital channels S2 and S3 sit 8 MHz apart beside the FM band.
constexpr Band bands[] = {
    {L'K', 2, 4, 50.5, 7},    {L'S', 2, 3, 113, 8},   {L'S', 1, 10, 107.5, 7}, {L'K', 5, 12, 177.5, 7},
    {L'S', 11, 20, 233.5, 7}, {L'S', 21, 41, 306, 8}, {L'K', 21, 69, 474, 8},
};

/// Networks shift a carrier by up to this much to keep clear of a neighbour.
constexpr double largestOffset = 0.25;

}  // namespace

std::wstring ChannelLabel(double megahertz)
{
    for (const Band& band : bands) {
        const double steps = std::round((megahertz - band.centre) / band.spacing);
        if (steps >= 0 && steps <= band.last - band.first &&
            std::abs(megahertz - band.centre - steps * band.spacing) <= largestOffset) {
            return band.letter + std::to_wstring(band.first + static_cast<int>(steps));
        }
    }
    return FormatNumber(megahertz, false, SystemLocale()) + L" MHz";
}

}  // namespace tvn2x
