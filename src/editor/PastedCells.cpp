#include "editor/PastedCells.h"

#include <algorithm>
#include <array>
#include <cwctype>
#include <iterator>
#include <utility>

#include "editor/Choices.h"
#include "text/Blanks.h"

namespace tvn2x {
namespace {

constexpr size_t gridWidth = 3;

/// Other names that a column goes by.
struct Synonym
{
    std::wstring_view name;
    Column column;
};
constexpr std::array<Synonym, 8> synonyms{{
    {L"label", MP_USERFIELD},
    {L"name", MP_USERFIELD},
    {L"channel", MP_USERFIELD},
    {L"frequency", MP_FREQUENCY},
    {L"centre frequency", MP_FREQUENCY},
    {L"symbolrate", MP_SYMBOLRATE},
    {L"displayed", displayColumn},
    {L"saved", saveColumn},
}};

/// A heading without its access key, its unit and its case.
std::wstring NameIn(std::wstring_view heading)
{
    heading = TrimBlanks(heading.substr(0, heading.find_first_of(L"([")));
    std::wstring name;
    for (const wchar_t each : heading) {
        if (each != L'&') {
            name += static_cast<wchar_t>(std::towlower(static_cast<wint_t>(each)));
        }
    }
    return name;
}

/// The column of a grid that a heading names, -1 for none.
Column Named(Grid grid, std::wstring_view heading)
{
    const std::wstring name = NameIn(heading);
    for (auto column = static_cast<Column>(grid); column < static_cast<Column>(grid) + Column{gridWidth}; ++column) {
        if (name == NameIn(HeadingOf(column))) {
            return column;
        }
    }
    const auto synonym = std::ranges::find_if(
        synonyms, [&](const Synonym& each) { return each.name == name && GridOf(each.column) == grid; });
    return synonym == synonyms.end() ? -1 : synonym->column;
}

bool HasDigit(std::wstring_view text)
{
    return text.find_first_of(L"0123456789") != text.npos;
}

bool IsEmpty(const std::wstring& cell)
{
    return TrimBlanks(std::wstring_view(cell)).empty();
}

/// Every row as long as the longest that has something in it.
void Trim(Table& table)
{
    size_t width = 0;
    for (const std::vector<std::wstring>& row : table) {
        const auto last = std::find_if_not(row.rbegin(), row.rend(), IsEmpty);
        width = std::max(width, static_cast<size_t>(row.rend() - last));
    }
    const auto isBlank = [](const std::vector<std::wstring>& row) { return std::ranges::all_of(row, IsEmpty); };
    while (!table.empty() && isBlank(table.back())) {
        table.pop_back();
    }
    for (std::vector<std::wstring>& row : table) {
        row.resize(width);
    }
}

/// A first row of other words than ours: letters where a number of a later row stands.
bool IsForeignHeading(const Table& table, const std::vector<Column>& columns)
{
    for (size_t index = 0; index < columns.size(); ++index) {
        const bool isNumber = columns[index] == MP_FREQUENCY || columns[index] == MP_SYMBOLRATE;
        const std::wstring& cell = table.front()[index];
        if (isNumber && table.size() > 1 && !IsEmpty(cell) && cell != L"-" && !HasDigit(cell) &&
            HasDigit(table[1][index])) {
            return true;
        }
    }
    return false;
}

}  // namespace

PastedCells ArrangeCells(Table table, Grid grid, Column first)
{
    PastedCells pasted;
    Trim(table);
    if (table.empty()) {
        pasted.fault = L"There are no cells on the clipboard.";
        return pasted;
    }
    const std::vector<std::wstring>& heading = table.front();
    std::ranges::transform(heading, std::back_inserter(pasted.columns),
                           [&](const std::wstring& cell) { return Named(grid, cell); });
    bool isHeading = std::ranges::find(pasted.columns, -1) == pasted.columns.end();
    if (isHeading) {
        std::vector<Column> sorted = pasted.columns;
        std::ranges::sort(sorted);
        if (std::ranges::adjacent_find(sorted) != sorted.end()) {
            pasted.fault = L"Two columns on the clipboard have the same heading.";
        }
    } else {
        const size_t width = heading.size();
        const Column left = width >= gridWidth ? static_cast<Column>(grid) : first;
        if (left + static_cast<Column>(width) > static_cast<Column>(grid) + Column{gridWidth}) {
            pasted.fault = L"The clipboard has " + std::to_wstring(width) +
                           L" columns, and the list has no more than " +
                           std::to_wstring(static_cast<Column>(grid) + Column{gridWidth} - left) + L" from here on.";
            return pasted;
        }
        for (size_t index = 0; index < width; ++index) {
            pasted.columns[index] = left + static_cast<Column>(index);
        }
        isHeading = IsForeignHeading(table, pasted.columns);
    }
    pasted.heading = isHeading ? 1 : 0;
    table.erase(table.begin(), table.begin() + static_cast<ptrdiff_t>(pasted.heading));
    pasted.rows = std::move(table);
    if (pasted.rows.empty() && pasted.fault.empty()) {
        pasted.fault = L"There is nothing but headings on the clipboard.";
    }
    return pasted;
}

}  // namespace tvn2x
