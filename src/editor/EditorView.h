#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "setup/catalogue/MP_TYPES.h"
#include "util/modMake3D.h"

namespace tvn2x {

/// The pages, in the order of their tabs.
enum class Page : int32_t
{
    settings,
    application,
    frequencies,
    parameters,
    notes,
    xAxis
};
constexpr int32_t pageCount = 6;

/// A grid is three lists side by side. Its number is that of its first column.
enum class Grid : int32_t
{
    parameters = 0,
    channels = 10
};

/// A list of a grid: 0 captions, 1 displayed, 2 saved; MP_USERFIELD, MP_FREQUENCY and MP_SYMBOLRATE of the channels.
using Column = int32_t;
constexpr Column captionColumn = 0;
constexpr Column displayColumn = 1;
constexpr Column saveColumn = 2;

constexpr Grid GridOf(Column column)
{
    return column >= MP_FIRSTFIXED ? Grid::channels : Grid::parameters;
}
constexpr bool IsCheckColumn(Column column)
{
    return column == displayColumn || column == saveColumn;
}

/// The drop-down lists.
enum class Choice : int32_t
{
    levelUnit,
    rolloffFactor,
    reference,
    inputRoute,
    sawFilter,
    orderOfQam,
    berIntegration,
    displayGrid,
    resultFile
};
constexpr int32_t choiceCount = 9;

/// The text fields of the page "Application".
enum class Field : int32_t
{
    defaultSymbolRate,
    maxSettlingTime
};
constexpr int32_t fieldCount = 2;

/// The check boxes.
enum class Check : int32_t
{
    couple,
    showBefore,
    showAfter
};
constexpr int32_t checkCount = 3;

/// What can be done with a grid. Its page has buttons for the first four.
enum class RowCommand : int32_t
{
    insert,
    remove,
    moveUp,
    moveDown,
    undo,
    redo,
    cut,
    copy,
    paste,
    pasteRows,   ///< as new rows
    duplicate,   ///< the selected rows, behind themselves
    fillDown,    ///< the first selected cell into those below it
    fillSeries,  ///< counts on from the first selected cell
    addChannels,
    find,
    findNext,
    goTo,
    selectAll,
    editCell,
    sort  ///< by the current column
};
constexpr int32_t rowButtonCount = 4;

/// What can have the keyboard, as far as it makes a difference.
enum class Control : int32_t
{
    other,              ///< any control that is not named here
    tabs,               ///< the tab control
    list,               ///< a list of a grid, by column
    cellEditor,         ///< the text field over a cell, by column
    defaultSymbolRate,  ///< a field
    maxSettlingTime,
    notes
};

/// A question to the user with fields to fill in.
struct Form
{
    /// A field, and what stands in it at first.
    struct Entry
    {
        std::wstring label;  ///< with "&" before its access key
        std::wstring text;
    };
    std::wstring title;
    std::wstring accept;  ///< what the button says that takes the answers
    std::vector<Entry> entries;
};

/// Takes the answers of a form, in the order of its entries. What is wrong with them, "" where nothing is.
using FormAnswers = std::function<std::wstring(const std::vector<std::wstring>&)>;

/// What the editor needs of a window. The window holds nothing of its own: after a notice it reads what it shows from
/// the Editor, and what the user does it hands to the Editor, which decides. A change that the window makes to one of
/// its controls because of a notice is no event and is not handed back.
class EditorView
{
public:
    virtual ~EditorView() = default;

    // The grids. All three lists of a grid have the same rows.
    virtual void CellChanged(Column column, int32_t row) = 0;  ///< text or check mark of one cell
    virtual void RowsInserted(Grid grid, int32_t row, int32_t count) = 0;
    virtual void RowsRemoved(Grid grid, int32_t row, int32_t count) = 0;
    virtual void GridChanged(Grid grid) = 0;       ///< rows and cells are other ones: read everything again
    virtual void SelectionChanged(Grid grid) = 0;  ///< SelectedRow or TopRow
    virtual void ArrowChanged(Column column) = 0;  ///< the sort arrow in a heading
    virtual void CellEditorChanged() = 0;          ///< opened over a cell, or closed

    // The other controls.
    virtual void PageChanged() = 0;                 ///< show the page, enable its controls, disable those of the others
    virtual void ChoiceChanged(Choice choice) = 0;  ///< items and selected item
    virtual void FieldChanged(Field field) = 0;
    virtual void CheckChanged(Check check) = 0;
    virtual void ButtonRolesChanged() = 0;  ///< OkIsDefault or CancelIsCancel

    // The notes, whose text only the window holds. Formatting concerns the selected text.
    virtual void LoadNotes(const std::wstring& text, bool isRichText) = 0;
    virtual std::wstring NotesAsRichText() = 0;
    virtual void ProtectNotesSelection(bool protect) = 0;
    virtual void ColourNotesSelection(Colour colour) = 0;

    /// Gives a control the keyboard; column matters for a list and for the cell editor. Its page is the current one.
    virtual void Focus(Control control, Column column) = 0;
    virtual void Beep() = 0;

    /// Shows a form until its answers are taken or the user gives it up. What is wrong with them is shown at once, and
    /// the form stays.
    virtual void Ask(const Form& form, const FormAnswers& take) = 0;
    /// A question that "OK" or "Cancel" answers; true for OK.
    virtual bool Confirm(const std::wstring& question) = 0;
    /// The text on the clipboard, "" where there is none; nothing where another program does not let go of it.
    virtual std::optional<std::wstring> ClipboardText() = 0;
    virtual bool PutOnClipboard(const std::wstring& text) = 0;

    /// Ends the modal show. The result is in Editor::Tag.
    virtual void Close() = 0;
};

}  // namespace tvn2x
