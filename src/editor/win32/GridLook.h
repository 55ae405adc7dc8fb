#pragma once

#include <windows.h>

#include <uxtheme.h>

#include <string_view>

#include "editor/Editor.h"
#include "editor/win32/Handles.h"
#include "editor/win32/Layout.h"

namespace tvn2x {

inline void CloseTheme(HTHEME theme)
{
    CloseThemeData(theme);
}
using ThemeData = Owned<HTHEME, CloseTheme>;

/// Whether the system's windows are darker than middle grey.
bool WindowsAreDark();
/// Whether the user works with a high contrast.
bool IsHighContrast();

/// The colour that is wanted for a text, or where it could not be read on a background, black or white.
COLORREF ReadableOn(COLORREF background, COLORREF wanted);

/// Behind and in the cells of a row.
struct RowColours
{
    COLORREF background;
    COLORREF text;
};

/// What the grids are drawn with: the theme's parts where it fits the system's colours, otherwise those colours alone.
class GridLook
{
public:
    explicit GridLook(HFONT textFont);

    /// After a change of the system's colours or theme, or of the font.
    void Renew(HFONT textFont);

    RowColours ColoursOf(bool isSelected, bool isActive) const;
    COLORREF LineColour() const { return line_; }
    COLORREF PaleText() const { return pale_; }
    COLORREF MarkColour(bool isEqual) const;
    int Thin() const { return thin_; }  ///< a line that can be seen, in pixels
    bool HasTheme() const { return header_.Get() != nullptr; }

    void DrawHeading(HDC context, const RECT& area, std::wstring_view caption, SortArrow arrow, bool isRight,
                     bool showsKeys) const;
    void DrawCheck(HDC context, const RECT& cell, CheckState state) const;
    void DrawSingleLine(HDC context, RECT area, std::wstring_view text, COLORREF colour, UINT format) const;

    HFONT font = nullptr;
    Metrics metrics;

private:
    ThemeData header_;
    ThemeData button_;
    COLORREF line_ = 0;
    COLORREF pale_ = 0;
    int thin_ = 1;
};

/// Fills areas with one colour.
void Fill(HDC context, COLORREF colour, std::initializer_list<RECT> areas);

constexpr int cellMargin = 3;  ///< between a cell's edge and its text, in dialog units

}  // namespace tvn2x
