#pragma once

#include <windows.h>

#include <array>
#include <deque>
#include <optional>
#include <string>

#include "editor/Editor.h"
#include "editor/win32/GridAccessible.h"
#include "editor/win32/GridLook.h"
#include "editor/win32/Handles.h"
#include "editor/win32/Subclass.h"
#include "editor/win32/ToolTip.h"

namespace tvn2x {

/// A place in a grid: a cell, the number in front of a row, or the heading of a column (row -1).
struct GridPlace
{
    bool operator==(const GridPlace&) const = default;

    int32_t row = -1;
    std::optional<Column> column;  ///< none in front of the rows
};

/// A grid on its page: headings, rows with their numbers, three columns in step, and the text field over a cell. It
/// holds no rows of its own: it asks the editor for what it draws, and hands to it what the user does.
class GridPane
{
public:
    GridPane(Editor& editor, const GridLook& look, Grid grid) : editor_(editor), look_(look), grid_(grid) {}
    GridPane(const GridPane&) = delete;
    GridPane& operator=(const GridPane&) = delete;
    ~GridPane();

    void Create(HWND page, MessageFilter& filter, std::deque<Subclass>& subclasses);
    void Arrange(const RECT& place);

    void Refresh();  ///< everything is another
    void SelectionChanged();
    void CellChanged(Column column, int32_t row);
    void ArrowChanged() const { InvalidateRect(window_, nullptr, FALSE); }
    void ShowCellEditor();
    void FocusList();
    HWND Window() const { return window_; }
    HWND CellEditor() const { return cellEditor_; }

    LRESULT OnListMessage(const Subclass& list, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT OnCellEditorMessage(const Subclass& cellEditor, UINT message, WPARAM wParam, LPARAM lParam);
    void OnCellTextChanged();

    // Geometry, in pixels of the window.
    RECT CellRect(const GridPlace& place) const;  ///< empty where the place is out of sight
    GridPlace PlaceAt(POINT point) const;
    const std::array<int, 3>& Shares() const { return shares_; }
    /// How the columns share the width, in thousandths. What makes no sense changes nothing.
    void TakeShares(const std::array<int, 3>& shares);

private:
    static constexpr size_t columns = 3;

    Column ColumnAt(size_t index) const { return static_cast<Column>(grid_) + static_cast<Column>(index); }
    bool HasFocus() const;
    int RowTop(int32_t row) const;
    int32_t RowNear(int y) const;
    std::array<int, columns + 1> Edges() const;
    int NumberWidth() const;
    void MoveCellEditor(const CellEdit& edit);

    // What the user does.
    LRESULT OnMouse(UINT message, WPARAM wParam, POINT point);
    void OnPress(WPARAM wParam, POINT point);
    void OnDrag(POINT point);
    void OnRelease(POINT point);
    void OnWheel(WPARAM wParam);
    void OnScroll(int code);
    void ShowTip(POINT point);
    std::wstring TipOf(const GridPlace& place) const;
    std::optional<size_t> BorderAt(POINT point) const;
    void MoveBorder(int x);

    // Drawing.
    void Paint() noexcept;
    void Draw(HDC context) const;
    void DrawHeadings(HDC context) const;
    void DrawRow(HDC context, int32_t row) const;
    void DrawCell(HDC context, const GridPlace& place, RowColours colours) const;
    void DrawHint(HDC context) const;

    Editor& editor_;
    const GridLook& look_;
    const Grid grid_;
    HWND page_ = nullptr;
    HWND window_ = nullptr;
    HWND cellEditor_ = nullptr;
    ToolTip tip_;
    GridPlace tipPlace_;
    Accessible accessible_;
    std::array<int, columns> shares_{};
    /// What the mouse does while its button is down.
    struct Drag
    {
        GridPlace from;
        bool opens = false;            ///< a release at the same place is a click
        bool moved = false;            ///< it is selecting rows
        std::optional<size_t> border;  ///< it moves the right border of this column
    };
    std::optional<Drag> drag_;
    int wheel_ = 0;
    bool updating_ = false;  ///< the pane itself is changing its controls
};

/// The text of a control. The system's controls hold at most 2^31 characters.
std::wstring WindowText(HWND window);

}  // namespace tvn2x
