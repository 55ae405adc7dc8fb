#include "TestEditor.h"
#include "editor/EditorKeys.h"

namespace tvn2x {
namespace {

constexpr unsigned shift = modifier::shift, control = modifier::control, alt = modifier::alt;

/// What is selected: "0 1 4 @4/11", the current row and column behind "@".
std::wstring Selected(const Editor& editor, Grid grid)
{
    std::wstring rows;
    for (const int32_t row : editor.Selection(grid).Rows()) {
        rows += std::to_wstring(row) + L" ";
    }
    return rows + L"@" + std::to_wstring(editor.SelectedRow(grid)) + L"/" + std::to_wstring(editor.CurrentColumn(grid));
}

TEST(EditorLists, KeysAndMouseSelectAsInASpreadsheet)
{
    TestEditor test;
    test.Open(std::vector<double>(20, 100));
    test.editor.SetVisibleRows(Grid::channels, 5);
    const auto press = [&](int32_t pressed, unsigned modifiers = 0) {
        EXPECT_TRUE(test.editor.ListKeyDown(Grid::channels, pressed, modifiers)) << pressed;
        return Selected(test.editor, Grid::channels);
    };
    EXPECT_EQ(L"0 @0/11", press(key::right));
    EXPECT_EQ(L"1 @1/11", press(key::down));
    EXPECT_EQ(L"1 2 @2/11", press(key::down, shift));
    EXPECT_EQ(L"1 2 @2/12", press(key::end)) << "the rows stay selected";
    EXPECT_EQ(L"1 @1/12", press(key::up));
    EXPECT_EQ(L"6 @6/12", press(key::pageDown));
    EXPECT_EQ(2, test.editor.TopRow(Grid::channels));
    EXPECT_EQ(L"6 @6/10", press(key::home));
    EXPECT_EQ(L"6 @6/10", press(key::left));
    EXPECT_EQ(L"20 @20/10", press(key::end, control));
    EXPECT_EQ(L"0 @0/10", press(key::home, control));
    EXPECT_FALSE(test.editor.ListKeyDown(Grid::channels, key::tab, 0));

    EXPECT_TRUE(test.editor.CellPressed(MP_FREQUENCY, 3, 0));
    EXPECT_FALSE(test.editor.CellPressed(MP_FREQUENCY, 5, shift));
    EXPECT_FALSE(test.editor.CellPressed(MP_USERFIELD, 4, control));
    EXPECT_EQ(L"3 5 @3/10", Selected(test.editor, Grid::channels));
    test.editor.CellPressed(MP_USERFIELD, 3, control);
    test.editor.CellPressed(MP_USERFIELD, 5, control);
    EXPECT_EQ(L"5 @5/10", Selected(test.editor, Grid::channels)) << "one row is always selected";
    EXPECT_TRUE(test.editor.CellPressed(MP_USERFIELD, 8, 0));
    test.editor.DraggedTo(Grid::channels, 99);
    EXPECT_EQ(12, test.editor.Selection(Grid::channels).Count()) << "all channels below, not the placeholder";
    test.editor.MenuAsked(MP_USERFIELD, 10);
    EXPECT_EQ(12, test.editor.Selection(Grid::channels).Count());
    test.editor.MenuAsked(MP_USERFIELD, 2);
    EXPECT_EQ(L"2 @2/10", Selected(test.editor, Grid::channels));
}

TEST(EditorLists, CommandsActOnEveryChannelThatIsSelected)
{
    TestEditor test;
    test.Open({1, 2, 3, 4, 5});
    const auto press = [&](int32_t pressed, unsigned modifiers) {
        test.editor.ListKeyDown(Grid::channels, pressed, modifiers);
        return test.Texts(MP_USERFIELD);
    };
    test.editor.HeadingClicked(MP_FREQUENCY);
    EXPECT_EQ(SortArrow::up, test.editor.Arrow(MP_FREQUENCY));
    test.editor.CellPressed(MP_USERFIELD, 1, 0);
    test.editor.CellPressed(MP_USERFIELD, 3, control);
    EXPECT_EQ(L"B A D C E -", press(key::up, alt));
    EXPECT_EQ(SortArrow::none, test.editor.Arrow(MP_FREQUENCY)) << "a move spoils the order";
    EXPECT_FALSE(test.editor.CanExecute(RowCommand::moveUp, Grid::channels));
    EXPECT_EQ(L"A B C D E -", press(key::down, alt));
    EXPECT_EQ(L"A C B E D -", press(key::down, alt));
    EXPECT_EQ(L"A C B E D B D -", press('D', control | shift)) << "copies stand together behind the last";
    EXPECT_EQ(L"A C B E D -", press(key::remove, 0));
    test.editor.CellPressed(MP_USERFIELD, 2, shift);
    test.editor.TextChanged(Field::defaultSymbolRate, L"5.5");
    EXPECT_EQ(L"- A C B E D -", (test.editor.RowSelected(MP_USERFIELD, 0), press(key::insert, 0)));
    EXPECT_EQ(L"5.5 6.900 6.900 6.900 6.900 6.900 -", test.Texts(MP_SYMBOLRATE));
    press('A', control);
    EXPECT_EQ(L"-", press(key::remove, 0));
    EXPECT_FALSE(test.editor.CanExecute(RowCommand::remove, Grid::channels));
    EXPECT_FALSE(test.editor.CanExecute(RowCommand::selectAll, Grid::channels));
    EXPECT_TRUE(test.editor.CanExecute(RowCommand::undo, Grid::channels));
}

TEST(EditorLists, CharactersOpenACellAndArrowsMoveTheOpenOne)
{
    TestEditor test;
    test.Open({100, 200});
    test.editor.RowSelected(MP_FREQUENCY, 0);
    EXPECT_TRUE(test.editor.ListChar(MP_FREQUENCY, L'x'));
    EXPECT_EQ(1, test.view.beeps);
    EXPECT_TRUE(test.editor.ListChar(MP_FREQUENCY, L'4'));
    EXPECT_EQ(L"11/0 4", test.Editing());
    EXPECT_EQ(1, test.editor.CurrentEdit().selectionStart);
    EXPECT_TRUE(test.editor.CellKeyDown(key::down, false));
    EXPECT_EQ(L"11/1 200.0000000", test.Editing());
    EXPECT_TRUE(test.editor.CellKeyDown(key::down, false));
    test.editor.CellTextChanged(L"300");
    EXPECT_TRUE(test.editor.CellKeyDown(key::down, false));
    EXPECT_EQ(L"11/2 300", test.Editing()) << "there is none below the last";
    EXPECT_TRUE(test.editor.CellKeyDown(key::up, false));
    EXPECT_EQ(L"4 200.0000000 300 -", test.Texts(MP_FREQUENCY));
    test.Escape();
    EXPECT_FALSE(test.editor.ListChar(MP_USERFIELD, L'\r'));
    test.editor.SelectPage(Page::parameters);
    EXPECT_TRUE(test.editor.ListChar(displayColumn, L'a'));
    EXPECT_EQ(2, test.view.beeps);
}

TEST(EditorLists, FindAndGoToSelectTheCell)
{
    TestEditor test;
    test.Open({100, 145, 300});
    EXPECT_EQ(L"", test.Answer(RowCommand::find, {L"45"}));
    EXPECT_EQ(L"1 @1/11", Selected(test.editor, Grid::channels));
    EXPECT_EQ(L"", test.Answer(RowCommand::find, {L"c"}));
    EXPECT_EQ(L"Find|45", test.view.asked);
    EXPECT_EQ(L"2 @2/10", Selected(test.editor, Grid::channels));
    test.editor.Execute(RowCommand::findNext, Grid::channels);
    EXPECT_EQ(L"2 @2/10", Selected(test.editor, Grid::channels)) << "round the list";
    EXPECT_EQ(L"No cell has \"zz\" in it.", test.Answer(RowCommand::find, {L"zz"}));
    for (const wchar_t* const none : {L"4", L"x"}) {
        EXPECT_EQ(L"There is no channel of this number.", test.Answer(RowCommand::goTo, {none}));
    }
    EXPECT_EQ(L"", test.Answer(RowCommand::goTo, {L"2"}));
    EXPECT_EQ(L"Go to Channel|3", test.view.asked);
    EXPECT_EQ(L"1 @1/10", Selected(test.editor, Grid::channels));
}

TEST(EditorLists, FillCopiesDownAndCountsOn)
{
    TestEditor test(L",");
    test.Open({100, 200, 300.5, 400});
    test.editor.RowSelected(MP_FREQUENCY, 1);
    test.editor.Execute(RowCommand::fillDown, Grid::channels);
    EXPECT_EQ(L"100,0000000 100,0000000 300,5000000 400,0000000 -", test.Texts(MP_FREQUENCY)) << "from above";
    EXPECT_EQ(L"", test.Answer(RowCommand::fillSeries, {L"306", L"8"}));
    EXPECT_EQ(L"Fill 3 Rows|100,0000000|200,5", test.view.asked) << "down to the last";
    EXPECT_EQ(L"100,0000000 306,0000000 314,0000000 322,0000000 -", test.Texts(MP_FREQUENCY));
    test.Select(0, 1);
    EXPECT_EQ(L"", test.Answer(RowCommand::fillSeries, {L"S22", L"1"}));
    EXPECT_EQ(L"S22 S23 C D -", test.Texts(MP_USERFIELD));
    for (const std::vector<std::wstring>& wrong : {std::vector<std::wstring>{L"S1", L"0,5"}, {L"S1", L"x"}}) {
        EXPECT_NE(L"", test.Answer(RowCommand::fillSeries, wrong));
    }
    EXPECT_EQ(L"S22 S23 C D -", test.Texts(MP_USERFIELD));
    test.Open({100});
    test.Select(0, 1);
    EXPECT_FALSE(test.editor.CanExecute(RowCommand::fillDown, Grid::channels)) << "the new row is nothing to fill";
    EXPECT_FALSE(test.editor.CanExecute(RowCommand::fillSeries, Grid::channels));
}

TEST(EditorLists, AddChannelsMakesARaster)
{
    TestEditor test;
    test.Open({});
    EXPECT_EQ(L"", test.Answer(RowCommand::addChannels, {L"306", L"330.4", L"8.1", L"6.875", L"S22"}));
    EXPECT_EQ(L"Add Channels|306|858|8|6.900|S21", test.view.asked);
    EXPECT_EQ(L"306.0000000 314.1000000 322.2000000 330.3000000 -", test.Texts(MP_FREQUENCY));
    EXPECT_EQ(L"S22 S23 S24 S25 -", test.Texts(MP_USERFIELD));
    EXPECT_EQ(L"6.875 6.875 6.875 6.875 -", test.Texts(MP_SYMBOLRATE));
    for (const std::vector<std::wstring>& wrong : {std::vector<std::wstring>{L"306", L"300", L"8", L"6.9", L""},
                                                   {L"306", L"858", L"0", L"6.9", L""},
                                                   {L"3", L"1000", L"0.001", L"6.9", L""},
                                                   {L"", L"858", L"8", L"6.9", L""}}) {
        EXPECT_NE(L"", test.Answer(RowCommand::addChannels, wrong));
    }
    EXPECT_EQ(5, test.editor.RowCount(Grid::channels));
}

TEST(EditorLists, RemarksFollowTheListAndTheRollOff)
{
    TestEditor test;
    test.Open({474, 482});
    EXPECT_EQ(L"", test.editor.RemarkOn(Grid::channels, 0));
    test.Choose(Choice::rolloffFactor, L"0.18");
    EXPECT_EQ(0u, test.editor.RemarkOn(Grid::channels, 0).find(L"Overlaps channel 2 by 0.142 MHz"));
    test.Set(MP_FREQUENCY, 1, L"474");
    EXPECT_EQ(L"Channel 1 has the same frequency.", test.editor.RemarkOn(Grid::channels, 1));
    EXPECT_EQ(L"", test.editor.RemarkOn(Grid::channels, 2));
    test.editor.Execute(RowCommand::undo, Grid::channels);
    EXPECT_EQ(0u, test.editor.RemarkOn(Grid::channels, 1).find(L"Overlaps channel 1"));
}

TEST(EditorLists, CloseSignAsksWhereMoreThanOneChangeWouldBeLost)
{
    TestEditor test;
    test.Open({100, 200});
    test.Set(MP_FREQUENCY, 0, L"150");
    test.editor.TextChanged(Field::maxSettlingTime, L"7");
    test.editor.CloseSign();
    EXPECT_EQ(1, test.view.confirmed);
    EXPECT_FALSE(test.view.closed);
    test.editor.Execute(RowCommand::undo, Grid::channels);
    test.editor.CloseSign();
    EXPECT_EQ(1, test.view.confirmed);
    EXPECT_EQ(L"Cancel", test.editor.Tag());
}

}  // namespace
}  // namespace tvn2x
