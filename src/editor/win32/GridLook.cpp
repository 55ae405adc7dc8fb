#include "editor/win32/GridLook.h"

#include <vsstyle.h>
#include <vssym32.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>

namespace tvn2x {
namespace {

constexpr UINT oneLine = DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS;

int Brightness(COLORREF colour)
{
    return (299 * GetRValue(colour) + 587 * GetGValue(colour) + 114 * GetBValue(colour)) / 1000;
}

/// So many hundredths of one colour, and the rest of another.
COLORREF Mixed(COLORREF one, COLORREF other, int percent)
{
    const auto mix = [&](int left, int right) { return (left * percent + right * (100 - percent)) / 100; };
    return RGB(mix(GetRValue(one), GetRValue(other)), mix(GetGValue(one), GetGValue(other)),
               mix(GetBValue(one), GetBValue(other)));
}

/// A raised frame along the inside of an area, in lines of a width.
void Make3D(HDC context, const RECT& area, int width)
{
    const auto [left, top, right, bottom] = area;
    const FrameColours colours = Make3DColours(FrameStyle::raised);
    Fill(context, colours.innerRightBottom,
         {{right - width, top, right, bottom}, {left, bottom - width, right, bottom}});
    Fill(context, colours.outerLeftTop,
         {{left, top, left + width, bottom - width}, {left, top, right - width, top + width}});
}

void DrawArrow(HDC context, const RECT& area, SortArrow arrow, COLORREF colour)
{
    const LONG height = area.bottom - area.top;
    for (LONG line = 0; line < height; ++line) {
        const LONG y = arrow == SortArrow::up ? area.top + line : area.bottom - 1 - line;
        const LONG middle = (area.left + area.right) / 2;
        Fill(context, colour, {{middle - line, y, middle + line + 1, y + 1}});
    }
}

}  // namespace

void Fill(HDC context, COLORREF colour, std::initializer_list<RECT> areas)
{
    SetBkColor(context, colour);
    for (const RECT& area : areas) {
        ExtTextOutW(context, 0, 0, ETO_OPAQUE, &area, nullptr, 0, nullptr);
    }
}

bool WindowsAreDark()
{
    return Brightness(GetSysColor(COLOR_WINDOW)) < 128;
}

bool IsHighContrast()
{
    HIGHCONTRASTW contrast{};
    contrast.cbSize = sizeof contrast;
    return SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof contrast, &contrast, 0) &&
           (contrast.dwFlags & HCF_HIGHCONTRASTON) != 0;
}

COLORREF ReadableOn(COLORREF background, COLORREF wanted)
{
    constexpr int least = 90;
    const int behind = Brightness(background);
    if (std::abs(behind - Brightness(wanted)) >= least) {
        return wanted;
    }
    return behind < 128 ? palette::white : palette::black;
}

GridLook::GridLook(HFONT textFont) : metrics(textFont)
{
    Renew(textFont);
}

/// A theme is made for bright windows; where the system's colours are dark, its parts would not be among their like.
void GridLook::Renew(HFONT textFont)
{
    font = textFont;
    metrics = Metrics(textFont);
    thin_ = std::max(1, metrics.LineHeight() / 15);
    const bool themed = !WindowsAreDark() && !IsHighContrast();
    header_ = ThemeData(themed ? OpenThemeData(nullptr, L"HEADER") : nullptr);
    button_ = ThemeData(OpenThemeData(nullptr, L"BUTTON"));  // of no window: it would become that one's own
    const COLORREF window = GetSysColor(COLOR_WINDOW);
    const COLORREF text = ReadableOn(window, GetSysColor(COLOR_WINDOWTEXT));
    line_ = Mixed(text, window, IsHighContrast() ? 60 : 14);
    pale_ = IsHighContrast() ? text : Mixed(text, window, 62);
}

/// A selection without the keyboard is a shade of the one that has it; of few colours, it has a frame alone.
RowColours GridLook::ColoursOf(bool isSelected, bool isActive) const
{
    const COLORREF window = GetSysColor(COLOR_WINDOW);
    const COLORREF highlight = GetSysColor(COLOR_HIGHLIGHT);
    if (isSelected && isActive) {
        return {highlight, ReadableOn(highlight, GetSysColor(COLOR_HIGHLIGHTTEXT))};
    }
    const COLORREF background = isSelected && !IsHighContrast() ? Mixed(highlight, window, 24) : window;
    return {background, ReadableOn(background, GetSysColor(COLOR_WINDOWTEXT))};
}

COLORREF GridLook::MarkColour(bool isEqual) const
{
    if (IsHighContrast()) {
        return GetSysColor(COLOR_HOTLIGHT);
    }
    return isEqual ? RGB(200, 40, 40) : RGB(220, 140, 0);
}

void GridLook::DrawSingleLine(HDC context, RECT area, std::wstring_view text, COLORREF colour, UINT format) const
{
    const Selected selected(context, font);
    SetBkMode(context, TRANSPARENT);
    SetTextColor(context, colour);
    DrawTextW(context, text.data(), static_cast<int>(text.size()), &area, oneLine | format);
}

void GridLook::DrawHeading(HDC context, const RECT& area, std::wstring_view caption, SortArrow arrow, bool isRight,
                           bool showsKeys) const
{
    COLORREF background = GetSysColor(COLOR_BTNFACE);
    COLORREF colour = ReadableOn(background, GetSysColor(COLOR_BTNTEXT));
    if (header_.Get()) {
        DrawThemeBackground(header_.Get(), context, HP_HEADERITEM, HIS_NORMAL, &area, nullptr);
        colour = GetSysColor(COLOR_WINDOWTEXT);
        GetThemeColor(header_.Get(), HP_HEADERITEM, HIS_NORMAL, TMT_TEXTCOLOR, &colour);
    } else {
        Fill(context, background, {area});
        if (WindowsAreDark() || IsHighContrast()) {
            Fill(context, line_,
                 {{area.right - thin_, area.top, area.right, area.bottom},
                  {area.left, area.bottom - thin_, area.right, area.bottom}});
        } else {
            Make3D(context, area, thin_);
        }
    }
    RECT text = area;
    InflateRect(&text, -metrics.X(cellMargin), 0);
    if (arrow != SortArrow::none) {
        const int height = std::max(metrics.LineHeight() / 3, 3);
        const LONG top = (area.top + area.bottom - height) / 2;
        DrawArrow(context, {text.right - 2 * height, top, text.right, top + height}, arrow, colour);
        text.right -= 2 * height + metrics.X(cellMargin);
    }
    DrawSingleLine(context, text, caption, colour, (isRight ? DT_RIGHT : 0) | (showsKeys ? 0 : DT_HIDEPREFIX));
}

void GridLook::DrawCheck(HDC context, const RECT& cell, CheckState state) const
{
    const int size = std::min<int>(metrics.LineHeight(), cell.bottom - cell.top - 2);
    const LONG left = (cell.left + cell.right - size) / 2;
    const LONG top = (cell.top + cell.bottom - size) / 2;
    RECT box{left, top, left + size, top + size};
    if (button_.Get()) {
        constexpr int states[]{CBS_UNCHECKEDNORMAL, CBS_CHECKEDNORMAL, CBS_MIXEDNORMAL};
        DrawThemeBackground(button_.Get(), context, BP_CHECKBOX, states[static_cast<size_t>(state)], &box, nullptr);
    } else {
        constexpr UINT states[]{DFCS_BUTTONCHECK, DFCS_BUTTONCHECK | DFCS_CHECKED, DFCS_BUTTON3STATE | DFCS_CHECKED};
        DrawFrameControl(context, &box, DFC_BUTTON, states[static_cast<size_t>(state)]);
    }
}

}  // namespace tvn2x
