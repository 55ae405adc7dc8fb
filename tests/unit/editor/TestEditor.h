#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "editor/Commands.h"
#include "editor/Editor.h"
#include "support/FixedLocale.h"
#include "support/RecordingMessageBoxes.h"

namespace tvn2x {

/// A window that keeps a copy of what it shows by the notices alone, and moves the keyboard as it is told.
class FakeView : public EditorView
{
public:
    using Cells = std::vector<std::wstring>;

    void CellChanged(Column column, int32_t row) override
    {
        grids[GridOf(column)].at(static_cast<size_t>(row)) = Row(GridOf(column), row);
    }
    void RowsInserted(Grid grid, int32_t row, int32_t count) override
    {
        for (int32_t each = row; each < row + count; ++each) {
            grids[grid].insert(grids[grid].begin() + each, Row(grid, each));
        }
        SelectionChanged(grid);
    }
    void RowsRemoved(Grid grid, int32_t row, int32_t count) override
    {
        grids[grid].erase(grids[grid].begin() + row, grids[grid].begin() + row + count);
        SelectionChanged(grid);
    }
    void GridChanged(Grid grid) override
    {
        grids[grid] = Content(grid);
        SelectionChanged(grid);
    }
    void SelectionChanged(Grid grid) override { places[grid] = Place(grid); }
    void ArrowChanged(Column column) override { arrows[column] = editor->Arrow(column); }
    void CellEditorChanged() override { cellEditor = CellEditor(); }
    void PageChanged() override { page = editor->CurrentPage(); }
    void ChoiceChanged(Choice) override { ++shown; }
    void FieldChanged(Field) override {}
    void CheckChanged(Check) override { ++shown; }
    void ButtonRolesChanged() override { okIsDefault = editor->OkIsDefault(); }
    void LoadNotes(const std::wstring& text, bool isRichText) override
    {
        notes = (isRichText ? L"rich " : L"plain ") + text;
        editor->NotesChanged();
    }
    std::wstring NotesAsRichText() override { return richText; }
    void ProtectNotesSelection(bool protect) override
    {
        notesCalls += protect ? L"protect " : L"unprotect ";
        editor->NotesChanged();
        EXPECT_TRUE(editor->AllowNotesEdit(true));
    }
    void ColourNotesSelection(Colour colour) override { notesCalls += std::to_wstring(colour) + L" "; }
    void Focus(Control control, Column column) override
    {
        focus = {control, column};
        editor->FocusMoved(control, column);
    }
    void Beep() override { ++beeps; }
    void Ask(const Form& form, const FormAnswers& take) override
    {
        asked = form.title;
        for (const Form::Entry& entry : form.entries) {
            asked += L"|" + entry.text;
        }
        answerFault = answers.empty() ? L"given up" : take(answers);
    }
    bool Confirm(const std::wstring&) override { return ++confirmed == 0; }
    std::optional<std::wstring> ClipboardText() override { return clipboard; }
    bool PutOnClipboard(const std::wstring& text) override
    {
        if (clipboard) {
            clipboard = text;
        }
        return clipboard.has_value();
    }
    void Close() override { closed = true; }

    void ExpectWhatTheEditorHolds() const
    {
        for (const auto& [grid, cells] : grids) {
            EXPECT_EQ(Content(grid), cells);
        }
        for (const auto& [grid, place] : places) {
            EXPECT_EQ(Place(grid), place);
        }
        for (const auto& [column, arrow] : arrows) {
            EXPECT_EQ(editor->Arrow(column), arrow);
        }
        EXPECT_EQ(CellEditor(), cellEditor);
        EXPECT_EQ(editor->CurrentPage(), page);
        EXPECT_EQ(editor->OkIsDefault(), okIsDefault);
    }

    /// The rows that are selected, the current cell and the first row shown: "1 2 @2/10 from 0".
    std::wstring Place(Grid grid) const
    {
        std::wstring place;
        for (const int32_t row : editor->Selection(grid).Rows()) {
            place += std::to_wstring(row) + L" ";
        }
        return place + L"@" + std::to_wstring(editor->SelectedRow(grid)) + L"/" +
               std::to_wstring(editor->CurrentColumn(grid)) + L" from " + std::to_wstring(editor->TopRow(grid));
    }
    std::wstring CellEditor() const
    {
        const CellEdit& edit = editor->CurrentEdit();
        return edit.open ? std::to_wstring(edit.column) + L"/" + std::to_wstring(edit.row) : L"";
    }

    Cells Content(Grid grid) const
    {
        Cells cells;
        for (int32_t row = 0; row < editor->RowCount(grid); ++row) {
            cells.push_back(Row(grid, row));
        }
        return cells;
    }

    Editor* editor = nullptr;
    std::map<Grid, Cells> grids;
    std::map<Grid, std::wstring> places;
    std::map<Column, SortArrow> arrows;
    std::wstring cellEditor;
    Page page = Page::settings;
    std::pair<Control, Column> focus{Control::other, 0};
    std::wstring notes;
    std::wstring richText = L"{\\rtf1 new}";
    std::wstring notesCalls;
    std::optional<std::wstring> clipboard = L"";  ///< none: another program holds it
    std::vector<std::wstring> answers;            ///< to the next form; none to give it up
    std::wstring asked;                           ///< the last form: its title and what stood in it
    std::wstring answerFault;
    int shown = 0;  ///< choices and checks
    int confirmed = 0;
    int beeps = 0;
    bool okIsDefault = true;
    bool closed = false;

private:
    std::wstring Row(Grid grid, int32_t row) const
    {
        std::wstring cells;
        for (Column column = static_cast<Column>(grid); column < static_cast<Column>(grid) + 3; ++column) {
            cells += editor->CellText(column, row) + (editor->CellChecked(column, row) ? L"*|" : L"|");
        }
        return cells;
    }
};

/// An editor on a document, with hands to type.
class TestEditor
{
public:
    explicit TestEditor(std::wstring decimal = L".") : locale(std::move(decimal)) { view.editor = &editor; }
    /// Whatever was done, the window shows what the editor holds.
    ~TestEditor() { view.ExpectWhatTheEditorHolds(); }

    /// Channels "A", "B", ... at the frequencies given, 6.9 MSymb/s each.
    void Put(const std::vector<double>& frequencies)
    {
        document.ListSize(static_cast<int32_t>(frequencies.size()));
        for (int32_t channel = 1; channel <= document.ListSize(); ++channel) {
            document.Frequency(channel, frequencies[static_cast<size_t>(channel) - 1]);
            document.SymbolRate(channel, 6.9);
            document.UserField(channel, std::wstring(1, static_cast<wchar_t>(L'A' + channel - 1)));
        }
    }
    void Open()
    {
        document.dirty = false;
        editor.Activate();
    }

    /// Types into the open cell, whose text is selected; a key that the filter stops is lost.
    void Type(std::wstring_view keys)
    {
        std::wstring text;
        for (const wchar_t character : keys) {
            if (editor.CellChar(character)) {
                text += character;
            }
        }
        editor.CellTextChanged(text);
    }
    void Enter() { EXPECT_TRUE(editor.CellKeyDown(13, false)); }
    void Escape() { EXPECT_TRUE(editor.CellKeyDown(27, false)); }
    /// Puts a text into a cell.
    void Set(Column column, int32_t row, std::wstring_view text)
    {
        editor.BeginCellEdit(column, row, 0);
        editor.CellTextChanged(std::wstring(text));
        Enter();
    }

    /// A column from top to bottom: "A B -".
    std::wstring Texts(Column column) const
    {
        std::wstring texts;
        for (int32_t row = 0; row < editor.RowCount(GridOf(column)); ++row) {
            texts += (row == 0 ? L"" : L" ") + editor.CellText(column, row);
        }
        return texts;
    }
    /// The cell being edited: "10/0 text", "" where none is.
    std::wstring Editing() const
    {
        const CellEdit& edit = editor.CurrentEdit();
        return !edit.open ? L"" : std::to_wstring(edit.column) + L"/" + std::to_wstring(edit.row) + L" " + edit.text;
    }
    void Choose(Choice choice, std::wstring_view text)
    {
        editor.SelectItem(choice, FindListText(ItemsOf(choice), text));
    }

    SetupDocument document;
    FakeView view;
    RecordingMessageBoxes messages;
    FixedLocale locale;
    Editor editor{document, view, messages, locale};
};

}  // namespace tvn2x
