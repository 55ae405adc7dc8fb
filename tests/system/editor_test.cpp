// The setup editor as a person uses it: the registered plug-in's own dialog, by keys and clicks.

#include <initguid.h>

#include <richedit.h>

#include "SetupEditor.h"

namespace tvn2x::client {
namespace {

TEST_F(SetupEditor, NewChannelIsTypedAndAHostThatHasUnmaskedExceptionsKeepsItsControlWords)
{
    HRESULT result = E_FAIL;
    VARIANT_BOOL accepted = VARIANT_FALSE;
    person.Work([&] { result = FromUnmaskedHost([&] { return setup.As<ISetup>()->Edit(&accepted); }); },
                [](EditorDriver& editor) {
                    editor.ClickTab(Page::notes);
                    editor.Alt(L'f');
                    editor.Alt(L'r');
                    editor.Type(L" S21");
                    editor.Press(VK_TAB);
                    EXPECT_EQ(editor.Rows(MP_FREQUENCY), 2) << "a new placeholder";
                    editor.Type(L"306x.25");
                    EXPECT_EQ(editor.FocusText(), L"306.25") << "a letter is no part of a number";
                    editor.Press(VK_TAB, shift);
                    EXPECT_EQ(editor.FocusText(), L"S21");
                    editor.Press(VK_RETURN);
                    editor.Press(VK_F2);
                    editor.Type(L"other");
                    editor.Press(VK_ESCAPE);
                    EXPECT_EQ(editor.Focus(), editor.List(MP_USERFIELD)) << "Escape leaves the cell before the dialog";
                    editor.Press(VK_RETURN);
                });
    EXPECT_EQ(result, S_OK);
    EXPECT_EQ(Stored(), (Channels{{L"S21", 306.25, 6.9}}));
}

TEST_F(SetupEditor, RefusedEntriesAreNamedAndGetTheKeyboardOnTheirPages)
{
    Put({{L"one", 474, 6.9}, {L"two", 482, 6.9}});
    Edit([](EditorDriver& editor) {
        editor.ClickTab(Page::application);
        editor.Alt(L'm');
        editor.Type(L"30a1");
        editor.ClickTab(Page::frequencies);
        editor.ClickRow(MP_FREQUENCY, 1);
        editor.Type(L"2");
        editor.Click(control_id::ok);
        EXPECT_TRUE(editor.AnswerMessageBox().starts_with(L"Setup|Maximum settling time is out of range"));
        EXPECT_EQ(editor.CurrentPage(), Page::application);
        EXPECT_EQ(editor.FocusId(), control_id::Of(Field::maxSettlingTime));
        editor.Alt(L'm');
        editor.Type(L"9");
        editor.Click(control_id::ok);
        EXPECT_TRUE(editor.AnswerMessageBox().starts_with(L"Setup|Frequency too low.\n\nPlease"));
        EXPECT_TRUE(editor.IsEditing(Grid::channels));
        EXPECT_EQ(editor.FocusText(), L"2");
    });
}

TEST_F(SetupEditor, HeadingsSortAndButtonsMoveByClickAndByKey)
{
    Put({{L"b", 482, 6.9}, {L"c", 474, 6.9}, {L"a", 490, 6.9}});
    EXPECT_TRUE(Edit([](EditorDriver& editor) {
        editor.ClickTab(Page::frequencies);
        editor.ClickHeading(MP_FREQUENCY);
        editor.ClickHeading(MP_FREQUENCY);
        editor.Alt(L'f');
        editor.Alt(L'r');
        editor.Alt(L'r');
        editor.Click(control_id::Of(RowCommand::moveDown, Grid::channels));
        editor.Alt(L'e');
        editor.Click(control_id::ok);
    }));
    EXPECT_EQ(Stored(), (Channels{{L"a", 490, 6.9}, {L"c", 474, 6.9}})) << "the same channel is moved and removed";
    EXPECT_EQ(Cell(setup.As<IMeasure>().Get(), 1, MP_FREQUENCY, 2), L"474.0000000") << "OK resets the results";
}

TEST_F(SetupEditor, ChecksAndChoicesArriveInTheSetup)
{
    setup->put_CoupleDisplayAndSave(VARIANT_TRUE);
    setup->put_Parameter(1, ::MP_FIRST, VARIANT_FALSE);
    setup->put_Parameter(2, ::MP_FIRST, VARIANT_FALSE);
    EXPECT_TRUE(Edit([](EditorDriver& editor) {
        editor.Alt(L's');
        editor.Alt(L'u');
        EXPECT_EQ(editor.FocusId(), control_id::Of(Choice::levelUnit));
        editor.Press(VK_HOME);
        editor.Press(VK_DOWN);
        editor.Press(VK_DOWN);
        editor.Alt(L'p');
        editor.ClickRow(displayColumn, 1);
        editor.Alt(L'o');
        editor.ClickRow(saveColumn, 1);
        editor.Click(control_id::ok);
    }));
    EXPECT_EQ(Get(setup, &_clsSetup::get_LevelUnit), L"dBm");
    EXPECT_TRUE(Parameter(1, ::MP_FIRST));
    EXPECT_FALSE(Parameter(2, ::MP_FIRST));
    EXPECT_EQ(Get(setup, &_clsSetup::get_CoupleDisplayAndSave), VARIANT_FALSE);
}

TEST_F(SetupEditor, AccessKeysWorkOnTheirOwnPageAndGoRoundWhereTwoAreAlike)
{
    Edit([](EditorDriver& editor) {
        editor.Alt(L'r');
        EXPECT_EQ(editor.FocusId(), control_id::Of(Choice::rolloffFactor));
        editor.Alt(L'r');
        EXPECT_EQ(editor.FocusId(), control_id::Of(Choice::reference));
        editor.Alt(L'r');
        EXPECT_EQ(editor.FocusId(), control_id::Of(Choice::rolloffFactor));
        editor.Alt(L'x');
        EXPECT_EQ(editor.CurrentPage(), Page::xAxis);
        editor.Alt(L'r');
        EXPECT_EQ(editor.FocusId(), control_id::Of(Choice::resultFile));
        editor.Press(VK_TAB, control);
        EXPECT_EQ(editor.CurrentPage(), Page::settings);
        editor.Press(VK_TAB, control | shift);
        EXPECT_EQ(editor.CurrentPage(), Page::xAxis);
        for (const int hidden :
             {control_id::Of(Choice::sawFilter), control_id::notes, control_id::List(Grid::channels)}) {
            EXPECT_FALSE(IsWindowEnabled(GetParent(editor.Find(hidden))));
        }
    });
}

TEST_F(SetupEditor, LargerWindowShowsMoreRowsAndASmallestSizeIsKept)
{
    Put(Channels(100, {L"x", 474, 6.9}));
    Edit([](EditorDriver& editor) {
        const auto size = [](HWND window) {
            const RECT place = EditorDriver::PlaceOf(window);
            return std::pair(place.right - place.left, place.bottom - place.top);
        };
        const auto resize = [&](LONG width, LONG height) {
            SetWindowPos(editor.dialog, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER);
        };
        const auto usual = size(editor.dialog);
        const auto list = size(editor.List(MP_FREQUENCY));
        resize(usual.first + 100, usual.second + 190);
        const RECT first = editor.CellRect(MP_FREQUENCY, 0);
        EXPECT_EQ(size(editor.List(MP_FREQUENCY)).second - list.second, 190);
        EXPECT_GT(size(editor.List(MP_FREQUENCY)).first, list.first);
        editor.ClickTab(Page::frequencies);
        editor.Alt(L'f');
        editor.Press(VK_END, control);
        const RECT last = editor.CellRect(MP_FREQUENCY, 100);
        EXPECT_EQ(last.bottom - last.top, first.bottom - first.top) << "the last row is wholly seen";
        const long top = editor.TopRow(MP_FREQUENCY);
        PostMessageW(editor.List(MP_FREQUENCY), WM_VSCROLL, SB_LINEUP, 0);
        editor.Press(VK_SHIFT);
        EXPECT_EQ(editor.TopRow(MP_FREQUENCY), top - 1);

        editor.ClickRow(MP_FREQUENCY, 98);
        editor.Type(L"47");
        resize(50, 50);
        EXPECT_EQ(size(editor.dialog), usual);
        editor.Type(L"4");
        EXPECT_EQ(editor.FocusText(), L"474") << "the open cell stays open, and in sight";
        const RECT field = EditorDriver::PlaceOf(editor.CellEditor(Grid::channels));
        const RECT around = EditorDriver::PlaceOf(editor.List(MP_FREQUENCY));
        EXPECT_GE(field.top, around.top);
        EXPECT_LE(field.bottom, around.bottom);
    });
}

TEST_F(SetupEditor, ProtectedNotesCannotBeEditedUntilTheyAreUnprotected)
{
    setup->put_Notes(Bstr(L"Site: Tester:").Get());
    EXPECT_TRUE(Edit([](EditorDriver& editor) {
        editor.Alt(L'n');
        editor.Alt(L't');
        const HWND notes = editor.Find(control_id::notes);
        EXPECT_EQ(editor.Focus(), notes);
        const auto select = [&](LONG from, LONG to) { SendMessageW(notes, EM_SETSEL, static_cast<WPARAM>(from), to); };
        select(0, 5);
        editor.Alt(L'r');
        EXPECT_EQ(editor.Focus(), notes) << "the button gives the keyboard back";
        select(2, 2);
        editor.Type(L"x");
        for (const WPARAM key : {VK_BACK, VK_DELETE, VK_RETURN}) {
            editor.Press(key);
        }
        select(5, 5);
        editor.Press(VK_BACK);
        select(0, 13);
        SendMessageW(notes, WM_CLEAR, 0, 0);
        SendMessageW(notes, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(L"gone"));
        EXPECT_EQ(EditorDriver::TextOf(notes), L"Site: Tester:");
        select(5, 5);
        editor.Type(L"?");
        EXPECT_EQ(EditorDriver::TextOf(notes), L"Site:? Tester:") << "behind it there is room for text";
        select(0, 5);
        editor.Alt(L'u');
        select(4, 5);
        editor.Press(VK_DELETE);
        EXPECT_EQ(EditorDriver::TextOf(notes), L"Site? Tester:");
        select(0, 4);
        editor.Alt(L'r');
        editor.Click(control_id::ok);
    }));
    EXPECT_FALSE(Edit([](EditorDriver& editor) {
        editor.ClickTab(Page::notes);
        editor.Alt(L't');
        const HWND field = editor.Focus();
        SendMessageW(field, EM_SETSEL, 1, 2);
        editor.Press(VK_DELETE);
        EXPECT_EQ(EditorDriver::TextOf(field).substr(0, 13), L"Site? Tester:") << "still protected when opened again";
        const LRESULT lines = SendMessageW(field, EM_GETLINECOUNT, 0, 0);
        editor.Press(VK_END, control);
        editor.Press(VK_RETURN);
        ASSERT_TRUE(IsWindow(editor.dialog)) << "Enter is a line and not OK";
        EXPECT_EQ(SendMessageW(field, EM_GETLINECOUNT, 0, 0), lines + 1);
        editor.Press(VK_ESCAPE);
        EXPECT_FALSE(IsWindow(editor.dialog));
    }));
}

TEST_F(SetupEditor, ProtectedNotesCanBeReadOnDarkWindowsAndKeepTheirColour)
{
    constexpr int element = COLOR_WINDOW;
    const COLORREF usual = GetSysColor(element);
    const COLORREF dark = RGB(0, 0, 0);
    SetSysColors(1, &element, &dark);
    setup->put_Notes(Bstr(L"{\\rtf1{\\colortbl;\\red0\\green0\\blue128;}{\\cf1\\protect Site:} x}").Get());
    EXPECT_TRUE(Edit([](EditorDriver& editor) {
        const HWND notes = editor.Find(control_id::notes);
        const auto colourAt = [&](LONG place) {
            CHARFORMAT2W format{};
            format.cbSize = sizeof format;
            editor.OnGuiThread([&] {
                SendMessageW(notes, EM_SETSEL, static_cast<WPARAM>(place), place + 1);
                SendMessageW(notes, EM_GETCHARFORMAT, SCF_SELECTION, reinterpret_cast<LPARAM>(&format));
            });
            return format.crTextColor;
        };
        EXPECT_GT(GetGValue(colourAt(0)), 150) << "pale";
        editor.Alt(L'n');
        editor.Alt(L't');
        SendMessageW(notes, EM_SETSEL, 6, 7);
        editor.Alt(L'r');
        EXPECT_EQ(colourAt(6), colourAt(0));
        editor.Click(control_id::ok);
    }));
    SetSysColors(1, &element, &usual);
    EXPECT_THAT(Get(setup, &_clsSetup::get_Notes), testing::HasSubstr(L"\\red0\\green0\\blue128;"));
    EXPECT_THAT(Get(setup, &_clsSetup::get_Notes), testing::Not(testing::HasSubstr(L"\\blue255;")));
}

TEST_F(SetupEditor, SecondEditIsRefusedAndAnObjectThatTheHostLetsGoOfOutlivesTheDialog)
{
    ISetup* const borrowed = setup.As<ISetup>().Get();
    bool accepted = false;
    const HRESULT result = person.Edit(borrowed, accepted, [&](EditorDriver& editor) {
        editor.OnGuiThread([&] {
            VARIANT_BOOL answer = VARIANT_TRUE;
            EXPECT_EQ(setup.As<ISetup>()->Edit(&answer), RuntimeError(5));
            EXPECT_EQ(LastError().description, L"The setup editor is open");
            EXPECT_EQ(setup.As<IMeasure>()->Measure(1, VARIANT{}, &answer), RuntimeError(5));
            setup = nullptr;
        });
        editor.Alt(L'f');
        editor.Click(control_id::ok);
    });
    EXPECT_EQ(result, S_OK);
    EXPECT_TRUE(accepted);
}

}  // namespace
}  // namespace tvn2x::client
