#include "dvbc/Tilt.h"

#include <algorithm>
#include <cmath>

namespace tvn2x::dvbc {
namespace {

double Square(double value)
{
    return value * value;
}

}  // namespace

double TiltPosition(double frequency, double lower, double upper)
{
    const double start = std::sqrt(lower);
    return (std::sqrt(frequency) - start) / (std::sqrt(upper) - start);
}

double LevelTilt::At(double frequency) const
{
    return atLowest + TiltPosition(frequency, lowestFrequency, highestFrequency) * Tilt();
}

std::optional<LevelTilt> FitTilt(std::vector<LevelPoint> points)
{
    constexpr size_t fewest = 3;
    std::erase_if(points, [](const LevelPoint& point) { return !(point.frequency > 0); });
    std::ranges::sort(points, {}, &LevelPoint::frequency);
    if (points.size() < fewest || points.back().frequency <= points.front().frequency) {
        return std::nullopt;
    }
    const auto count = static_cast<double>(points.size());
    double x = 0, y = 0;
    for (const LevelPoint& point : points) {
        x += std::sqrt(point.frequency) / count;
        y += point.level / count;
    }
    double xx = 0, xy = 0;
    for (const LevelPoint& point : points) {
        xx += Square(std::sqrt(point.frequency) - x);
        xy += (std::sqrt(point.frequency) - x) * (point.level - y);
    }
    const double slope = xy / xx;
    const auto line = [&](double frequency) { return y + slope * (std::sqrt(frequency) - x); };
    double rest = 0;
    for (const LevelPoint& point : points) {
        rest += Square(point.level - line(point.frequency));
    }
    const double lowest = points.front().frequency;
    const double highest = points.back().frequency;
    return LevelTilt{lowest, highest, line(lowest), line(highest), std::sqrt(rest / count)};
}

}  // namespace tvn2x::dvbc
