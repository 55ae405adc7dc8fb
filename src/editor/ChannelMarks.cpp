#include "editor/ChannelMarks.h"

#include <algorithm>
#include <cmath>

namespace tvn2x {
namespace {

constexpr double sameFrequency = 5e-8;  // half of the raster, in MHz
constexpr double touching = 1e-6;       // 1 Hz: what is rounding and not an overlap

struct Occupied
{
    int32_t row;
    double frequency;
    double half;  ///< half of the bandwidth
};

void Mark(std::vector<ChannelMark>& marks, const Occupied& left, const Occupied& right)
{
    const bool isSame = right.frequency - left.frequency < sameFrequency;
    const double common = left.frequency + left.half - (right.frequency - right.half);
    if (!isSame && common <= touching) {
        return;
    }
    const auto mark = [&](int32_t row, int32_t other) {
        ChannelMark& present = marks[static_cast<size_t>(row)];
        if (isSame && present.kind != ChannelMark::Kind::equal) {
            present = {ChannelMark::Kind::equal, other, 0};
        } else if (!isSame && present.kind == ChannelMark::Kind::none) {
            present = {ChannelMark::Kind::overlapping, other, common};
        }
    };
    mark(left.row, right.row);
    mark(right.row, left.row);
}

}  // namespace

std::vector<ChannelMark> MarkChannels(const std::vector<ChannelPlace>& channels, double rollOff)
{
    std::vector<Occupied> known;
    known.reserve(channels.size());
    for (size_t row = 0; row < channels.size(); ++row) {
        const auto [frequency, symbolRate] = channels[row];
        if (!std::isnan(frequency)) {
            const double half = symbolRate > 0 ? symbolRate * (1 + rollOff) / 2 : 0;
            known.push_back({static_cast<int32_t>(row), frequency, half});
        }
    }
    std::stable_sort(known.begin(), known.end(),
                     [](const Occupied& left, const Occupied& right) { return left.frequency < right.frequency; });

    // Whoever overlaps a channel from below is its neighbour or the one that reaches furthest up, and from above
    // likewise.
    std::vector<ChannelMark> marks(channels.size());
    for (size_t at = 1, furthest = 0; at < known.size(); ++at) {
        Mark(marks, known[at - 1], known[at]);
        Mark(marks, known[furthest], known[at]);
        if (known[at].frequency + known[at].half >= known[furthest].frequency + known[furthest].half) {
            furthest = at;
        }
    }
    for (size_t behind = known.size(), furthest = behind - 1; behind-- > 1;) {
        if (known[behind].frequency - known[behind].half <= known[furthest].frequency - known[furthest].half) {
            furthest = behind;
        }
        Mark(marks, known[behind - 1], known[furthest]);
    }
    return marks;
}

}  // namespace tvn2x
