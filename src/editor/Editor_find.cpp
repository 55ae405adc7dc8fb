#include <algorithm>
#include <cwctype>

#include "editor/Editor.h"
#include "editor/EditorKeys.h"

namespace tvn2x {
namespace {

std::wstring InLowerCase(std::wstring text)
{
    std::ranges::transform(text, text.begin(),
                           [](wchar_t each) { return static_cast<wchar_t>(std::towlower(static_cast<wint_t>(each))); });
    return text;
}

}  // namespace

void Editor::AskForText(GridRows& grid)
{
    view_.Ask({L"Find", L"Find", {{L"&Text in any column:", sought_}}},
              [&](const std::vector<std::wstring>& answers) -> std::wstring {
                  if (answers[0].empty()) {
                      return L"Please say what to look for.";
                  }
                  sought_ = answers[0];
                  return FindNext(grid) ? L"" : L"No cell has \"" + sought_ + L"\" in it.";
              });
}

/// Goes to the next cell that has the sought text in it, in either case: row by row from behind the current cell, and
/// from the top again. False where there is none.
bool Editor::FindNext(GridRows& grid)
{
    const std::wstring sought = InLowerCase(sought_);
    const int32_t count = grid.Count() * 3;
    const int32_t start = grid.selection.Current() * 3 + static_cast<int32_t>(grid.Index(grid.column));
    for (int32_t step = 1; step <= count; ++step) {
        const int32_t place = (start + step) % count;
        const int32_t row = place / 3;
        const Column column = grid.ColumnAt(static_cast<size_t>(place % 3));
        if (grid.Takes(row) && !IsCheckColumn(column) &&
            InLowerCase(grid.Text(column, row)).find(sought) != std::wstring::npos) {
            grid.column = column;
            SelectRow(grid, row);
            return true;
        }
    }
    return false;
}

void Editor::AskForChannel()
{
    const GridRows& channels = lists_.channels;
    const int32_t last = channels.LastRow() + 1;
    view_.Ask({L"Go to Channel",
               L"Go",
               {{L"&Number, 1 to " + std::to_wstring(last) + L":", std::to_wstring(channels.selection.Current() + 1)}}},
              [&, last](const std::vector<std::wstring>& answers) -> std::wstring {
                  const double number = NumberIn(answers[0]);
                  if (!(number >= 1 && number <= last)) {
                      return L"There is no channel of this number.";
                  }
                  SelectRow(lists_.channels, static_cast<int32_t>(number) - 1);
                  return {};
              });
}

}  // namespace tvn2x
