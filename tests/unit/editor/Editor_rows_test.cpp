#include "TestEditor.h"

namespace tvn2x {
namespace {

TEST(EditorRows, DeleteSparesThePlaceholderAndClearsTheArrowsWithTheLastChannel)
{
    TestEditor test;
    test.Open({200, 100});
    test.editor.HeadingClicked(MP_FREQUENCY);
    test.Execute(RowCommand::remove, MP_USERFIELD, 1);
    EXPECT_EQ(L"B -", test.Texts(MP_USERFIELD));
    EXPECT_EQ(1, test.editor.SelectedRow(Grid::channels));
    test.editor.Execute(RowCommand::remove, Grid::channels);
    EXPECT_EQ(1, test.view.beeps);
    EXPECT_EQ(SortArrow::up, test.editor.Arrow(MP_FREQUENCY));
    test.editor.CellClicked(MP_USERFIELD, 0);
    test.editor.Execute(RowCommand::remove, Grid::channels);
    EXPECT_EQ(L"-", test.Texts(MP_USERFIELD));
    EXPECT_EQ(L"", test.Editing());
    test.editor.HeadingClicked(MP_FREQUENCY);
    EXPECT_EQ(SortArrow::none, test.editor.Arrow(MP_FREQUENCY));
}

TEST(EditorRows, HeadingSortsNumbersAsNumbersAndReverses)
{
    TestEditor test;
    test.Open({1000, 90, 200, 90});
    test.Set(MP_FREQUENCY, 4, L"");
    test.editor.RowSelected(MP_FREQUENCY, 1);
    test.editor.HeadingClicked(MP_FREQUENCY);
    EXPECT_EQ(L"B D C A - -", test.Texts(MP_USERFIELD)) << "equal ones keep their order";
    EXPECT_EQ(SortArrow::up, test.editor.Arrow(MP_FREQUENCY));
    EXPECT_EQ(0, test.editor.SelectedRow(Grid::channels));
    test.editor.HeadingClicked(MP_FREQUENCY);
    EXPECT_EQ(L"1000.0000000 200.0000000 90.0000000 90.0000000  -", test.Texts(MP_FREQUENCY));
    EXPECT_EQ(L"A C B D - -", test.Texts(MP_USERFIELD));
    EXPECT_EQ(SortArrow::down, test.editor.Arrow(MP_FREQUENCY));
    EXPECT_EQ(2, test.editor.SelectedRow(Grid::channels));
    test.editor.HeadingClicked(MP_USERFIELD);
    EXPECT_EQ(L"- A B C D -", test.Texts(MP_USERFIELD));
    EXPECT_EQ(SortArrow::none, test.editor.Arrow(MP_FREQUENCY));
    EXPECT_EQ(SortArrow::up, test.editor.Arrow(MP_USERFIELD));

    test.editor.HeadingClicked(captionColumn);
    EXPECT_EQ(SortArrow::up, test.editor.Arrow(MP_USERFIELD));
}

TEST(EditorRows, ListBeyondTheSortsLimitSaysSo)
{
    TestEditor test;
    test.document.ListSize(32768);
    test.Open();
    test.editor.HeadingClicked(MP_FREQUENCY);
    ASSERT_EQ(1u, test.messages.messages.size());
    EXPECT_EQ(L"The list has more than 32767 channels and cannot be sorted.", test.messages.messages[0].text);
    EXPECT_EQ(SortArrow::none, test.editor.Arrow(MP_FREQUENCY));
}

// The parameters page.

TEST(EditorParameters, ShowTheCatalogueInDisplayOrder)
{
    TestEditor test;
    test.document.Order(MP_DE, 1);
    test.document.Order(MP_ZIN, -1);
    test.document.Order(MP_SAWBW, 30);
    test.Open();
    EXPECT_EQ(L"Select/Deselect All", test.editor.CellText(captionColumn, 0));
    EXPECT_EQ(1, test.RowOf(MP_DE));
    EXPECT_EQ(29, test.RowOf(MP_SAWBW));
    EXPECT_EQ(30, test.RowOf(MP_ZIN));
    EXPECT_EQ(L" ", test.editor.CellText(saveColumn, 7));
    EXPECT_FALSE(test.editor.CellChecked(displayColumn, 0));
    EXPECT_TRUE(test.editor.CellChecked(saveColumn, 0));
}

TEST(EditorParameters, ChecksAreCoupledAndTheFirstRowStandsForAll)
{
    TestEditor test;
    test.Open();
    test.editor.CellClicked(saveColumn, 5);
    EXPECT_FALSE(test.editor.CellChecked(saveColumn, 5));
    EXPECT_FALSE(test.editor.CellChecked(displayColumn, 5));
    EXPECT_FALSE(test.editor.CellChecked(saveColumn, 0));
    EXPECT_TRUE(test.editor.ListChar(displayColumn, L' '));
    EXPECT_TRUE(test.editor.CellChecked(saveColumn, 0));
    test.editor.RowSelected(displayColumn, 0);
    test.editor.ListChar(displayColumn, L' ');
    EXPECT_TRUE(test.editor.CellChecked(displayColumn, 30) && test.editor.CellChecked(saveColumn, 30));
    test.editor.SetCheck(Check::couple, false);
    test.editor.CellClicked(displayColumn, 0);
    test.editor.Ok();
    EXPECT_FALSE(test.document.Parameter(1, MP_MER));
    EXPECT_TRUE(test.document.Parameter(2, MP_MER));
    EXPECT_TRUE(test.document.Parameter(0, MP_MER));
    EXPECT_FALSE(test.document.CoupleDisplayAndSave());
}

TEST(EditorParameters, CaptionsFollowTheLevelUnit)
{
    TestEditor test;
    test.document.Caption(MP_ZIN, L"dBmV and dBmV again");
    test.Open();
    const int32_t level = test.RowOf(MP_RFLEV);
    test.editor.CellClicked(captionColumn, level);
    EXPECT_EQ(L"0/15 RF Level", test.Editing());
    test.Choose(Choice::levelUnit, L"mV");
    EXPECT_EQ(L"mV and mV again", test.editor.CellText(captionColumn, test.RowOf(MP_ZIN)));
    test.Set(captionColumn, level, L"Power (mV)");
    test.Choose(Choice::levelUnit, L"dBm");
    test.editor.CellClicked(captionColumn, level);
    test.Escape();
    test.editor.Ok();
    EXPECT_EQ(L"Power", test.document.StoredCaption(MP_RFLEV));
    EXPECT_EQ(L"Power (dBm)", test.document.Caption(MP_RFLEV));
    EXPECT_EQ(L"dBm and dBm again", test.document.Caption(MP_ZIN));
}

TEST(EditorParameters, RowsCanBeAddedMovedAndTakenAway)
{
    TestEditor test;
    test.document.Count(32);
    test.document.Caption(32, L"mine");
    test.document.Parameter(1, 32, true);
    test.Open();
    const auto execute = [&](RowCommand command, int32_t row) { test.Execute(command, captionColumn, row); };
    execute(RowCommand::remove, 0);
    execute(RowCommand::moveUp, 1);
    execute(RowCommand::moveDown, 0);
    execute(RowCommand::moveDown, 32);
    EXPECT_EQ(4, test.view.beeps);
    execute(RowCommand::insert, 0);
    EXPECT_EQ(L"-", test.editor.CellText(captionColumn, 1));
    EXPECT_EQ(33, test.editor.ItemData(Grid::parameters, 1));
    test.Set(captionColumn, 1, L"new");
    execute(RowCommand::remove, test.RowOf(31));
    EXPECT_EQ(1, test.RowOf(32));
    execute(RowCommand::remove, test.RowOf(MP_ZIN));
    execute(RowCommand::moveUp, test.RowOf(MP_BER));
    test.editor.Ok();
    EXPECT_EQ(32, test.document.Count());
    EXPECT_EQ(L"mine", test.document.Caption(31));
    EXPECT_TRUE(test.document.Parameter(1, 31));
    EXPECT_EQ(L"new", test.document.Caption(32));
    EXPECT_FALSE(test.document.Parameter(0, 32));
    EXPECT_EQ(1, test.document.Order(32));
    EXPECT_EQ(test.document.Order(MP_BER) + 1, test.document.Order(MP_RFLEV));
    EXPECT_EQ(32, test.document.Order(MP_ZIN));
    EXPECT_EQ(L"Input Route", test.document.Caption(MP_ZIN));
    EXPECT_FALSE(test.document.Parameter(0, MP_ZIN) || test.document.Parameter(2, MP_ZIN));
}

}  // namespace
}  // namespace tvn2x
