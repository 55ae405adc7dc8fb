#include "TestEditor.h"
#include "support/DocumentParts.h"

namespace tvn2x {
namespace {

using Focused = std::pair<Control, Column>;

TEST(EditorOk, WithoutAChangeLeavesTheDocumentClean)
{
    for (const wchar_t* const separator : {L".", L","}) {
        TestEditor test(separator);
        test.document.LevelUnit(L"dB\u00B5V");
        test.document.Notes(L"plain\nnotes");
        test.Open({113, 474.25, 858.1234567, 999.9999999});
        const auto before = Everything(test.document);
        EXPECT_EQ(checkCount + choiceCount, test.view.shown);
        test.editor.SelectPage(Page::notes);
        test.editor.FocusMoved(Control::notes, 0);
        test.editor.Ok();
        EXPECT_EQ(L"OK", test.editor.Tag());
        EXPECT_TRUE(test.view.closed);
        EXPECT_TRUE(test.messages.messages.empty());
        EXPECT_EQ(before, Everything(test.document));
        EXPECT_FALSE(test.document.dirty);
    }
}

TEST(EditorOk, CancelLeavesTheDocumentAlone)
{
    TestEditor test;
    test.Open({100});
    const auto before = Everything(test.document);
    test.Set(MP_FREQUENCY, 0, L"200");
    test.Choose(Choice::levelUnit, L"mV");
    test.editor.Execute(RowCommand::remove, Grid::parameters);
    test.editor.Cancel();
    EXPECT_EQ(L"Cancel", test.editor.Tag());
    EXPECT_TRUE(test.view.closed);
    EXPECT_EQ(before, Everything(test.document));
}

TEST(EditorOk, SettingsThatAreNoChoiceBecomeTheFirst)
{
    TestEditor test;
    test.document.LevelUnit(L"dBuV");
    test.document.SawBw(3);
    test.document.Zin(-1);
    test.document.ReferenceSource(7);
    test.document.XAxis(1, 9);
    test.document.OrderOfQam(128);
    test.Open();
    EXPECT_EQ(L"RF Level (dBpW)", test.editor.CellText(captionColumn, test.RowOf(MP_RFLEV)));
    test.Choose(Choice::rolloffFactor, L"0.18");
    test.Choose(Choice::berIntegration, L"1000");
    test.editor.SelectItem(Choice::orderOfQam, 99);
    test.editor.Ok();
    EXPECT_EQ(std::tuple(L"dBpW", 0, 1000, 0, 128, 18, 2, 10, true, 2, 0, L"", false, false),
              SettingsOf(test.document));
    EXPECT_EQ(L"RF Level", test.document.StoredCaption(MP_RFLEV));
    EXPECT_TRUE(test.document.dirty);
}

TEST(EditorNotes, KeepTheirKindUntilTheyAreTouched)
{
    TestEditor test;
    test.document.Notes(L"{\\rtf1\\ansi old}");
    test.Open();
    EXPECT_EQ(L"rich {\\rtf1\\ansi old}", test.view.notes);
    test.view.richText = std::wstring(L"{\\rtf1\nnew\r\n\r}\0", 14);
    test.editor.NotesChanged();
    test.editor.Ok();
    EXPECT_EQ(L"{\\rtf1\r\nnew\r\n\r\n}", test.document.Notes());
    EXPECT_TRUE(test.document.dirty);
}

TEST(EditorNotes, ProtectedTextIsColouredAndStaysAsItIsAndEnterIsALine)
{
    TestEditor test;
    test.Open();
    EXPECT_EQ(L"plain ", test.view.notes);
    test.editor.SelectPage(Page::notes);
    test.editor.NotesButton(true);
    test.editor.NotesButton(false);
    EXPECT_EQ(L"unprotect 8388608 protect unprotect 0 ", test.view.notesCalls);
    EXPECT_EQ(Focused(Control::notes, 0), test.view.focus);
    EXPECT_FALSE(test.editor.OkIsDefault());
    EXPECT_FALSE(test.editor.AllowNotesEdit(true));
    EXPECT_EQ(1, test.view.beeps);
    EXPECT_TRUE(test.editor.AllowNotesEdit(false));
    test.editor.SelectPage(Page::settings);
    EXPECT_TRUE(test.editor.OkIsDefault());
    test.editor.Ok();
    EXPECT_EQ(L"{\\rtf1 new}", test.document.Notes());
}

TEST(EditorNotes, TooLongToBeSavedAreRefusedWithoutLosingThem)
{
    TestEditor test;
    test.Open();
    test.view.richText = std::wstring(32767, L'x');
    test.editor.NotesChanged();
    test.view.richText += L"x";
    test.editor.Ok();
    EXPECT_EQ(Page::notes, test.editor.CurrentPage());
    EXPECT_EQ(Focused(Control::notes, 0), test.view.focus);
    EXPECT_NE(std::wstring::npos, test.messages.messages.at(0).text.find(L"32768 characters"));
    EXPECT_EQ(L"", test.editor.Tag());
    test.view.richText.pop_back();
    test.editor.Ok();
    EXPECT_EQ(L"OK", test.editor.Tag());
    EXPECT_EQ(test.view.richText, test.document.Notes());
}

}  // namespace
}  // namespace tvn2x
