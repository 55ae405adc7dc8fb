#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "editor/Choices.h"
#include "editor/Editor.h"
#include "editor/EditorKeys.h"
#include "text/Blanks.h"

namespace tvn2x {
namespace {

/// How a check mark is written, and how spreadsheets and people write it.
constexpr const wchar_t* marked = L"1";
constexpr const wchar_t* notMarked = L"0";
constexpr std::array<std::wstring_view, 7> marks{L"1", L"x", L"X", L"yes", L"true", L"TRUE", L"Yes"};
constexpr std::array<std::wstring_view, 8> noMarks{L"0", L"", L"-", L"no", L"false", L"FALSE", L"No", L" "};

/// What a list shows on one line: no tab, no line end.
std::wstring OnOneLine(std::wstring text)
{
    std::ranges::replace_if(
        text, [](wchar_t each) { return each < L' '; }, L' ');
    return text;
}

/// A cell for a message, not too long.
std::wstring Quoted(const std::wstring& cell)
{
    constexpr size_t most = 40;
    return L"\"" + (cell.size() > most ? cell.substr(0, most) + L"..." : cell) + L"\"";
}

std::wstring PlainHeading(Column column)
{
    std::wstring heading(HeadingOf(column));
    std::erase(heading, L'&');
    return heading;
}

}  // namespace

void Editor::Refuse(const std::wstring& why)
{
    messages_.Show(why + L"\r\n\r\nNothing was changed.", L"Setup", MessageIcon::warning);
}

bool Editor::Copy(const GridRows& grid)
{
    Table table;
    for (const int32_t row : grid.SelectedRows()) {
        std::vector<std::wstring>& cells = table.emplace_back();
        for (size_t index = 0; index < 3; ++index) {
            const Column column = grid.ColumnAt(index);
            cells.push_back(!IsCheckColumn(column)        ? grid.Text(column, row)
                            : grid.At(row).checked[index] ? marked
                                                          : notMarked);
        }
    }
    if (view_.PutOnClipboard(WriteTable(table))) {
        return true;
    }
    Refuse(L"Another program does not let go of the clipboard. Please try again.");
    return false;
}

void Editor::Paste(GridRows& grid, bool asRows)
{
    const std::optional<std::wstring> text = view_.ClipboardText();
    if (!text) {
        return Refuse(L"Another program does not let go of the clipboard. Please try again.");
    }
    if (text->empty()) {
        return view_.Beep();
    }
    PasteTable(grid, ReadTable(*text), asRows);
}

bool Editor::PasteOverCell()
{
    const std::optional<std::wstring> text = view_.ClipboardText();
    if (!edit_.open || !text || !IsRange(*text)) {
        return false;
    }
    GridRows& grid = Rows(edit_.column);
    grid.column = edit_.column;
    CloseCellEdit(Leave::toList);
    PasteTable(grid, ReadTable(*text), false);
    return true;
}

/// Whether a cell can stand in a column. Numbers and check marks become what the list would have made of them.
bool Editor::Fits(Column column, std::wstring& cell) const
{
    if (!IsCheckColumn(column) && column != MP_FREQUENCY && column != MP_SYMBOLRATE) {
        cell = OnOneLine(std::move(cell));
        return true;
    }
    cell = TrimBlanks(std::wstring_view(cell));
    if (IsCheckColumn(column)) {
        const bool isMark = std::ranges::find(marks, cell) != marks.end();
        const bool isNone = std::ranges::find(noMarks, cell) != noMarks.end();
        cell = isMark ? marked : notMarked;
        return isMark || isNone;
    }
    if (cell.empty()) {
        cell = column == MP_SYMBOLRATE ? Text(Field::defaultSymbolRate) : noValue;
        return true;
    }
    if (cell != noValue && !std::isfinite(NumberIn(cell))) {
        return false;
    }
    std::ranges::replace(cell, L'.', decimalSeparator_);
    return true;
}

/// Several selected rows are written over, as often as they hold the pasted ones, and what they have no room for comes
/// in behind them; one selected row is the first of as many as are pasted, and what goes beyond the list is new.
Editor::PasteTargets Editor::TargetsOf(const GridRows& grid, int32_t count, bool asRows)
{
    const std::vector<int32_t> selected = grid.SelectedRows();
    const int32_t first = std::max(grid.selection.First(), grid.FirstRow());
    PasteTargets targets;
    if (asRows) {
        targets = {{}, first, count};
    } else if (selected.size() > 1) {
        const auto room = static_cast<int32_t>(selected.size());
        const int32_t used = room % count == 0 ? room : std::min(room, count);
        targets = {{selected.begin(), selected.begin() + used}, selected.back() + 1, std::max(count - room, 0)};
    } else {
        const int32_t there = std::min(count, grid.LastRow() + 1 - first);
        targets = {{}, grid.LastRow() + 1, count - there};
        for (int32_t row = first; row < first + there; ++row) {
            targets.over.push_back(row);
        }
    }
    return targets;
}

void Editor::PasteTable(GridRows& grid, Table table, bool asRows)
{
    PastedCells pasted = ArrangeCells(std::move(table), grid.grid, grid.column);
    if (!pasted.fault.empty()) {
        return Refuse(pasted.fault);
    }
    for (size_t row = 0; row < pasted.rows.size(); ++row) {
        for (size_t index = 0; index < pasted.columns.size(); ++index) {
            const std::wstring cell = pasted.rows[row][index];
            if (!Fits(pasted.columns[index], pasted.rows[row][index])) {
                return Refuse(L"Row " + std::to_wstring(row + pasted.heading + 1) + L" on the clipboard has " +
                              Quoted(cell) + L" for \"" + PlainHeading(pasted.columns[index]) + L"\", which is no " +
                              (IsCheckColumn(pasted.columns[index]) ? L"check mark (1 or 0)." : L"number."));
            }
        }
    }
    const auto count = static_cast<int32_t>(pasted.rows.size());
    const PasteTargets targets = TargetsOf(grid, count, asRows);
    if (grid.grid == Grid::parameters && targets.inserted > 0) {
        return Refuse(L"The clipboard has " + std::to_wstring(count) + L" rows, which is " +
                      std::to_wstring(targets.inserted) + L" more than there are parameters to take them.");
    }
    Change(grid.grid, [&] { PutRows(grid, targets, pasted); });
}

void Editor::PutRows(GridRows& grid, const PasteTargets& targets, const PastedCells& pasted)
{
    const std::vector<SharedRow> added(static_cast<size_t>(targets.inserted),
                                       std::make_shared<const GridRow>(NewRow(grid)));
    grid.rows.insert(grid.rows.begin() + targets.insertAt, added.begin(), added.end());
    std::vector<int32_t> rows = targets.over;
    for (int32_t each = 0; each < targets.inserted; ++each) {
        rows.push_back(targets.insertAt + each);
    }
    // One check column alone takes the other one along, as a click does.
    const bool isCoupled = Checked(Check::couple) && std::ranges::count_if(pasted.columns, IsCheckColumn) == 1;
    for (size_t at = 0; at < rows.size(); ++at) {
        GridRow& row = grid.Change(rows[at]);
        const std::vector<std::wstring>& cells = pasted.rows[at % pasted.rows.size()];
        for (size_t index = 0; index < pasted.columns.size(); ++index) {
            PutCell(row, pasted.columns[index], cells[index], isCoupled);
        }
    }
    grid.column = std::ranges::min(pasted.columns);
    view_.GridChanged(grid.grid);
    SelectRows(grid, rows, rows.front());
}

void Editor::PutCell(GridRow& row, Column column, const std::wstring& cell, bool isCoupled) const
{
    if (IsCheckColumn(column)) {
        for (const Column each : {displayColumn, saveColumn}) {
            bool& mark = row.checked[static_cast<size_t>(each)];
            mark = each == column || isCoupled ? cell == marked : mark;
        }
    } else if (column == captionColumn) {
        row.text[0] = row.itemData == MP_RFLEV ? WithUnit(WithoutUnit(cell)) : cell;
    } else {
        row.text[static_cast<size_t>(column - MP_FIRSTFIXED)] = cell;
    }
}

}  // namespace tvn2x
