#pragma once

#include <windows.h>

#include <array>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "editor/Editor.h"
#include "editor/win32/AccessKeys.h"
#include "editor/win32/Clipboard.h"
#include "editor/win32/Dpi.h"
#include "editor/win32/GridLook.h"
#include "editor/win32/GridPane.h"
#include "editor/win32/Handles.h"
#include "editor/win32/Layout.h"
#include "editor/win32/NotesField.h"
#include "editor/win32/Subclass.h"
#include "editor/win32/Theme.h"

namespace tvn2x {

/// Message boxes that belong to a window.
class OwnedMessages final : public MessageBoxes
{
public:
    void Show(std::wstring_view text, std::wstring_view title, MessageIcon icon) override;
    HWND owner = nullptr;
};

/// The window of the setup editor. It makes the controls, hands to the Editor what the user does with them, and shows
/// what the Editor says. Belongs to the thread that made it.
class frmFreqList final : private EditorView, private MessageFilter
{
public:
    frmFreqList(SetupDocument& document, const Locale& locale);
    frmFreqList(const frmFreqList&) = delete;
    frmFreqList& operator=(const frmFreqList&) = delete;

    /// Shows the dialog over a window (or none) until the user closes it; true for OK, with the document changed.
    /// Raises where the dialog cannot be made; the document is then as it was.
    bool ShowModal(HWND owner);

private:
    // EditorView
    void CellChanged(Column column, int32_t row) override { Pane(column).CellChanged(column, row); }
    void RowsInserted(Grid grid, int32_t, int32_t) override { Pane(grid).Refresh(); }
    void RowsRemoved(Grid grid, int32_t, int32_t) override { Pane(grid).Refresh(); }
    void GridChanged(Grid grid) override { Pane(grid).Refresh(); }
    void SelectionChanged(Grid grid) override { Pane(grid).SelectionChanged(); }
    void ArrowChanged(Column column) override { Pane(column).ArrowChanged(); }
    void CellEditorChanged() override;
    void PageChanged() override;
    void ChoiceChanged(Choice choice) override;
    void FieldChanged(Field field) override;
    void CheckChanged(Check check) override;
    void ButtonRolesChanged() override;
    void LoadNotes(const std::wstring& text, bool isRichText) override { notes_.Load(text, isRichText); }
    std::wstring NotesAsRichText() override { return notes_.AsRichText(); }
    void ProtectNotesSelection(bool protect) override { notes_.ProtectSelection(protect); }
    void ColourNotesSelection(Colour colour) override { notes_.ColourSelection(colour); }
    void Focus(Control control, Column column) override;
    void Beep() override { MessageBeep(MB_OK); }
    void Ask(const Form& form, const FormAnswers& take) override;
    bool Confirm(const std::wstring& question) override;
    std::optional<std::wstring> ClipboardText() override { return TextOnClipboard(dialog_.Get()); }
    bool PutOnClipboard(const std::wstring& text) override { return PutTextOnClipboard(dialog_.Get(), text); }
    void Close() override;

    // MessageFilter
    LRESULT OnMessage(const Subclass& control, UINT message, WPARAM wParam, LPARAM lParam) override;
    void OnException() noexcept override;

    // Making the controls.
    void Watch(HWND control, Control kind, int32_t number)
    {
        subclasses_.emplace_back(static_cast<MessageFilter&>(*this), control, kind, number);
    }
    void CreateDialogs(HWND owner, const std::wstring& title);
    void CreateControls();
    void CreateGridPage(Grid grid, Page page);
    void CreateNotesPage();
    HWND AddControl(HWND parent, const wchar_t* windowClass, std::wstring_view text, DWORD style, int id,
                    const Area& area, HWND label = nullptr);
    HWND AddButton(Page page, std::wstring_view text, DWORD style, int id, const Area& area);
    void AddChoice(Page page, Choice choice, int row);
    void AddField(Page page, Field field, int row);
    void AddHint(Page page, std::wstring_view text, int row);
    void Arrange();
    void PlaceOver(HWND owner);
    bool PlaceAsKept();
    void KeepPlaceOfWindow() const;
    void ScaleTo(int dpi);

    // What the user does.
    void Run();
    bool BeforeDialog(const MSG& message);
    bool OnAccessKey(wchar_t letter);
    bool OnPageKey(WPARAM key);
    bool OnUndoKey(WPARAM key, HWND focused);
    void AfterMessage();
    void ShowDefaultButton();
    void OnContextMenu(const Subclass& control, LPARAM lParam);
    bool IsClosedChoice(HWND control) const;
    static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    INT_PTR OnDialogMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void OnCommand(int id, int event, HWND control);
    INT_PTR OnNotify(HWND window, const NMHDR& notice);
    void OnColoursChanged();

    GridPane& Pane(Grid grid) { return grid == Grid::channels ? channels_ : parameters_; }
    GridPane& Pane(Column column) { return Pane(GridOf(column)); }
    HWND PageWindow(Page page) const { return pages_[static_cast<size_t>(page)]; }

    OwnedMessages messages_;
    Editor editor_;
    const std::wstring title_;
    const ThemeScope theme_;
    Font font_;
    GridLook look_;
    GridPane parameters_{editor_, look_, Grid::parameters};
    GridPane channels_{editor_, look_, Grid::channels};
    NotesField notes_{editor_};
    AccessKeys accessKeys_;
    std::array<Layout, pageCount> layouts_;
    Layout frameLayout_;
    std::deque<Subclass> subclasses_;
    std::array<HWND, pageCount> pages_{};
    HWND tabs_ = nullptr;
    HWND ok_ = nullptr;
    HWND notesWindow_ = nullptr;
    std::array<HWND, choiceCount> choices_{};
    std::array<HWND, fieldCount> fields_{};
    std::array<HWND, checkCount> checks_{};
    /// A button for a grid, which is grey where it can do nothing.
    struct RowButton
    {
        HWND window;
        RowCommand command;
        Grid grid;
    };
    std::vector<RowButton> rowButtons_;
    std::vector<HWND> pushButtons_;
    std::vector<HWND> controls_;  ///< all that show text in the dialog's font
    SIZE smallest_{};
    int dpi_ = 96;
    bool updating_ = false;  ///< the window itself is changing its controls
    bool closed_ = false;
    Dialog dialog_;  // goes first: its controls call what stands above
};

/// Edits a document in a dialog over the calling thread's active window. True for OK.
bool EditSetup(SetupDocument& document, const Locale& locale);

}  // namespace tvn2x
