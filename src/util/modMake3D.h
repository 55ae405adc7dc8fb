#pragma once

#include <cstdint>

namespace tvn2x {

/// A colour as the window system takes it: 0x00BBGGRR.
using Colour = uint32_t;

/// The standard sixteen colours, as far as the editor uses them.
namespace palette {

constexpr Colour black = 0x000000;
constexpr Colour darkBlue = 0x800000;
constexpr Colour lightGrey = 0xC0C0C0;
constexpr Colour darkGrey = 0x808080;
constexpr Colour white = 0xFFFFFF;

}  // namespace palette

/// Which sides of a frame are in the light, with the values that callers give.
enum class FrameStyle : int32_t
{
    raised = -1,
    sunken = 0
};

/// The four lines of a frame two pixels wide, the right and lower sides first, from the outside to the inside of each.
struct FrameColours
{
    Colour outerRightBottom;
    Colour innerRightBottom;
    Colour innerLeftTop;
    Colour outerLeftTop;
};

constexpr FrameColours Make3DColours(FrameStyle style)
{
    constexpr Colour paleGrey = 0xE0E0E0;
    return style == FrameStyle::raised
               ? FrameColours{palette::black, palette::darkGrey, paleGrey, palette::white}
               : FrameColours{palette::lightGrey, palette::white, palette::darkGrey, palette::black};
}

}  // namespace tvn2x
