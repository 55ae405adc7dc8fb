// The setup editor as a person uses it: the registered plug-in's own dialog, by keys and clicks.

#include <initguid.h>

#include <richedit.h>

#include <algorithm>
#include <vector>

#include "EditorDriver.h"
#include "editor/Choices.h"

namespace tvn2x::client {
namespace {

struct Channel
{
    std::wstring userField;
    double frequency;
    double symbolRate;

    bool operator==(const Channel&) const = default;
};

void PrintTo(const Channel& channel, std::ostream* out)
{
    *out << testing::PrintToString(channel.userField) << " " << channel.frequency << " " << channel.symbolRate;
}

class SetupEditor : public Apartment
{
protected:
    SetupEditor() : setup(Create<_clsSetup>(L"TVN2x.clsSetup")) { setup->put_ListSize(0); }

    /// True for OK.
    bool Edit(const EditorDriver::Deeds& deeds)
    {
        bool accepted = false;
        EXPECT_EQ(person.Edit(setup.As<ISetup>().Get(), accepted, deeds), S_OK);
        return accepted;
    }

    void Put(const std::vector<Channel>& channels)
    {
        setup->put_ListSize(static_cast<long>(channels.size()));
        for (long row = 0; row < static_cast<long>(channels.size()); ++row) {
            const Channel& channel = channels[static_cast<size_t>(row)];
            setup->put_UserField(row + 1, Bstr(channel.userField).Get());
            setup->put_Frequency(row + 1, channel.frequency);
            setup->put_SymbolRate(row + 1, channel.symbolRate);
        }
    }

    std::vector<Channel> Channels() const
    {
        long size = 0;
        setup->get_ListSize(&size);
        std::vector<Channel> channels;
        for (long row = 1; row <= size; ++row) {
            Channel channel{};
            Bstr userField;
            setup->get_UserField(row, userField.Put());
            channel.userField = userField.View();
            setup->get_Frequency(row, &channel.frequency);
            setup->get_SymbolRate(row, &channel.symbolRate);
            channels.push_back(channel);
        }
        return channels;
    }

    std::vector<std::wstring> UserFields() const
    {
        std::vector<std::wstring> fields;
        for (const Channel& channel : Channels())
            fields.push_back(channel.userField);
        return fields;
    }

    bool Parameter(long action, long parameter) const
    {
        VARIANT_BOOL value = VARIANT_FALSE;
        setup->get_Parameter(action, parameter, &value);
        return value != VARIANT_FALSE;
    }

    std::wstring Caption(long parameter) const
    {
        Bstr caption;
        setup->get_Caption(parameter, caption.Put());
        return std::wstring(caption.View());
    }

    bool IsDirty() const
    {
        VARIANT_BOOL dirty = VARIANT_FALSE;
        setup.As<ISetup>()->get_Dirty(&dirty);
        return dirty != VARIANT_FALSE;
    }

    ComPtr<_clsSetup> setup;
    EditorDriver person;
};

using Texts = std::vector<std::wstring>;
constexpr wchar_t tooLow[] =
    L"Setup|Frequency too low.\n\nPlease enter a value expressed in MHz between 3 and 1000.0000009, to a resolution of "
    L"0.1 Hz.";

TEST_F(SetupEditor, NewChannelIsTypedIntoThePlaceholderRowByKeyboardAlone)
{
    EXPECT_TRUE(Edit([](EditorDriver& editor) {
        editor.Alt(L'f');
        EXPECT_EQ(editor.CurrentPage(), Page::frequencies);
        editor.Alt(L'r');
        EXPECT_EQ(editor.Focus(), editor.List(MP_USERFIELD));
        editor.Type(L" ");
        EXPECT_TRUE(editor.IsEditing(Grid::channels));
        editor.Type(L"S21");
        editor.Press(VK_TAB);
        EXPECT_EQ(editor.Rows(MP_FREQUENCY), 2) << "a new placeholder";
        EXPECT_TRUE(editor.IsEditing(Grid::channels));
        EXPECT_EQ(editor.FocusText(), L"-");
        editor.Type(L"306x");
        EXPECT_EQ(editor.FocusText(), L"306") << "a letter is no part of a number";
        editor.Press(VK_TAB);
        EXPECT_EQ(editor.FocusText(), L"6.900") << "the default symbol rate";
        editor.Press(VK_RETURN);
        EXPECT_FALSE(editor.IsEditing(Grid::channels));
        EXPECT_EQ(editor.Focus(), editor.List(MP_SYMBOLRATE));
        editor.Press(VK_RETURN);
    }));
    EXPECT_EQ(Channels(), (std::vector<Channel>{{L"S21", 306, 6.9}}));
    EXPECT_TRUE(IsDirty());
}

TEST_F(SetupEditor, EscapeLeavesTheCellAndOnlyThenTheDialog)
{
    Put({{L"one", 474, 6.9}});
    EXPECT_FALSE(Edit([](EditorDriver& editor) {
        editor.ClickTab(Page::frequencies);
        editor.ClickRow(MP_USERFIELD, 0);
        editor.Type(L"two");
        EXPECT_EQ(editor.FocusText(), L"two");
        editor.Press(VK_ESCAPE);
        EXPECT_TRUE(IsWindow(editor.dialog));
        EXPECT_EQ(editor.Focus(), editor.List(MP_USERFIELD));
        editor.Press(VK_F2);
        EXPECT_EQ(editor.FocusText(), L"one");
        editor.Press(VK_ESCAPE);
        editor.Press(VK_ESCAPE);
        EXPECT_FALSE(IsWindow(editor.dialog));
    }));
    EXPECT_EQ(UserFields(), Texts{L"one"});
}

TEST_F(SetupEditor, TabWrapsRoundTheWholeGrid)
{
    Put({{L"one", 474, 6.9}, {L"two", 482, 5}});
    Edit([](EditorDriver& editor) {
        editor.ClickTab(Page::frequencies);
        editor.ClickRow(MP_USERFIELD, 0);
        Texts seen;
        for (int step = 0; step < 10; ++step) {
            seen.push_back(editor.FocusText());
            editor.Press(VK_TAB);
        }
        EXPECT_EQ(seen, (Texts{L"one", L"474.0000000", L"6.900", L"two", L"482.0000000", L"5.000", L"-", L"-", L"-",
                               L"one"}));
        editor.ClickRow(MP_USERFIELD, 0);
        editor.Press(VK_TAB, shift);
        EXPECT_EQ(editor.FocusText(), L"-");
        EXPECT_EQ(editor.SelectedRow(MP_SYMBOLRATE), 2);
        editor.Press(VK_TAB);
        EXPECT_EQ(editor.FocusText(), L"one");
    });
}

TEST_F(SetupEditor, RefusedFrequencyIsNamedAndItsCellOpenedAgain)
{
    Put({{L"one", 474, 6.9}, {L"two", 482, 6.9}});
    EXPECT_TRUE(Edit([](EditorDriver& editor) {
        editor.ClickTab(Page::frequencies);
        editor.ClickRow(MP_FREQUENCY, 1);
        editor.Type(L"2");
        editor.ClickTab(Page::notes);
        editor.Click(control_id::ok);
        EXPECT_EQ(editor.AnswerMessageBox(), tooLow);
        EXPECT_EQ(editor.CurrentPage(), Page::frequencies);
        EXPECT_TRUE(editor.IsEditing(Grid::channels));
        EXPECT_EQ(editor.FocusText(), L"2");
        EXPECT_EQ(editor.SelectedRow(MP_FREQUENCY), 1);
        editor.Type(L"3.3");
        editor.Click(control_id::ok);
        EXPECT_EQ(editor.AnswerMessageBox(), L"Setup|Frequency rounded to 3.2999999 MHz.");
        EXPECT_FALSE(IsWindow(editor.dialog));
    }));
    EXPECT_DOUBLE_EQ(Channels().at(1).frequency, 3.2999999);
}

TEST_F(SetupEditor, RefusedSettlingTimeGetsTheKeyboardOnItsPage)
{
    Edit([](EditorDriver& editor) {
        editor.ClickTab(Page::application);
        editor.Alt(L'm');
        editor.Type(L"30a1");
        EXPECT_EQ(editor.FocusText(), L"301");
        editor.ClickTab(Page::settings);
        editor.Click(control_id::ok);
        EXPECT_NE(editor.AnswerMessageBox().find(L"Maximum settling time is out of range"), std::wstring::npos);
        EXPECT_EQ(editor.CurrentPage(), Page::application);
        EXPECT_EQ(editor.FocusId(), control_id::Of(Field::maxSettlingTime));
    });
}

TEST_F(SetupEditor, SecondClickOnAHeadingReversesTheOrder)
{
    Put({{L"b", 482, 6.9}, {L"c", 474, 6.9}, {L"a", 490, 6.9}});
    for (const Texts& expected : {Texts{L"c", L"b", L"a"}, Texts{L"a", L"b", L"c"}}) {
        EXPECT_TRUE(Edit([&](EditorDriver& editor) {
            editor.ClickTab(Page::frequencies);
            editor.Click(control_id::Heading(MP_FREQUENCY));
            if (expected.front() == L"a")
                editor.Click(control_id::Heading(MP_FREQUENCY));
            editor.Click(control_id::ok);
        }));
        EXPECT_EQ(UserFields(), expected);
    }
    EXPECT_TRUE(Edit([](EditorDriver& editor) {
        editor.Alt(L'f');
        editor.Alt(L'r');
        editor.Alt(L'r');
        editor.Click(control_id::Of(RowCommand::moveDown, Grid::channels));
        editor.Alt(L'e');
        editor.Click(control_id::ok);
    })) << "by keys, and the page's buttons";
    EXPECT_EQ(UserFields(), (Texts{L"b", L"c"}));
}

TEST_F(SetupEditor, CoupledListsAreCheckedTogetherAndUncoupledOnesAlone)
{
    setup->put_CoupleDisplayAndSave(VARIANT_TRUE);
    setup->put_Parameter(1, MP_FIRST, VARIANT_FALSE);
    setup->put_Parameter(2, MP_FIRST, VARIANT_FALSE);
    EXPECT_TRUE(Edit([](EditorDriver& editor) {
        editor.ClickTab(Page::parameters);
        editor.ClickRow(displayColumn, 1);
        editor.Click(control_id::ok);
    }));
    EXPECT_TRUE(Parameter(1, MP_FIRST));
    EXPECT_TRUE(Parameter(2, MP_FIRST));
    EXPECT_TRUE(Edit([](EditorDriver& editor) {
        editor.Alt(L'p');
        editor.Alt(L'o');
        editor.ClickRow(saveColumn, 1);
        editor.Click(control_id::ok);
    }));
    EXPECT_TRUE(Parameter(1, MP_FIRST));
    EXPECT_FALSE(Parameter(2, MP_FIRST));
    VARIANT_BOOL coupled = VARIANT_TRUE;
    setup->get_CoupleDisplayAndSave(&coupled);
    EXPECT_EQ(coupled, VARIANT_FALSE);
}

TEST_F(SetupEditor, CaptionsFollowTheLevelUnitThatIsChosen)
{
    EXPECT_TRUE(Edit([](EditorDriver& editor) {
        editor.Alt(L's');
        editor.Alt(L'u');
        EXPECT_EQ(editor.FocusId(), control_id::Of(Choice::levelUnit));
        editor.Press(VK_HOME);
        editor.Press(VK_DOWN);
        editor.Press(VK_DOWN);
        editor.Click(control_id::ok);
    }));
    EXPECT_EQ(Caption(MP_RFLEV).substr(Caption(MP_RFLEV).find(L'(')), L"(dBm)");
    Bstr unit;
    setup->get_LevelUnit(unit.Put());
    EXPECT_EQ(unit.View(), L"dBm");
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
        for (const Page page : {Page::settings, Page::frequencies, Page::notes})
            EXPECT_FALSE(
                IsWindowEnabled(GetParent(editor.Find(page == Page::settings ? control_id::Of(Choice::sawFilter)
                                                      : page == Page::notes  ? control_id::notes
                                                                             : control_id::List(10)))));
    });
}

TEST_F(SetupEditor, ListsScrollAndSelectInStep)
{
    std::vector<Channel> channels(5000, {L"x", 474, 6.9});
    Put(channels);
    Edit([](EditorDriver& editor) {
        editor.ClickTab(Page::frequencies);
        EXPECT_EQ(editor.Rows(MP_USERFIELD), 5001);
        editor.Alt(L'f');
        editor.Press(VK_END);
        for (const Column column : {MP_USERFIELD, MP_FREQUENCY, MP_SYMBOLRATE})
            EXPECT_EQ(editor.SelectedRow(column), 5000) << column;
        const long last = editor.TopRow(MP_FREQUENCY);
        EXPECT_GT(last, 4900);
        PostMessageW(editor.List(MP_SYMBOLRATE), WM_VSCROLL, SB_LINEUP, 0);
        editor.Press(VK_SHIFT);
        for (const Column column : {MP_USERFIELD, MP_FREQUENCY, MP_SYMBOLRATE})
            EXPECT_EQ(editor.TopRow(column), last - 1) << column;
    });
}

TEST_F(SetupEditor, LargerWindowShowsMoreRowsAndASmallestSizeIsKept)
{
    Put(std::vector<Channel>(100, {L"x", 474, 6.9}));
    Edit([](EditorDriver& editor) {
        const auto size = [&](HWND window) {
            RECT area{};
            GetWindowRect(window, &area);
            return SIZE{area.right - area.left, area.bottom - area.top};
        };
        const auto resize = [&](SIZE to) {
            SetWindowPos(editor.dialog, nullptr, 0, 0, to.cx, to.cy, SWP_NOMOVE | SWP_NOZORDER);
        };
        const SIZE usual = size(editor.dialog);
        const SIZE list = size(editor.List(MP_FREQUENCY));
        const SIZE button = size(editor.Find(control_id::ok));
        resize({usual.cx + 100, usual.cy + 90});
        const auto rowHeight = static_cast<LONG>(SendMessageW(editor.List(MP_FREQUENCY), LB_GETITEMHEIGHT, 0, 0));
        const LONG growth = size(editor.List(MP_FREQUENCY)).cy - list.cy;
        EXPECT_EQ(growth % rowHeight, 0) << "whole rows";
        EXPECT_NEAR(growth, 90, rowHeight);
        EXPECT_GT(size(editor.List(MP_FREQUENCY)).cx, list.cx);
        EXPECT_EQ(size(editor.Find(control_id::ok)).cx, button.cx);
        editor.ClickTab(Page::frequencies);
        editor.Alt(L'f');
        editor.Press(VK_END);
        EXPECT_EQ(editor.TopRow(MP_USERFIELD), editor.TopRow(MP_SYMBOLRATE));
        RECT cell{};
        SendMessageW(editor.List(MP_FREQUENCY), LB_GETITEMRECT, 100, reinterpret_cast<LPARAM>(&cell));
        EXPECT_LE(cell.bottom, list.cy + growth) << "the last row is wholly seen";
        resize({50, 50});
        EXPECT_EQ(size(editor.dialog).cx, usual.cx);
        EXPECT_EQ(size(editor.dialog).cy, usual.cy);
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
        editor.Press(VK_BACK);
        editor.Press(VK_DELETE);
        editor.Press(VK_RETURN);
        select(5, 5);
        editor.Press(VK_BACK);
        select(0, 13);
        SendMessageW(notes, WM_CLEAR, 0, 0);
        SendMessageW(notes, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(L"gone"));
        EXPECT_EQ(EditorDriver::TextOf(notes), L"Site: Tester:");
        select(5, 5);
        editor.Type(L"!");
        editor.Press(VK_BACK);
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
    Bstr notes;
    setup->get_Notes(notes.Put());
    EXPECT_TRUE(notes.View().starts_with(L"{\\rtf")) << testing::PrintToString(std::wstring(notes.View()));
    EXPECT_NE(notes.View().find(L"\\protect"), std::wstring_view::npos);
    Edit([](EditorDriver& editor) {
        const HWND field = editor.Find(control_id::notes);
        editor.ClickTab(Page::notes);
        editor.Alt(L't');
        SendMessageW(field, EM_SETSEL, 1, 2);
        editor.Press(VK_DELETE);
        EXPECT_EQ(EditorDriver::TextOf(field).substr(0, 13), L"Site? Tester:") << "still protected when opened again";
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
    Bstr notes;
    setup->get_Notes(notes.Put());
    EXPECT_NE(notes.View().find(L"\\red0\\green0\\blue128;"), std::wstring_view::npos);
    EXPECT_EQ(notes.View().find(L"\\blue255;"), std::wstring_view::npos);
}

TEST_F(SetupEditor, EnterInTheNotesIsALineAndNotOk)
{
    EXPECT_FALSE(Edit([](EditorDriver& editor) {
        editor.Alt(L'n');
        editor.Alt(L't');
        editor.Type(L"a");
        editor.Press(VK_RETURN);
        ASSERT_TRUE(IsWindow(editor.dialog));
        editor.Type(L"b");
        EXPECT_EQ(SendMessageW(editor.Focus(), EM_GETLINECOUNT, 0, 0), 2);
        editor.Press(VK_ESCAPE);
        EXPECT_FALSE(IsWindow(editor.dialog));
    }));
}

TEST_F(SetupEditor, CancelWritesNothingAndOkResetsTheResults)
{
    Put({{L"one", 474, 6.9}});
    const auto measure = setup.As<IMeasure>();
    ASSERT_EQ(measure->ResetMeasurement(0), S_OK);
    const bool dirty = IsDirty();
    EXPECT_FALSE(Edit([](EditorDriver& editor) {
        editor.Alt(L'f');
        editor.Click(control_id::Of(RowCommand::remove, Grid::channels));
        EXPECT_EQ(editor.Rows(MP_FREQUENCY), 1);
        editor.Click(control_id::cancel);
    }));
    EXPECT_EQ(UserFields(), Texts{L"one"});
    EXPECT_EQ(IsDirty(), dirty);
    EXPECT_TRUE(Edit([](EditorDriver& editor) {
        editor.Alt(L'f');
        editor.Click(control_id::Of(RowCommand::insert, Grid::channels));
        editor.ClickRow(MP_FREQUENCY, 0);
        editor.Type(L"482");
        editor.Click(control_id::ok);
    }));
    EXPECT_EQ(Cell(measure.Get(), 1, MP_FREQUENCY, 2), L"474.0000000") << "the table has the new list";
}

TEST_F(SetupEditor, SecondEditAndMeasurementAreRefusedWhileItIsOpen)
{
    EXPECT_FALSE(Edit([&](EditorDriver& editor) {
        editor.OnGuiThread([&] {
            VARIANT_BOOL answer = VARIANT_TRUE;
            EXPECT_EQ(setup.As<ISetup>()->Edit(&answer), RuntimeError(5));
            EXPECT_EQ(LastError().description, L"The setup editor is open");
            EXPECT_EQ(setup.As<IMeasure>()->Measure(1, VARIANT{}, &answer), RuntimeError(5));
        });
    }));
}

TEST_F(SetupEditor, ObjectThatTheHostLetsGoOfOutlivesTheDialog)
{
    ISetup* const borrowed = setup.As<ISetup>().Get();
    bool accepted = false;
    const HRESULT result = person.Edit(borrowed, accepted, [&](EditorDriver& editor) {
        editor.OnGuiThread([&] { setup = nullptr; });
        editor.Alt(L'f');
        editor.Click(control_id::ok);
    });
    EXPECT_EQ(result, S_OK);
    EXPECT_TRUE(accepted);
}

}  // namespace
}  // namespace tvn2x::client
