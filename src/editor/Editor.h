#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "editor/ChannelMarks.h"
#include "editor/Choices.h"
#include "editor/ClipboardTable.h"
#include "editor/Commands.h"
#include "editor/EditorView.h"
#include "editor/GridRows.h"
#include "editor/ListHistory.h"
#include "editor/PastedCells.h"
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

/// A check box, of which one may stand for many.
enum class CheckState
{
    off,
    on,
    mixed
};

/// The setup editor without its window: everything that it shows, decides, checks and writes.
///
/// The window makes one, calls Activate once when it is first shown and forwards what the user does. Rows count from 0,
/// keys and characters are those of the system's key messages. An event may raise std::bad_alloc or a RaisedError: the
/// document and the lists then are as they were, and the editor can go on. The document is written by a successful Ok
/// alone, in one step.
class Editor
{
public:
    Editor(SetupDocument& document, EditorView& view, MessageBoxes& messages, const Locale& locale);

    /// Fills every control from the document and sends the notices for all of them. The page "Settings" is shown.
    void Activate();

    // What the window shows.
    std::wstring_view Tag() const { return tag_; }  ///< "OK" or "Cancel" once the editor is closed, "" before
    Page CurrentPage() const { return page_; }
    int32_t SelectedItem(Choice choice) const { return controls_.choices[static_cast<size_t>(choice)]; }
    const std::wstring& Text(Field field) const { return controls_.fields[static_cast<size_t>(field)]; }
    bool Checked(Check check) const { return controls_.checks[static_cast<size_t>(check)]; }
    bool OkIsDefault() const { return !edit_.open && !notesFocused_; }
    bool CancelIsCancel() const { return !edit_.open; }
    int32_t RowCount(Grid grid) const { return Rows(grid).Count(); }
    int32_t SelectedRow(Grid grid) const { return Rows(grid).selection.Current(); }  ///< the current one
    const RowSelection& Selection(Grid grid) const { return Rows(grid).selection; }
    Column CurrentColumn(Grid grid) const { return Rows(grid).column; }
    int32_t TopRow(Grid grid) const { return Rows(grid).top; }  ///< of those that scroll
    int32_t PinnedRows(Grid grid) const { return Rows(grid).Pinned(); }
    const std::wstring& CellText(Column column, int32_t row) const { return Rows(column).Text(column, row); }
    bool CellChecked(Column column, int32_t row) const { return CheckOf(column, row) == CheckState::on; }
    CheckState CheckOf(Column column, int32_t row) const;  ///< the first row stands for all
    /// What deserves a second look in a row, "" where nothing does. Counts channels from 1.
    std::wstring RemarkOn(Grid grid, int32_t row);
    ChannelMark MarkOf(Grid grid, int32_t row);
    bool CanExecute(RowCommand command, Grid grid) const;
    size_t Changes() const;  ///< that Cancel would lose
    int32_t ItemData(Grid grid, int32_t row) const { return Rows(grid).At(row).itemData; }
    SortArrow Arrow(Column column) const { return Rows(column).arrows[Rows(column).Index(column)]; }
    const CellEdit& CurrentEdit() const { return edit_; }

    // Pages and controls.
    void SelectPage(Page page);
    void BackgroundClicked() { view_.Focus(Control::tabs, 0); }
    /// A control of the editor got the keyboard. Another window or a message box that takes it is no such event.
    void FocusMoved(Control control, Column column);
    void SelectItem(Choice choice, int32_t position);
    void TextChanged(Field field, std::wstring text) { FieldText(field) = std::move(text); }
    bool FieldChar(Field field, wchar_t character);  ///< false where the character must not be typed
    void SetCheck(Check check, bool checked) { controls_.checks[static_cast<size_t>(check)] = checked; }
    void Ok();
    void Cancel();
    void CloseSign();  ///< Cancel, after a question where more than one change would be lost

    // Grids. Modifiers are those of Commands.h.
    void SetVisibleRows(Grid grid, int32_t rows);  ///< whole rows that fit the list below its pinned ones
    /// The mouse goes down on a cell. True where the cell is clicked when it goes up again at the same place.
    bool CellPressed(Column column, int32_t row, unsigned modifiers);
    void CellClicked(Column column, int32_t row);                      ///< opens a text, changes a check mark
    void DraggedTo(Grid grid, int32_t row);                            ///< the mouse, from where it went down
    void MenuAsked(Column column, int32_t row);                        ///< by the mouse, on a cell
    void RowSelected(Column column, int32_t row);                      ///< and no other
    void Scrolled(Column column, int32_t topRow);                      ///< by scroll bar, wheel or keys
    bool ListKeyDown(Grid grid, int32_t pressed, unsigned modifiers);  ///< true where the key is taken
    bool ListChar(Column column, wchar_t character);                   ///< true where the character is taken
    void HeadingClicked(Column column);
    /// Alt and a heading's letter: its list gets the keyboard; where it has it already, the heading is clicked.
    void HeadingAccessKey(Column column);
    void Execute(RowCommand command, Grid grid);

    // The cell editor.
    void BeginCellEdit(Column column, int32_t row, int32_t topRow);
    bool CellKeyDown(int32_t key, bool shift);  ///< Enter, Escape, Tab, Up and Down; true where the key is taken
    bool CellChar(wchar_t character);           ///< false where the character must not be typed
    void CellTextChanged(std::wstring text) { edit_.text = std::move(text); }
    /// Pastes what is on the clipboard where it is more than a text: a range of cells from the open one on. False where
    /// it is a text.
    bool PasteOverCell();
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

    /// The rows that pasted ones go to.
    struct PasteTargets
    {
        std::vector<int32_t> over;  ///< rows that are written over
        int32_t insertAt = 0;       ///< where new rows come in, behind those
        int32_t inserted = 0;
    };

    GridRows& Rows(Grid grid) { return lists_.Of(grid); }
    const GridRows& Rows(Grid grid) const { return lists_.Of(grid); }
    GridRows& Rows(Column column) { return Rows(GridOf(column)); }
    const GridRows& Rows(Column column) const { return Rows(GridOf(column)); }
    std::wstring& FieldText(Field field) { return controls_.fields[static_cast<size_t>(field)]; }
    std::wstring_view LevelUnit() const;  ///< the one that the captions show

    void FillChannels();
    void FillParameters();
    void NotifyAll();

    /// Does something to the lists that undo takes back as a whole. Where it fails, the lists are as they were.
    void Change(Grid grid, const std::function<void()>& work);
    void ListsChanged();
    void Step(bool undo);

    bool IsEditable(Column column, int32_t row) const;
    void CommitCellEdit(Leave leave);
    void CloseCellEdit(Leave leave);
    void OpenCell(Column column, int32_t row, std::wstring text, bool isSelected);
    void MoveCell(bool backwards);
    void MoveCellBy(int32_t step);
    bool Takes(Column column, wchar_t character) const;
    std::wstring WithoutUnit(std::wstring text) const;
    std::wstring WithUnit(const std::wstring& text) const;
    void SetCell(Column column, int32_t row, std::wstring text);
    void SelectRow(GridRows& grid, int32_t row);
    void SelectRows(GridRows& grid, const std::vector<int32_t>& rows, int32_t current);
    void MoveToRow(GridRows& grid, int32_t row, bool extend);
    void MoveToColumn(GridRows& grid, Column column);
    void SyncGridColumns(const GridRows& grid) { view_.SelectionChanged(grid.grid); }
    void ShowLevelUnit(int32_t position);

    GridRow NewRow(const GridRows& grid) const;
    void InsertRow(GridRows& grid);
    void DeleteRows(GridRows& grid);
    void DuplicateRows(GridRows& grid);
    void MoveRows(GridRows& grid, int32_t step);
    void RenumberGroup(const GridRows& grid);
    void ForgetParameter(int32_t parameter);
    void Mark(Column column, int32_t row, bool checked);
    void MarkCoupled(Column column, int32_t row, bool checked);
    void ToggleChecks(Column column, const std::vector<int32_t>& rows);
    std::vector<int32_t> OrderBy(Column column, SortArrow arrow) const;
    void SortChannels(Column column, SortArrow arrow);
    void SetArrows(Column column, SortArrow arrow);
    void ClearArrows() { SetArrows(MP_USERFIELD, SortArrow::none); }

    bool Copy(const GridRows& grid);
    void Paste(GridRows& grid, bool asRows);
    void PasteTable(GridRows& grid, Table table, bool asRows);
    bool Fits(Column column, std::wstring& cell) const;
    static PasteTargets TargetsOf(const GridRows& grid, int32_t count, bool asRows);
    void PutRows(GridRows& grid, const PasteTargets& targets, const PastedCells& pasted);
    void PutCell(GridRow& row, Column column, const std::wstring& cell, bool isCoupled) const;
    void Refuse(const std::wstring& why);
    void FillDown(GridRows& grid);
    void AskForSeries(GridRows& grid);
    void FillSeries(GridRows& grid, const std::vector<int32_t>& rows, const std::wstring& first, double step);
    void AskForChannels();
    std::wstring AddChannels(const std::vector<std::wstring>& answers);
    void AskForText(GridRows& grid);
    bool FindNext(GridRows& grid);
    void AskForChannel();

    double NumberIn(std::wstring_view text) const;
    bool CheckSettlingTime();
    bool CheckDefaultSymbolRate();
    bool CheckChannels();
    int16_t PutOntoRaster(int32_t row);
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
    /// The controls that are no lists.
    struct Controls
    {
        std::array<int32_t, choiceCount> choices{};
        std::array<std::wstring, fieldCount> fields;
        std::array<bool, checkCount> checks{};
    };
    Controls controls_;
    Controls opened_;  ///< as they were at first
    Lists lists_;
    ListHistory history_;
    std::vector<ChannelMark> marks_;
    bool marksAreOld_ = true;
    std::wstring sought_;  ///< what was looked for last
    CellEdit edit_;
    Control focus_ = Control::other;
    Column focusColumn_ = 0;
    bool notesFocused_ = false;
    bool notesTouched_ = false;
    bool updating_ = false;  ///< the editor itself is changing the notes
};

}  // namespace tvn2x
