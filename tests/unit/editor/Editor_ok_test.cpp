#include <limits>

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

TEST(EditorOk, StopsAtTheFirstFaultOnItsPageAndField)
{
    TestEditor test;
    test.Open({100, 200});
    const auto before = Everything(test.document);
    test.Set(MP_FREQUENCY, 0, L"1500");
    test.Set(MP_SYMBOLRATE, 1, L"7.001");
    test.editor.TextChanged(Field::defaultSymbolRate, L"x");
    for (const wchar_t* const refused : {L"0.4", L"301", L""}) {
        test.editor.TextChanged(Field::maxSettlingTime, refused);
        test.editor.Ok();
        EXPECT_EQ(Page::application, test.editor.CurrentPage());
        EXPECT_EQ(Focused(Control::maxSettlingTime, 0), test.view.focus);
        EXPECT_EQ(
            L"Maximum settling time is out of range\r\n\r\n Please enter a value between 1 and 300, expressed in "
            L"seconds",
            test.messages.messages.back().text);
    }
    test.editor.TextChanged(Field::maxSettlingTime, L"300");
    test.editor.Ok();
    EXPECT_EQ(Focused(Control::defaultSymbolRate, 0), test.view.focus);
    EXPECT_EQ(0u, test.messages.messages.back().text.find(L"Symbol Rate too low."));
    test.editor.TextChanged(Field::defaultSymbolRate, L"6.9004");
    EXPECT_EQ(1, test.editor.SelectedRow(Grid::channels));
    int32_t selected = -1;
    test.messages.onShow = [&] { selected = test.editor.SelectedRow(Grid::channels); };
    test.editor.Ok();
    EXPECT_EQ(0, selected) << "the message comes with its row";
    test.messages.onShow = {};
    EXPECT_EQ(L"6.900", test.editor.Text(Field::defaultSymbolRate));
    EXPECT_EQ(Page::frequencies, test.editor.CurrentPage());
    EXPECT_EQ(L"11/0 1500", test.Editing());
    EXPECT_EQ(Focused(Control::cellEditor, MP_FREQUENCY), test.view.focus);
    test.Type(L"3.3");
    test.editor.Ok();
    EXPECT_EQ(L"3.2999999 200.0000000 -", test.Texts(MP_FREQUENCY));
    EXPECT_EQ(L"12/1 7.001", test.Editing());
    EXPECT_EQ(before, Everything(test.document));
    EXPECT_FALSE(test.view.closed);

    test.Type(L"7");
    test.editor.Ok();
    EXPECT_TRUE(test.view.closed);
    EXPECT_EQ(3.2999999, test.document.Frequency(1));
    EXPECT_EQ(7, test.document.SymbolRate(2));
    EXPECT_EQ(300, test.document.MaxSettlingTime());
    EXPECT_EQ(8u, test.messages.messages.size());  // the last time nothing is rounded any more
}

TEST(EditorOk, ChannelWithoutANumberIsTooLow)
{
    TestEditor test;
    test.document.Frequency(1, std::numeric_limits<double>::quiet_NaN());
    test.Open();
    test.editor.Ok();
    EXPECT_EQ(L"11/0 NaN", test.Editing());
    EXPECT_EQ(0u, test.messages.messages.at(0).text.find(L"Frequency too low.\n\nPlease"));
    test.Type(L"100");
    test.Set(MP_USERFIELD, 1, L"new");
    test.editor.Ok();
    EXPECT_EQ(L"11/1 -", test.Editing());
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
