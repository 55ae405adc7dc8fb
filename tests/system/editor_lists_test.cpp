// The lists, the notes and the frame of the setup editor, as a person uses them who knows spreadsheets.

#include <windows.h>

#include <richedit.h>

#include <algorithm>

#include "SetupEditor.h"

namespace tvn2x::client {
namespace {

/// What a spreadsheet program would put there.
void PutOnClipboard(EditorDriver& editor, std::wstring_view text)
{
    editor.OnGuiThread([&] {
        const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, (text.size() + 1) * sizeof(wchar_t));
        auto* const place = static_cast<wchar_t*>(GlobalLock(memory));
        *std::copy(text.begin(), text.end(), place) = L'\0';
        GlobalUnlock(memory);
        ASSERT_TRUE(OpenClipboard(editor.dialog));
        EmptyClipboard();
        SetClipboardData(CF_UNICODETEXT, memory);
        CloseClipboard();
    });
}

TEST_F(SetupEditor, PlanIsPastedFilledUndoneAndSearchedByKeysAlone)
{
    EXPECT_TRUE(Edit([](EditorDriver& editor) {
        editor.Alt(L'f');
        editor.Alt(L'r');
        std::wstring plan = L"Channel\tFrequency\tSymbol rate\r\n";
        for (int row = 0; row < 36; ++row) {
            plan += L"K" + std::to_wstring(21 + row) + L"\t" + std::to_wstring(474 + 8 * row) + L"\t6.9\r\n";
        }
        PutOnClipboard(editor, plan);
        editor.Press(L'V', control);
        EXPECT_EQ(editor.Rows(MP_USERFIELD), 37);
        editor.Press(VK_HOME, control);
        editor.Press(VK_END);
        editor.Type(L"5");
        editor.Press(VK_RETURN);
        editor.Press(L'A', control);
        editor.Press(L'D', control);
        EXPECT_EQ(editor.NameOf(MP_SYMBOLRATE, 35), L"Row 36, Symbol Rate, 5, selected");
        editor.Press(L'Z', control);
        EXPECT_EQ(editor.NameOf(MP_SYMBOLRATE, 35), L"Row 36, Symbol Rate, 6.9, selected");
        editor.Press(L'F', control);
        editor.Type(L"k45");
        editor.Press(VK_RETURN);
        EXPECT_EQ(editor.SelectedRow(MP_USERFIELD), 24);
        editor.Press(VK_DELETE);
        editor.Click(control_id::ok);
    }));
    ASSERT_EQ(Stored().size(), 35u);
    EXPECT_EQ(Stored()[0], std::tuple(std::wstring(L"K21"), 474.0, 5.0));
    EXPECT_EQ(Stored()[34], std::tuple(std::wstring(L"K56"), 754.0, 6.9));
}

TEST_F(SetupEditor, MouseSelectsRowsAndACharacterOpensACell)
{
    Put(Channels(12, {L"x", 474, 6.9}));
    Edit([](EditorDriver& editor) {
        editor.ClickTab(Page::frequencies);
        editor.Mouse(editor.List(MP_FREQUENCY), editor.PointIn(MP_FREQUENCY, 1), editor.PointIn(MP_FREQUENCY, 3));
        EXPECT_FALSE(editor.IsEditing(Grid::channels)) << "dragging selects";
        editor.ClickRow(MP_FREQUENCY, 5, control);
        editor.Press(VK_DELETE);
        EXPECT_EQ(editor.Rows(MP_FREQUENCY), 9);
        editor.Press(VK_RIGHT);
        editor.Type(L"4");
        EXPECT_TRUE(editor.IsEditing(Grid::channels));
        editor.Type(L"7");
        editor.Press(VK_DOWN);
        EXPECT_EQ(editor.FocusText(), L"6.900");
        editor.Press(VK_ESCAPE);
        EXPECT_EQ(editor.NameOf(MP_SYMBOLRATE, 1), L"Row 2, Symbol Rate, 47, not selected");
        PutOnClipboard(editor, L"5\r\n6\r\n");
        editor.Press(VK_F2);
        SendMessageW(editor.Focus(), WM_PASTE, 0, 0);
        EXPECT_FALSE(editor.IsEditing(Grid::channels));
        EXPECT_EQ(editor.NameOf(MP_SYMBOLRATE, 3), L"Row 4, Symbol Rate, 6, selected");
        const HWND remove = editor.Find(control_id::Of(RowCommand::remove, Grid::channels));
        EXPECT_TRUE(IsWindowEnabled(remove));
        editor.Press(VK_END, control);
        EXPECT_FALSE(IsWindowEnabled(remove)) << "the placeholder cannot be deleted";
    });
}

TEST_F(SetupEditor, OneButtonIsTheDefaultAndTheWheelLeavesChoicesAlone)
{
    Edit([](EditorDriver& editor) {
        const auto defaults = [&] {
            const auto ids = {control_id::ok, control_id::cancel, control_id::Of(RowCommand::insert, Grid::channels),
                              control_id::Of(RowCommand::remove, Grid::channels)};
            return std::ranges::count_if(ids, [&](int id) {
                return (GetWindowLongPtrW(editor.Find(id), GWL_STYLE) & BS_TYPEMASK) == BS_DEFPUSHBUTTON;
            });
        };
        editor.Alt(L'u');
        PostMessageW(editor.Focus(), WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-WHEEL_DELTA)), 0);
        editor.Press(VK_SHIFT);
        EXPECT_EQ(defaults(), 1);
        editor.Alt(L'f');
        editor.Alt(L'i');
        EXPECT_EQ(defaults(), 1);
        EXPECT_EQ(editor.FocusId(), control_id::Of(RowCommand::insert, Grid::channels));
        for (int tab = 0; tab < 12; ++tab) {
            editor.Press(VK_TAB);
            EXPECT_EQ(defaults(), 1) << tab;
        }
        editor.ClickTab(Page::settings);
        EXPECT_EQ(SendMessageW(editor.Find(control_id::Of(Choice::levelUnit)), CB_GETCURSEL, 0, 0), 4) << "dBmV";
    });
}

TEST_F(SetupEditor, ScreenReaderReadsCellsAndActsOnThem)
{
    Put({{L"one", 474, 6.9}, {L"two", 474, 6.9}});
    Edit([](EditorDriver& editor) {
        editor.ClickTab(Page::frequencies);
        EXPECT_EQ(editor.NameOf(MP_FREQUENCY, 1), L"Row 2, Center Frequency, 474.0000000, not selected");
        EXPECT_EQ(editor.NameOf(MP_FREQUENCY, -1), L"Center Frequency");
        editor.Accessible(MP_FREQUENCY, [](IAccessible& grid) {
            const VARIANT cell = EditorDriver::Child(MP_FREQUENCY, 1);
            Bstr description, key;
            grid.get_accDescription(cell, description.Put());
            EXPECT_EQ(description.View(), L"Channel 1 has the same frequency.");
            grid.get_accKeyboardShortcut(EditorDriver::Child(MP_FREQUENCY, -1), key.Put());
            EXPECT_EQ(key.View(), L"Alt+F");
            VARIANT answer{};
            EXPECT_EQ(grid.get_accRole(cell, &answer), S_OK);
            EXPECT_EQ(answer.lVal, ROLE_SYSTEM_CELL);
            EXPECT_EQ(grid.get_accRole(EditorDriver::Child(MP_FREQUENCY, 9), &answer), E_INVALIDARG);
            EXPECT_EQ(grid.accSelect(SELFLAG_TAKEFOCUS | SELFLAG_TAKESELECTION, cell), S_OK);
            EXPECT_EQ(grid.get_accState(cell, &answer), S_OK);
            EXPECT_NE(answer.lVal & STATE_SYSTEM_SELECTED, 0);
            EXPECT_EQ(grid.get_accFocus(&answer), S_OK);
            EXPECT_EQ(answer.lVal, cell.lVal);
            EXPECT_EQ(grid.accNavigate(NAVDIR_DOWN, cell, &answer), S_OK);
            EXPECT_EQ(answer.lVal, EditorDriver::Child(MP_FREQUENCY, 2).lVal);
            EXPECT_EQ(grid.accDoDefaultAction(cell), S_OK);
        });
        EXPECT_TRUE(editor.IsEditing(Grid::channels));
    });
}

TEST_F(SetupEditor, WindowComesBackAsItWasLeftAndTheCloseSignAsks)
{
    Put({{L"one", 474, 6.9}, {L"two", 482, 6.9}});
    RECT left{};
    const auto leave = [&](EditorDriver& editor) {
        editor.ClickTab(Page::frequencies);
        const RECT frame = EditorDriver::PlaceOf(editor.dialog);
        SetWindowPos(editor.dialog, nullptr, frame.left - 20, frame.top - 10, frame.right - frame.left + 60,
                     frame.bottom - frame.top + 40, SWP_NOZORDER);
        left = EditorDriver::PlaceOf(editor.dialog);
        editor.Alt(L'r');
        editor.Press(VK_DELETE);
        editor.Type(L"x");
        PostMessageW(editor.dialog, WM_CLOSE, 0, 0);
        editor.Press(VK_SHIFT);
        EXPECT_TRUE(editor.AnswerMessageBox().starts_with(L"Setup|Close the editor")) << "Cancel is the default";
        EXPECT_TRUE(IsWindow(editor.dialog));
        editor.Click(control_id::cancel);
        EXPECT_FALSE(IsWindow(editor.dialog)) << "Cancel does not ask";
    };
    Edit(leave);
    person.remembers = true;
    Edit([&](EditorDriver& editor) {
        const RECT frame = EditorDriver::PlaceOf(editor.dialog);
        EXPECT_TRUE(EqualRect(&frame, &left));
        EXPECT_EQ(editor.CurrentPage(), Page::frequencies);
        SetWindowPos(editor.dialog, nullptr, -3000, 20, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    });
    Edit([&](EditorDriver& editor) {
        const RECT frame = EditorDriver::PlaceOf(editor.dialog);
        EXPECT_GE(frame.left, 0) << "a place off the screen is ignored";
        EXPECT_EQ(frame.right - frame.left, left.right - left.left);
    });
}

TEST_F(SetupEditor, MenuTipColumnsAndResolutionFollowTheMouseAndTheScreen)
{
    Put({{std::wstring(60, L'w'), 474, 6.9}, {L"two", 482, 6.9}});
    Edit([](EditorDriver& editor) {
        editor.ClickTab(Page::frequencies);
        editor.ClickRow(MP_USERFIELD, 1);
        editor.Press(VK_ESCAPE);
        const HWND list = editor.List(MP_USERFIELD);
        PostMessageW(list, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(list), -1);  // by its key
        editor.Press(VK_SHIFT);
        const HWND menu = FindWindowW(L"#32768", nullptr);
        constexpr UINT getMenu = 0x01E1;
        const auto entries = reinterpret_cast<HMENU>(SendMessageW(menu, getMenu, 0, 0));
        wchar_t entry[80] = L"";
        GetMenuStringW(entries, static_cast<UINT>(RowCommand::duplicate) + 1, entry, 80, MF_BYCOMMAND);
        EXPECT_STREQ(entry, L"Dup&licate\tCtrl+Shift+D");
        PostMessageW(menu, WM_KEYDOWN, VK_ESCAPE, 1);
        editor.Press(VK_SHIFT);
        EXPECT_EQ(FindWindowW(L"#32768", nullptr), nullptr);

        EXPECT_EQ(editor.TipOf(MP_USERFIELD, 0), std::wstring(60, L'w'));
        EXPECT_EQ(editor.TipOf(MP_USERFIELD, 1), L"");

        const RECT before = editor.CellRect(MP_USERFIELD, 1);
        const RECT heading = editor.CellRect(MP_USERFIELD, -1);
        const LONG y = (heading.top + heading.bottom) / 2;
        editor.Mouse(list, {heading.right, y}, {heading.right - 20, y});
        EXPECT_EQ(editor.CellRect(MP_USERFIELD, 1).right, before.right - 20);

        const RECT frame = EditorDriver::PlaceOf(editor.dialog);
        RECT larger{frame.left, frame.top, frame.left + (frame.right - frame.left) * 4 / 3,
                    frame.top + (frame.bottom - frame.top) * 4 / 3};
        constexpr UINT dpiChanged = 0x02E0;
        SendMessageW(editor.dialog, dpiChanged, MAKEWPARAM(120, 120), reinterpret_cast<LPARAM>(&larger));
        const RECT after = editor.CellRect(MP_USERFIELD, 1);
        EXPECT_NEAR(after.bottom - after.top, (before.bottom - before.top) * 1.25, 2);
        const RECT moved = EditorDriver::PlaceOf(editor.dialog);
        EXPECT_TRUE(EqualRect(&moved, &larger));
    });
}

TEST_F(SetupEditor, NotesKeepEveryLetterAndTextBeforeProtectedTextStaysFree)
{
    const std::wstring letters = L"St\u0159e\u0161n\u00ED \u0141\u00F3d\u017A \u03A9 \u0151 \u4E2D \U0001F600";
    setup->put_Notes(Bstr(letters + L"\nSite:").Get());
    const auto textOf = [](EditorDriver& editor) { return EditorDriver::TextOf(editor.Find(control_id::notes)); };
    EXPECT_TRUE(Edit([&](EditorDriver& editor) {
        editor.Alt(L'n');
        editor.Alt(L't');
        const HWND notes = editor.Focus();
        const auto length = static_cast<LONG>(letters.size());
        SendMessageW(notes, EM_SETSEL, static_cast<WPARAM>(length + 1), length + 6);
        editor.Alt(L'r');
        SendMessageW(notes, EM_SETSEL, static_cast<WPARAM>(length + 1), length + 1);
        editor.Type(L"ab");
        SendMessageW(notes, EM_SETSEL, static_cast<WPARAM>(length + 1), length + 2);
        editor.Press(VK_DELETE);
        EXPECT_THAT(textOf(editor), testing::HasSubstr(L"bSite:")) << "what was typed can be taken away";
        editor.Click(control_id::ok);
    }));
    for (const wchar_t each : Get(setup, &_clsSetup::get_Notes)) {
        ASSERT_LT(each, 0x80);
    }
    Edit([&](EditorDriver& editor) { EXPECT_THAT(textOf(editor), testing::StartsWith(letters)); });
}

}  // namespace
}  // namespace tvn2x::client
