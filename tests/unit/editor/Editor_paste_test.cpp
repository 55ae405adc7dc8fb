#include "TestEditor.h"
#include "editor/EditorKeys.h"

namespace tvn2x {
namespace {

void Paste(TestEditor& test, std::wstring_view text, Grid grid = Grid::channels)
{
    test.view.clipboard = text;
    test.editor.Execute(RowCommand::paste, grid);
}

TEST(EditorPaste, WritesOverFromTheCurrentCellAndGoesOnBehindTheLastChannel)
{
    TestEditor test(L",");
    test.Open({100, 200});
    test.editor.RowSelected(MP_FREQUENCY, 1);
    Paste(test, L"306\t6,9\r\n 314.5 \t\r\n");
    EXPECT_EQ(L"100,0000000 306 314,5 -", test.Texts(MP_FREQUENCY)) << "with either decimal mark";
    EXPECT_EQ(L"6,900 6,9 6,900 -", test.Texts(MP_SYMBOLRATE));
    EXPECT_EQ(L"A B - -", test.Texts(MP_USERFIELD));
    EXPECT_EQ(2, test.editor.Selection(Grid::channels).Count());
    EXPECT_TRUE(test.messages.messages.empty());
}

TEST(EditorPaste, SelectedRowsSayWhatIsWrittenOverAndWhatIsNew)
{
    TestEditor test;
    test.Open({1, 2, 3, 4});
    test.Select(1, 2);
    Paste(test, L"x");
    EXPECT_EQ(L"A x x D -", test.Texts(MP_USERFIELD)) << "one cell fills them";
    test.Select(0, 3);
    Paste(test, L"p\nq");
    EXPECT_EQ(L"p q p q -", test.Texts(MP_USERFIELD));
    test.Select(1, 2);
    Paste(test, L"1\n2\n3\n4");
    EXPECT_EQ(L"p 1 2 3 4 q -", test.Texts(MP_USERFIELD)) << "what has no room comes in behind";
    test.Select(0, 2);
    Paste(test, L"k\nl");
    EXPECT_EQ(L"k l 2 3 4 q -", test.Texts(MP_USERFIELD));
    test.Execute(RowCommand::pasteRows, MP_USERFIELD, 1);
    EXPECT_EQ(L"k k l l 2 3 4 q -", test.Texts(MP_USERFIELD));
}

TEST(EditorPaste, NamesWhatDoesNotFitAndChangesNothing)
{
    TestEditor test;
    test.Open({100, 200});
    const std::pair<const wchar_t*, const wchar_t*> faults[] = {
        {L"S1\t474\t6.9\nS2\tabc\t6.9", L"Row 2 on the clipboard has \"abc\" for \"Center Frequency\""},
        {L"Label\tFrequency\nS1\t474\nS2\t1.234,5", L"Row 3 on the clipboard has \"1.234,5\""},
        {L"1\t2\t3\t4", L"The clipboard has 4 columns, and the list has no more than 3"},
    };
    for (const auto& [text, fault] : faults) {
        Paste(test, text);
        EXPECT_EQ(0u, test.messages.messages.back().text.find(fault)) << text;
        EXPECT_EQ(L"A B -", test.Texts(MP_USERFIELD));
    }
    test.view.clipboard.reset();
    test.editor.Execute(RowCommand::paste, Grid::channels);
    test.editor.Execute(RowCommand::cut, Grid::channels);
    EXPECT_EQ(5u, test.messages.messages.size());
    EXPECT_EQ(L"A B -", test.Texts(MP_USERFIELD)) << "what could not be copied is not cut";
    EXPECT_FALSE(test.editor.CanExecute(RowCommand::undo, Grid::channels));
}

TEST(EditorPaste, CopiesComeBackAsTheyWere)
{
    TestEditor test;
    test.Open({100, 200, 300});
    test.Set(MP_USERFIELD, 0, L"a \"quoted\"");
    test.editor.Execute(RowCommand::selectAll, Grid::channels);
    test.editor.Execute(RowCommand::cut, Grid::channels);
    EXPECT_EQ(L"-", test.Texts(MP_USERFIELD));
    test.editor.Execute(RowCommand::paste, Grid::channels);
    EXPECT_EQ(L"a \"quoted\" B C -", test.Texts(MP_USERFIELD));
    EXPECT_EQ(L"100.0000000 200.0000000 300.0000000 -", test.Texts(MP_FREQUENCY));
}

TEST(EditorPaste, IntoAnOpenCellIsARangeWhereItIsMoreThanAText)
{
    TestEditor test;
    test.Open({100, 200});
    test.editor.BeginCellEdit(MP_FREQUENCY, 1, 0);
    test.view.clipboard = L"474\r\n";
    EXPECT_FALSE(test.editor.PasteOverCell());
    test.view.clipboard = L"474\r\n482\r\n";
    EXPECT_TRUE(test.editor.PasteOverCell());
    EXPECT_EQ(L"", test.Editing());
    EXPECT_EQ(L"100.0000000 474 482 -", test.Texts(MP_FREQUENCY));
}

TEST(EditorPaste, ParametersTakeCaptionsAndMarksButNoRows)
{
    TestEditor test;
    test.Open();
    test.editor.SelectPage(Page::parameters);
    const int32_t level = test.RowOf(MP_RFLEV);
    test.editor.RowSelected(captionColumn, level);
    Paste(test, L"Power\t0\tx", Grid::parameters);
    EXPECT_EQ(L"Power (dBmV)", test.editor.CellText(captionColumn, level));
    EXPECT_FALSE(test.editor.CellChecked(displayColumn, level));
    EXPECT_TRUE(test.editor.CellChecked(saveColumn, level));
    test.editor.RowSelected(displayColumn, level);
    Paste(test, L"1", Grid::parameters);
    Paste(test, L"0", Grid::parameters);
    EXPECT_FALSE(test.editor.CellChecked(saveColumn, level)) << "coupled";
    test.editor.RowSelected(captionColumn, 30);
    Paste(test, L"a\nb", Grid::parameters);
    EXPECT_EQ(0u, test.messages.messages.at(0).text.find(L"The clipboard has 2 rows, which is 1 more"));
    EXPECT_EQ(31, test.editor.RowCount(Grid::parameters));
    test.editor.RowSelected(captionColumn, 1);
    test.editor.Execute(RowCommand::copy, Grid::parameters);
    EXPECT_EQ(L"Input Route\t0\t1\r\n", *test.view.clipboard);
}

}  // namespace
}  // namespace tvn2x
