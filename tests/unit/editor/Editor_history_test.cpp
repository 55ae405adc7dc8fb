#include <random>

#include "TestEditor.h"
#include "editor/EditorKeys.h"
#include "support/DocumentParts.h"

namespace tvn2x {
namespace {

/// Somebody who does anything at random in both lists, and in the choice that the captions follow.
class RandomUser
{
public:
    RandomUser(TestEditor& test, uint32_t seed) : test_(test), random_(seed) {}

    void Act()
    {
        Editor& editor = test_.editor;
        const Grid grid = Pick(4) == 0 ? Grid::parameters : Grid::channels;
        const auto row = static_cast<int32_t>(Pick(static_cast<uint32_t>(editor.RowCount(grid))));
        const Column column = static_cast<Column>(grid) + static_cast<Column>(Pick(3));
        constexpr const wchar_t* texts[] = {L"K7", L"474.5", L"-", L"", L"dBmV mV dBm", L"8"};
        const std::function<void()> deeds[] = {
            [&] { editor.CellPressed(column, row, Pick(3)); },
            [&] { editor.ListKeyDown(grid, static_cast<int32_t>(key::pageUp + Pick(8)), Pick(4)); },
            [&] { editor.CellClicked(column, row); },
            [&] {
                editor.BeginCellEdit(column, row, 0);
                if (editor.CurrentEdit().open) {
                    editor.CellTextChanged(texts[Pick(6)]);
                }
            },
            [&] { editor.HeadingClicked(column); },
            [&] { editor.SelectItem(Choice::levelUnit, static_cast<int32_t>(Pick(6))); },
            [&] {
                test_.view.clipboard = Pick(2) == 0 ? L"K10\t482\t6.9\nK9\t490\t5\n" : L"1";
                editor.Execute(Pick(2) == 0 ? RowCommand::paste : RowCommand::pasteRows, grid);
            },
            [&] {
                test_.view.answers = {L"306", L"400", L"40", L"6.9", L"S1"};
                editor.Execute(Pick(2) == 0 ? RowCommand::fillSeries : RowCommand::fillDown, grid);
            },
            [&] { editor.Execute(static_cast<RowCommand>(Pick(static_cast<uint32_t>(RowCommand::sort) + 1)), grid); },
        };
        deeds[std::min<size_t>(Pick(10), std::size(deeds) - 1)]();
        if (editor.RowCount(Grid::channels) > 60) {
            editor.Execute(RowCommand::selectAll, Grid::channels);
            editor.Execute(RowCommand::remove, Grid::channels);
        }
    }

private:
    uint32_t Pick(uint32_t count) { return static_cast<uint32_t>(random_() % count); }

    TestEditor& test_;
    std::mt19937 random_;
};

/// What the lists hold and how they are sorted.
std::wstring Content(const TestEditor& test)
{
    std::wstring content = std::to_wstring(test.editor.SelectedItem(Choice::levelUnit));
    for (const Grid grid : {Grid::channels, Grid::parameters}) {
        for (const std::wstring& row : test.view.Content(grid)) {
            content += L"\n" + row;
        }
        for (Column column = 0; column < 3; ++column) {
            content += std::to_wstring(static_cast<int>(test.editor.Arrow(static_cast<Column>(grid) + column)));
        }
    }
    return content;
}

TEST(EditorHistory, RandomWorkIsUndoneToTheBeginningAndRedoneToTheEnd)
{
    for (uint32_t seed = 1; seed <= 25; ++seed) {
        SCOPED_TRACE(seed);
        TestEditor test;
        test.Put({300, 100, 200});
        test.Open();
        test.editor.SelectPage(Page::frequencies);
        const std::wstring opened = Content(test);
        const auto document = Everything(test.document);
        RandomUser user(test, seed);
        for (int action = 0; action < 120; ++action) {
            user.Act();
        }
        test.editor.RowSelected(MP_USERFIELD, 0);  // whatever is open is committed
        const auto all = [&](RowCommand command) {
            while (test.editor.CanExecute(command, Grid::channels)) {
                test.editor.Execute(command, Grid::channels);
            }
            return Content(test);
        };
        const std::wstring last = all(RowCommand::redo);
        EXPECT_EQ(opened, all(RowCommand::undo));
        EXPECT_EQ(0u, test.editor.Changes());
        EXPECT_EQ(last, all(RowCommand::redo));
        all(RowCommand::undo);
        test.editor.Ok();
        EXPECT_EQ(L"OK", test.editor.Tag());
        EXPECT_EQ(document, Everything(test.document));
    }
}

}  // namespace
}  // namespace tvn2x
