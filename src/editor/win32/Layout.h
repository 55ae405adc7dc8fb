#pragma once

#include <windows.h>

#include <vector>

namespace tvn2x {

/// Dialog units in pixels of a font: a quarter of its average width, an eighth of its height. So the layout follows the
/// user's font and the system's DPI alike.
class Metrics
{
public:
    explicit Metrics(HFONT font);

    int X(int units) const { return MulDiv(units, averageWidth_, 4); }
    int Y(int units) const { return MulDiv(units, lineHeight_, 8); }
    int LineHeight() const { return lineHeight_; }
    int RowHeight() const { return lineHeight_ + Y(4); }

private:
    int averageWidth_;
    int lineHeight_;
};

/// Edges in dialog units. A negative one counts from the right or lower edge of the parent, so that what stands between
/// stretches with it.
struct Area
{
    int left;
    int top;
    int right;
    int bottom;
};

RECT InPixels(const Area& area, const Metrics& metrics, SIZE parent);

/// Where the controls of one parent stand.
class Layout
{
public:
    void Add(HWND control, const Area& area) { places_.push_back({control, area, nullptr}); }
    /// A field of one line, as high as such a field is, and its label, on one base line with it: of the label the left
    /// and right edges stay.
    void AddField(HWND field, const Area& area, HWND label) { places_.push_back({field, area, label}); }
    void Apply(const Metrics& metrics, SIZE parent) const;

private:
    /// A control, the area that it fills, and the label of a field.
    struct Place
    {
        HWND control;
        Area area;
        HWND label;
    };
    std::vector<Place> places_;
};

RECT PlaceIn(HWND parent, HWND window);  ///< of a child
SIZE ClientSize(HWND window);
void Move(HWND window, const RECT& to);

}  // namespace tvn2x
