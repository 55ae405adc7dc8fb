#include "TestEditor.h"

namespace tvn2x {
namespace {

using Focused = std::pair<Control, Column>;

TEST(EditorCells, OpenWithTheirTextSelectedAndTakeEnterAndEscapeFromTheButtons)
{
    TestEditor test;
    test.Open({100, 200});
    EXPECT_TRUE(test.editor.OkIsDefault());
    test.editor.CellClicked(MP_FREQUENCY, 1);
    EXPECT_EQ(L"11/1 200.0000000", test.Editing());
    EXPECT_EQ(0, test.editor.CurrentEdit().selectionStart);
    EXPECT_EQ(11, test.editor.CurrentEdit().selectionLength);
    EXPECT_EQ(1, test.editor.SelectedRow(Grid::channels));
    EXPECT_EQ(Focused(Control::cellEditor, MP_FREQUENCY), test.view.focus);
    EXPECT_FALSE(test.editor.OkIsDefault());
    EXPECT_FALSE(test.editor.CancelIsCancel());

    test.Type(L"300");
    test.Escape();
    EXPECT_EQ(L"100.0000000 200.0000000 -", test.Texts(MP_FREQUENCY));
    EXPECT_EQ(Focused(Control::list, MP_FREQUENCY), test.view.focus);
    EXPECT_TRUE(test.editor.OkIsDefault());
    EXPECT_TRUE(test.editor.CancelIsCancel());
}

TEST(EditorCells, CommitWhereverTheUserGoes)
{
    TestEditor test;
    test.Open({100, 200});
    const std::function<void()> ways[] = {
        [&] { test.Enter(); },
        [&] {
            test.view.Focus(Control::other, 0);
            EXPECT_EQ(Focused(Control::other, 0), test.view.focus) << "the keyboard stays there";
        },
        [&] { test.editor.CellClicked(MP_USERFIELD, 1); },
        [&] { test.editor.RowSelected(MP_USERFIELD, 1); },
        [&] { test.editor.MenuAsked(MP_USERFIELD, 1); },
        [&] { test.editor.SelectPage(Page::notes); },
        [&] { test.editor.Scrolled(MP_SYMBOLRATE, 1); },
        [&] { test.editor.HeadingClicked(MP_FREQUENCY); },
        [&] { test.editor.Execute(RowCommand::moveUp, Grid::channels); },
    };
    test.editor.SetVisibleRows(Grid::channels, 1);
    int typed = 0;
    for (const auto& leave : ways) {
        test.editor.SelectPage(Page::frequencies);
        test.editor.CellClicked(MP_USERFIELD, 0);
        const std::wstring text = L"text" + std::to_wstring(typed++);
        test.Type(text);
        leave();
        EXPECT_EQ(text, test.editor.CellText(MP_USERFIELD, 0));
    }
}

TEST(EditorCells, FillAChannelFromThePlaceholderByKeyboardAlone)
{
    TestEditor test;
    test.Open({});
    test.editor.TextChanged(Field::defaultSymbolRate, L"6.875");
    test.editor.HeadingAccessKey(MP_USERFIELD);
    EXPECT_EQ(Focused(Control::list, MP_USERFIELD), test.view.focus);
    EXPECT_TRUE(test.editor.ListChar(MP_USERFIELD, L' '));
    EXPECT_EQ(L"10/0 -", test.Editing());
    test.Type(L"ZDF HD");
    test.Tab();
    EXPECT_EQ(L"ZDF HD -", test.Texts(MP_USERFIELD));
    EXPECT_EQ(L"11/0 -", test.Editing());
    test.Type(L"-47x4.0");
    EXPECT_EQ(2, test.view.beeps);
    test.Tab();
    EXPECT_EQ(L"12/0 6.875", test.Editing());
    test.Tab();
    EXPECT_EQ(L"10/1 -", test.Editing());
    test.Enter();
    EXPECT_EQ(2, test.editor.RowCount(Grid::channels)) << "a placeholder that was left as it was";
    test.Set(MP_SYMBOLRATE, 1, L"5.0");
    EXPECT_EQ(L"6.875 5.0 -", test.Texts(MP_SYMBOLRATE)) << "typed into the placeholder";
    test.Execute(RowCommand::remove, MP_SYMBOLRATE, 1);
    test.editor.Ok();
    EXPECT_EQ(1, test.document.ListSize());
    EXPECT_EQ(474, test.document.Frequency(1));
}

TEST(EditorCells, TabGoesRoundEitherGridInBothDirections)
{
    TestEditor test;
    test.Open({100, 200});
    test.editor.BeginCellEdit(MP_USERFIELD, 0, 0);
    for (const wchar_t* const cell : {L"12/2 -", L"11/2 -", L"10/2 -", L"12/1 6.900"}) {
        test.Tab(true);
        EXPECT_EQ(cell, test.Editing());
    }
    test.editor.BeginCellEdit(MP_SYMBOLRATE, 2, 0);
    test.Tab();
    EXPECT_EQ(L"10/0 A", test.Editing());

    test.editor.SelectPage(Page::parameters);
    test.editor.CellClicked(captionColumn, 30);
    test.Tab();
    EXPECT_EQ(L"0/1 Input Route", test.Editing());
    test.Tab(true);
    EXPECT_EQ(L"0/30 Data Errors (%)", test.Editing());
}

TEST(EditorCells, FilterKeysByColumnAndLocale)
{
    TestEditor test(L",");
    test.Open({100});
    for (const Column column : {MP_FREQUENCY, MP_SYMBOLRATE}) {
        test.editor.BeginCellEdit(column, 0, 0);
        test.view.beeps = 0;
        for (const wchar_t passes : {L'\3', L'\x16', L'\x18', L'\x1A', L'\b', L'0', L'9', L','}) {
            EXPECT_TRUE(test.editor.CellChar(passes)) << int{passes};
        }
        EXPECT_FALSE(test.editor.CellChar(13) || test.editor.CellChar(27));
        EXPECT_EQ(0, test.view.beeps);
        for (const wchar_t stopped : {L'.', L'-', L'a', L' ', L'/', L':', L'\u0663'}) {
            EXPECT_FALSE(test.editor.CellChar(stopped)) << int{stopped};
        }
        EXPECT_EQ(7, test.view.beeps);
    }
    test.editor.BeginCellEdit(MP_USERFIELD, 0, 0);
    EXPECT_TRUE(test.editor.CellChar(L'\u00E4') && !test.editor.CellChar(13));
    const auto takes = [&](Field field, wchar_t character) { return test.editor.FieldChar(field, character); };
    EXPECT_TRUE(takes(Field::defaultSymbolRate, L',') && takes(Field::maxSettlingTime, L'8'));
    EXPECT_TRUE(takes(Field::maxSettlingTime, 22));
    EXPECT_FALSE(takes(Field::defaultSymbolRate, L'.') || takes(Field::maxSettlingTime, L','));
    EXPECT_EQ(9, test.view.beeps);
}

TEST(EditorCells, SelectionStaysVisible)
{
    TestEditor test;
    test.Open(std::vector<double>(20, 100));
    test.editor.SetVisibleRows(Grid::channels, 5);
    test.editor.RowSelected(MP_FREQUENCY, 12);
    EXPECT_EQ(8, test.editor.TopRow(Grid::channels));
    test.editor.RowSelected(MP_FREQUENCY, 3);
    EXPECT_EQ(3, test.editor.TopRow(Grid::channels));
    test.editor.Scrolled(MP_FREQUENCY, 99);
    EXPECT_EQ(16, test.editor.TopRow(Grid::channels));
    EXPECT_EQ(3, test.editor.SelectedRow(Grid::channels));
    test.editor.SetVisibleRows(Grid::channels, 30);
    EXPECT_EQ(0, test.editor.TopRow(Grid::channels));
    test.editor.CellClicked(MP_FREQUENCY, 21);
    test.editor.RowSelected(MP_FREQUENCY, -1);
    EXPECT_EQ(3, test.editor.SelectedRow(Grid::channels));
}

}  // namespace
}  // namespace tvn2x
