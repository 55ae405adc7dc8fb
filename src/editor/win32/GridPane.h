#pragma once

#include <windows.h>

#include <array>
#include <deque>

#include "editor/Editor.h"
#include "editor/win32/Handles.h"
#include "editor/win32/Layout.h"
#include "editor/win32/Subclass.h"

namespace tvn2x {

/// What the grids are drawn with.
struct GridLook
{
    explicit GridLook(HFONT textFont) : font(textFont), metrics(textFont) { MakeArrows(); }
    void MakeArrows();  ///< in the system's present colours

    HFONT font;
    Metrics metrics;
    Images arrows;  ///< "up" and "down", in the order of SortArrow
    SIZE arrowSize{};
};

/// A grid on its page: three lists side by side with their headings, and the text field over a cell. The lists hold no
/// rows of their own: they are told how many there are and ask the editor for what they draw.
class GridPane
{
public:
    GridPane(Editor& editor, const GridLook& look, Grid grid) : editor_(editor), look_(look), grid_(grid) {}

    void Create(HWND page, MessageFilter& filter, std::deque<Subclass>& subclasses);
    void Arrange(const RECT& place);

    void Refresh();           ///< number of rows, selection and all cells
    void SynchroniseLists();  ///< number of rows, selection and first visible row
    void CellChanged(Column column, int32_t row) const;
    void ArrowChanged(Column column) const { InvalidateRect(heading_[Index(column)], nullptr, FALSE); }
    void ShowCellEditor();
    void SelectionColourChanged() const;
    HWND List(Column column) const { return list_[Index(column)]; }
    HWND Heading(Column column) const { return heading_[Index(column)]; }
    HWND CellEditor() const { return cellEditor_; }

    void DrawHeading(const DRAWITEMSTRUCT& item) const;
    void DrawRow(const DRAWITEMSTRUCT& item) const;
    LRESULT OnListMessage(const Subclass& list, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT OnCellEditorMessage(const Subclass& cellEditor, UINT message, WPARAM wParam, LPARAM lParam);
    void OnCellTextChanged();

private:
    static constexpr size_t columns = 3;

    size_t Index(Column column) const { return static_cast<size_t>(column - static_cast<Column>(grid_)); }
    Column ColumnAt(size_t index) const { return static_cast<Column>(grid_) + static_cast<Column>(index); }
    bool HasFocus() const;
    int32_t RowAt(HWND list, LPARAM point) const;
    void OnWheel(Column column, WPARAM wParam);
    void DrawCheck(HDC context, const RECT& cell, bool checked) const;

    Editor& editor_;
    const GridLook& look_;
    const Grid grid_;
    HWND page_ = nullptr;
    std::array<HWND, columns> heading_{};
    std::array<HWND, columns> list_{};
    HWND cellEditor_ = nullptr;
    int wheel_ = 0;
    bool updating_ = false;  ///< the pane itself is changing its controls
};

/// The text of a control. The system's controls hold at most 2^31 characters.
std::wstring WindowText(HWND window);

}  // namespace tvn2x
