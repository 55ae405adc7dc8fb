#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "editor/Choices.h"
#include "editor/EditorView.h"
#include "editor/GridRows.h"
#include "setup/SetupDocument.h"
#include "util/MessageBox.h"
#include "util/modLocaleInfo.h"

namespace tvn2x {

/// The text field over a cell.
struct CellEdit
{
    bool open = false;
    Column column = 0;
    int32_t row = 0;
    std::wstring text;
    int32_t selectionStart = 0;  ///< what is selected as it opens
    int32_t selectionLength = 0;
};

/// The setup editor without its window: everything that it shows, decides, checks and writes.
///
/// The window makes one, calls Activate once when it is first shown and forwards what the user does. Rows count from 0,
/// keys and characters are those of the system's key messages. An event may raise std::bad_alloc or a RaisedError: the
/// document then is as it was, and the editor can go on. The document is written by a successful Ok alone, in one step.
class Editor
{
public:
    Editor(SetupDocument& document, EditorView& view, MessageBoxes& messages, const Locale& locale);

    /// Fills every control from the document and sends the notices for all of them. The page "Settings" is shown.
    void Activate();

    // What the window shows.
    std::wstring_view Tag() const { return tag_; }  ///< "OK" or "Cancel" once the editor is closed, "" before
    Page CurrentPage() const { return page_; }
    int32_t SelectedItem(Choice choice) const { return choices_[static_cast<size_t>(choice)]; }
    const std::wstring& Text(Field field) const { return fields_[static_cast<size_t>(field)]; }
    bool Checked(Check check) const { return checks_[static_cast<size_t>(check)]; }
    bool OkIsDefault() const { return !edit_.open && !notesFocused_; }
    bool CancelIsCancel() const { return !edit_.open; }
    int32_t RowCount(Grid grid) const { return Rows(grid).Count(); }
    int32_t SelectedRow(Grid grid) const { return Rows(grid).selected; }
    int32_t TopRow(Grid grid) const { return Rows(grid).top; }
    const std::wstring& CellText(Column column, int32_t row) const { return Rows(column).Text(column, row); }
    bool CellChecked(Column column, int32_t row) const;
    int32_t ItemData(Grid grid, int32_t row) const { return Rows(grid).At(row).itemData; }
    SortArrow Arrow(Column column) const { return Rows(column).arrows[Rows(column).Index(column)]; }
    const CellEdit& CurrentEdit() const { return edit_; }

    // Pages and controls.
    void SelectPage(Page page);
    void BackgroundClicked() { view_.Focus(Control::tabs, 0); }
    /// A control of the editor got the keyboard. Another window or a message box that takes it is no such event.
    void FocusMoved(Control control, Column column);
    void SelectItem(Choice choice, int32_t position);
    void TextChanged(Field field, std::wstring text) { fields_[static_cast<size_t>(field)] = std::move(text); }
    bool FieldChar(Field field, wchar_t character);  ///< false where the character must not be typed
    void SetCheck(Check check, bool checked) { checks_[static_cast<size_t>(check)] = checked; }
    void Ok();
    void Cancel();

    // Grids.
    void SetVisibleRows(Grid grid, int32_t rows);     ///< whole rows that fit the lists
    void CellClicked(Column column, int32_t row);     ///< by mouse, on the text or on the check box
    void RowSelected(Column column, int32_t row);     ///< by arrow and page keys
    void Scrolled(Column column, int32_t topRow);     ///< by scroll bar, wheel or keys
    bool ListChar(Column column, wchar_t character);  ///< true where the character is taken
    void HeadingClicked(Column column);
    /// Alt and a heading's letter: its list gets the keyboard; where it has it already, the heading is clicked.
    void HeadingAccessKey(Column column);
    void Execute(RowCommand command, Grid grid);

    // The cell editor.
    void BeginCellEdit(Column column, int32_t row, int32_t topRow);
    bool CellKeyDown(int32_t key, bool shift);  ///< Enter, Escape and Tab; true where the key is taken
    bool CellChar(wchar_t character);           ///< false where the character must not be typed
    void CellTextChanged(std::wstring text) { edit_.text = std::move(text); }
    bool IsNumericKey(wchar_t character) const;

    // Notes.
    void NotesChanged() { notesTouched_ = notesTouched_ || !updating_; }
    /// Whether a change of the notes may take place that takes away, replaces or splits protected text (or does not).
    /// Beeps where it may not.
    bool AllowNotesEdit(bool touchesProtected);
    void NotesButton(bool protect);  ///< "Protect" or "Unprotect"

private:
    /// Where the keyboard goes when a cell editor closes.
    enum class Leave
    {
        toList,    ///< the list gets the keyboard back
        elsewhere  ///< the user has gone to another control
    };

    GridRows& Rows(Grid grid) { return grid == Grid::channels ? channels_ : parameters_; }
    const GridRows& Rows(Grid grid) const { return grid == Grid::channels ? channels_ : parameters_; }
    GridRows& Rows(Column column) { return Rows(GridOf(column)); }
    const GridRows& Rows(Column column) const { return Rows(GridOf(column)); }
    std::wstring& FieldText(Field field) { return fields_[static_cast<size_t>(field)]; }

    void FillChannels();
    void FillParameters();
    void NotifyAll();

    bool IsEditable(Column column, int32_t row) const;
    void CommitCellEdit(Leave leave);
    void CloseCellEdit(Leave leave);
    void MoveCell(bool backwards);
    std::wstring WithoutUnit(std::wstring text) const;
    std::wstring WithUnit(const std::wstring& text) const;
    void SetCell(Column column, int32_t row, std::wstring text);
    void SelectRow(GridRows& grid, int32_t row);
    void SyncGridColumns(const GridRows& grid) { view_.SelectionChanged(grid.grid); }
    void ShowLevelUnit(std::wstring_view unit);

    void InsertRow(GridRows& grid);
    void DeleteRow(GridRows& grid);
    void MoveRow(GridRows& grid, int32_t step);
    void RenumberGroup(const GridRows& grid);
    void ForgetParameter(int32_t parameter);
    void Mark(Column column, int32_t row, bool checked);
    void ToggleCheck(Column column, int32_t row);
    bool AllAreSet(Column column) const;
    void SortChannels(Column column, SortArrow arrow);
    void SetArrows(Column column, SortArrow arrow);
    void ClearArrows() { SetArrows(MP_USERFIELD, SortArrow::none); }

    double NumberIn(std::wstring_view text) const;
    bool CheckSettlingTime();
    bool CheckDefaultSymbolRate();
    bool CheckChannels();
    bool CheckNotes(const std::wstring& notes);
    void Reopen(Column column, int32_t row);
    void RefuseField(Field field);
    void WriteChannels(SetupDocument& document) const;
    void WriteSettings(SetupDocument& document) const;
    void WriteParameters(SetupDocument& document) const;

    SetupDocument& document_;
    EditorView& view_;
    MessageBoxes& messages_;
    const Locale& locale_;
    wchar_t decimalSeparator_;
    std::wstring_view tag_;
    Page page_ = Page::settings;
    std::array<int32_t, choiceCount> choices_{};
    std::array<std::wstring, fieldCount> fields_;
    std::array<bool, checkCount> checks_{};
    GridRows parameters_{Grid::parameters};
    GridRows channels_{Grid::channels};
    int32_t parameterCount_ = MP_LAST;  ///< numbers given away, those of deleted catalogue rows among them
    std::wstring levelUnit_;            ///< the one that the captions show
    CellEdit edit_;
    Control focus_ = Control::other;
    Column focusColumn_ = 0;
    bool notesFocused_ = false;
    bool notesTouched_ = false;
    bool updating_ = false;  ///< the editor itself is changing the notes
};

}  // namespace tvn2x
