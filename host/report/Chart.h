#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/judge/Judgement.h"

namespace tvn2x {

/// One axis of a chart.
struct ChartAxis
{
    std::wstring caption;
    double low = 0;
    double high = 1;
    bool isLogarithmic = false;
    bool isTime = false;  ///< values are seconds since 1970, shown as local time

    /// Widens the axis so that it ends at whole steps of about `ticks` of them.
    void Round(int ticks);
    std::vector<double> Ticks(int about) const;
    double Position(double value) const;  ///< 0..1 along the axis, clamped
};

/// A picture of values over frequency or time, as SVG that needs no style sheet: colours stand in it for whoever shows
/// it without one, classes for the style sheet of a page, which can make it fit a dark background. Values are told
/// apart by shape as well as by colour.
class Chart
{
public:
    /// The title is shown, the description is for those who cannot see the picture.
    Chart(std::wstring title, std::wstring description, ChartAxis x, ChartAxis y);

    void LimitLine(double from, double to, double y, bool isFailure);  ///< between two x
    void Curve(const std::vector<std::pair<double, double>>& points);
    void Bar(double x, double width, double y, Verdict verdict, std::wstring_view hint);  ///< from 0, width in x
    /// A mark; with a label where it should be named in the picture. An arrow where the value is a bound.
    void Point(double x, double y, Verdict verdict, Bound bound, std::wstring_view hint, std::wstring_view label = {});
    void Missing(double x, std::wstring_view label);  ///< a cross on the axis: there is no value

    std::string Svg() const;

private:
    /// Where a label stands.
    struct Place
    {
        double centre = 0;
        double half = 0;  ///< of its width
        double base = 0;
    };

    double Left(double x) const;
    double Top(double y) const;
    std::string Axes() const;
    void Label(double x, double y, std::wstring_view text);

    std::wstring title_;
    std::wstring description_;
    ChartAxis x_;
    ChartAxis y_;
    std::string body_;
    std::vector<Place> labels_;  ///< so that they keep apart
};

/// The mark of a verdict at a place of a picture, in its colour and shape, with a hint for the pointer.
std::string Mark(double left, double top, Verdict verdict, std::wstring_view hint = {});

}  // namespace tvn2x
