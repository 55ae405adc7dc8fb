// The setup editor's window: its size and place, what a screen reader and the mouse find, colours, and its owner.

#include <initguid.h>

#include <richedit.h>

#include <cstdlib>
#include <random>

#include "SetupEditor.h"

namespace tvn2x::client {
namespace {

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
        EXPECT_TRUE(editor.Focus() == editor.CellEditor(Grid::channels));
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

/// Somebody who presses and clicks anywhere. TVN_RANDOM_ACTIONS says how often.
TEST_F(SetupEditor, RandomUserLeavesTheListsAndTheSetupAtOne)
{
    Put(Channels(20, {L"K7", 474, 6.9}));
    const char* const wanted = std::getenv("TVN_RANDOM_ACTIONS");
    const int actions = wanted ? std::atoi(wanted) : 400;
    std::mt19937 random(7);
    const auto pick = [&](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
    Channels shown;
    EXPECT_TRUE(Edit([&](EditorDriver& editor) {
        editor.ClickTab(Page::frequencies);
        editor.Alt(L'f');
        constexpr WPARAM keys[] = {VK_UP,   VK_DOWN,   VK_LEFT,   VK_RIGHT, VK_HOME, VK_END,    VK_PRIOR,
                                   VK_NEXT, VK_INSERT, VK_DELETE, VK_F2,    VK_TAB,  VK_RETURN, L'Z',
                                   L'Y',    L'A',      L'C',      L'V',     L'D'};
        for (int action = 0; action < actions && IsWindow(editor.dialog); ++action) {
            const bool isEditing = editor.Focus() == editor.CellEditor(Grid::channels);
            if (editor.MessageBoxWindow()) {
                editor.AnswerMessageBox();
            } else if (pick(4) == 0) {
                editor.ClickRow(static_cast<Column>(MP_USERFIELD + pick(3)), pick(8) - 1,
                                static_cast<unsigned>(pick(4)));
            } else if (pick(3) == 0) {
                editor.Type(std::wstring(1, L"12 .x"[pick(5)]));
            } else {
                const WPARAM key = keys[pick(static_cast<int>(std::size(keys)))];
                const bool isLetter = key >= L'A' && key <= L'Z';
                if (isEditing ? !isLetter : key != VK_RETURN) {  // Enter would be OK
                    editor.Press(key, isLetter ? control : static_cast<unsigned>(pick(2)));
                }
            }
            if (editor.CurrentPage() != Page::frequencies) {
                editor.Alt(L'f');
            }
        }
        while (editor.MessageBoxWindow()) {
            editor.AnswerMessageBox();
        }
        editor.ClickHeading(MP_FREQUENCY);
        const long rows = editor.Rows(MP_USERFIELD) - 1;
        std::wstring plan;
        for (long row = 0; row < rows; ++row) {
            plan += std::to_wstring(474 + row) + L"\t6.9\r\n";
        }
        editor.Alt(L'r');
        editor.Press(VK_HOME, control);
        editor.Press(VK_RIGHT);
        editor.PutOnClipboard(plan);
        editor.Press(L'V', control);
        for (int row = 0; row < rows; ++row) {
            const std::wstring name = editor.NameOf(MP_USERFIELD, row);
            const size_t first = name.find(L"User Field, ") + 12;
            shown.emplace_back(name.substr(first, name.rfind(L", ") - first), 474.0 + row, 6.9);
        }
        editor.Click(control_id::ok);
    }));
    EXPECT_EQ(Stored(), shown);
}

}  // namespace
}  // namespace tvn2x::client
